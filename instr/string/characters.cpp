// Single characters of a text, by their numbers. Reading takes a character as a signed 8-bit
// value, so that bytes from 128 on read as -128 to -1; writing takes the low 8 bits of a number.

#include <algorithm>

#include "plugin/instruction.h"

namespace formula {
namespace {

double Code(char character) {
  return static_cast<signed char>(character);
}

}  // namespace

struct CChar2Num final : Instruction<CChar2Num> {
  static constexpr Definition kDefinition{
      .category = "String",
      .name = "CharToNum",
      .identifier = "_Nuv_String_CChar2Num_",
      .help = 460144,
      .description =
          "Returns a numeric array containing the ASCII values of the input character "
          "string",
      .inputs = {Text("strToConvert")},
      .results = {Numbers("charVals")},
  };
  static Status Run(Call& call, std::string_view text) {
    CNuvDoubleVector& codes = call.NumbersResult(0);
    codes.Resize(text.size());
    std::transform(text.begin(), text.end(), codes.GetStorage(), Code);
    return Status::kSuccess;
  }
};

/// A character 0 ends the text. Kept: a negative count, and one beyond 64 bits, takes the whole
/// array; saved programs give -1 for it.
struct CNum2Char final : Instruction<CNum2Char> {
  static constexpr Definition kDefinition{
      .category = "String",
      .name = "NumToChar",
      .identifier = "_Nuv_String_CNum2Char_",
      .help = 460145,
      .description = "Returns a string built from an array of numeric, ASCII values.",
      .inputs = {Number("char count", 1.0, "Character count, array size in characters"),
                 Numbers("chars")},
      .results = {Text("string")},
  };
  static Status Run(Call& call, double count, const CNuvDoubleVector& codes) {
    const bool whole = !(count > -1.0 && count < static_cast<double>(codes.Size()));
    std::string text(whole ? codes.Size() : static_cast<std::size_t>(count), '\0');
    std::transform(codes.GetStorage(), codes.GetStorage() + text.size(), text.begin(),
                   [](double code) { return static_cast<char>(NuvTruncate(code)); });
    return call.Set(0, text);
  }
};

/// A position behind the end gives -1, a negative one leaves the result as it was. Kept: the end
/// itself is neither but a failure without a message, at which saved programs stop.
struct CGetAt final : Instruction<CGetAt> {
  static constexpr Definition kDefinition{
      .category = "String",
      .name = "GetAt",
      .identifier = "_Nuv_String_CGetAt_",
      .help = 460157,
      .description = "Returns the numerical value of the character at position pos in the string.",
      .inputs = {Text("string"), Number("pos", 0.0)},
      .results = {Number("char")},
  };
  static Status Run(Call& call, std::string_view text, Truncated position) {
    if (position < 0) return Status::kSuccess;
    const auto at = static_cast<std::size_t>(position.value);
    if (at > text.size()) return call.Set(0, -1.0);
    if (at == text.size()) return Status::kFailure;
    return call.Set(0, Code(text[at]));
  }
};

/// A position or a character out of range leaves the result as it was; a character 0 ends the
/// text.
struct CSetAtStr final : Instruction<CSetAtStr> {
  static constexpr Definition kDefinition{
      .category = "String",
      .name = "SetAtStr",
      .identifier = "_Nuv_String_CSetAtStr_",
      .help = 460158,
      .description = "Sets the character argument at position pos in the specified string.",
      .inputs = {Text("string"), Number("pos", 0.0), Number("char", 0.0)},
      .results = {Text("new string")},
  };
  static Status Run(Call& call, std::string_view old_text, Truncated position,
                    Truncated character) {
    if (position < 0 || character < 0) return Status::kSuccess;
    const auto at = static_cast<std::size_t>(position.value);
    if (at >= old_text.size()) return Status::kSuccess;
    std::string text(old_text);
    text[at] = static_cast<char>(character.value);
    return call.Set(0, text);
  }
};

template struct Instructions<CChar2Num, CNum2Char, CGetAt, CSetAtStr>;

}  // namespace formula
