// Setting texts and putting them together.

#include <string>
#include <string_view>

#include "instr/string/text_room.h"
#include "plugin/instruction.h"

namespace formula {
namespace {

/// Sets the result to as many texts, one behind the other.
template <class TextAt>
Status SetJoined(Call& call, std::size_t count, TextAt text_at) {
  std::size_t length = 0;
  for (std::size_t i = 0; i < count; ++i) length += text_at(i).size();
  std::string text = TextWithRoom(length);
  for (std::size_t i = 0; i < count; ++i) text += text_at(i);
  return call.Set(0, text);
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
    std::string sum = TextWithRoom(first.size() + second.size());
    return call.Set(0, sum.append(first).append(second));
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
    return SetJoined(call, static_cast<std::size_t>(texts.Size()),
                     [&](std::size_t i) { return texts[static_cast<std::int64_t>(i)]; });
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
    return SetJoined(call, strings.Size(), [&](std::size_t i) {
      return std::string_view(static_cast<const char*>(strings[i]));
    });
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
    std::string result = TextWithRoom(text.size() + inserted.size());
    result.append(text.substr(0, position)).append(inserted).append(text.substr(position));
    return call.Set(0, result);
  }
};

template struct Instructions<CStringSet, CAddStr, CCreateStrInf, CPackStr, CInsertAtStr>;

}  // namespace formula
