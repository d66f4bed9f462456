// Setting texts and putting them together.

#include <string>
#include <string_view>

#include "instr/string/text_builder.h"
#include "plugin/instruction.h"

namespace formula {
namespace {

void Append(std::string& text, std::string_view more) {
  CheckTextLength(text.size() + more.size());
  text += more;
}

}  // namespace

/// Copies the input value as it is, whatever its type.
struct CStringSet final : Instruction<CStringSet> {
  static constexpr Definition kDefinition{
      .category = "String",
      .name = "SetString",
      .identifier = "_Nuv_String_Set_",
      .help = 460146,
      .description = "Sets a string to the specified value",
      .inputs = {Text("string")},
      .results = {Text("output")},
  };
  static Status Run(Call& call, const CNuvObject& value) { return call.Set(0, value); }
};

struct CAddStr final : Instruction<CAddStr> {
  static constexpr Definition kDefinition{
      .category = "String",
      .name = "AddStr",
      .identifier = "_Nuv_String_CAddStr_",
      .help = 460147,
      .description = "Creates a new string by appending string2 to string1.",
      .inputs = {Text("string1"), Text("string2")},
      .results = {Text("string")},
  };
  static Status Run(Call& call, std::string_view first, std::string_view second) {
    TextBuilder sum(first.size() + second.size());
    sum.Append(first);
    sum.Append(second);
    return call.Set(0, sum.CString());
  }
};

struct CCreateStrInf final : Instruction<CCreateStrInf> {
  static constexpr Definition kDefinition{
      .category = "String",
      .name = "CreateStrInf",
      .identifier = "_Nuv_String_CCreateStrInf_",
      .help = 460277,
      .description = "Creates a new string from input strings",
      .repeatable = true,
      .inputs = {Text("string", "input string")},
      .results = {Text("new string")},
  };
  static Status Run(Call& call, Repeated<std::string_view> texts) {
    std::string text;
    for (std::int32_t i = 0; i < texts.Size(); ++i) Append(text, texts[i]);
    return call.Set(0, text);
  }
};

struct CPackStr final : Instruction<CPackStr> {
  static constexpr Definition kDefinition{
      .category = "String",
      .name = "PackStr",
      .identifier = "_Nuv_String_CPackStr_",
      .help = 460154,
      .description = "Returns a string built from concatenating input strings.",
      .inputs = {Texts("strings")},
      .results = {Text("concat string")},
  };
  static Status Run(Call& call, const CNuvStringVector& strings) {
    std::string text;
    for (std::size_t i = 0; i < strings.Size(); ++i)
      Append(text, static_cast<const char*>(strings[i]));
    return call.Set(0, text);
  }
};

/// Kept: appending is not inserting; any position but one of a character of the string gives the
/// mark of an unset text, and saved programs check for it.
struct CInsertAtStr final : Instruction<CInsertAtStr> {
  static constexpr Definition kDefinition{
      .category = "String",
      .name = "InsertAtStr",
      .identifier = "_Nuv_String_CInsertAtStr_",
      .help = 460185,
      .description = "Inserts the argument string at position pos in the specified string.",
      .inputs = {Text("string"), Number("pos", 0.0), Text("ins string")},
      .results = {Text("new string")},
  };
  static Status Run(Call& call, std::string_view text, Truncated position,
                    std::string_view inserted) {
    if (position < 0 || position >= static_cast<std::int64_t>(text.size())) {
      return call.Set(0, kUnsetText);
    }
    TextBuilder result(text.size() + inserted.size());
    result.Append(text.substr(0, position));
    result.Append(inserted);
    result.Append(text.substr(position));
    return call.Set(0, result.CString());
  }
};

template struct Instructions<CStringSet, CAddStr, CCreateStrInf, CPackStr, CInsertAtStr>;

}  // namespace formula
