// Numbers into a text by the user's own printf-style format.

#include <array>

#include "instr/string/formatted_result.h"
#include "plugin/instruction.h"

namespace formula {

/// The apostrophe in the description is the host's, byte 0x92.
struct CPrintfNum final : Instruction<CPrintfNum> {
  static constexpr Definition kDefinition{
      .category = "String",
      .name = "PrintfNum",
      .identifier = "_Nuv_String_CPrintfNum_",
      .help = 460143,
      .description =
          "Formats a number as string. This formula is very similar to the C-language "
          "\"sprintf\" command. Most of the \"sprintf\"\x92s float type formatting "
          "flags are valid.",
      .inputs = {Text("formatting"), Number("number", 0.0)},
      .results = {Text("formatted string")},
  };
  static Status Run(Call& call, std::string_view format, double number) {
    return SetFormatted(call, "PrintfNum", format, std::array{number});
  }
};

/// Conversions behind the numbers given find zeros, up to the most there may be. The apostrophe in
/// the description is the host's, byte 0x92.
struct CPrintfNumInf final : Instruction<CPrintfNumInf> {
  static constexpr Definition kDefinition{
      .category = "String",
      .name = "PrintfNumInf",
      .identifier = "_Nuv_String_CPrintfNumInf_",
      .help = 460286,
      .description =
          "Formats 1 to 17 numbers into a string. This formula is similar to the "
          "C-language \"sprintf\" command. Most of the \"sprintf\"\x92s float type "
          "formatting flags are valid.",
      .repeatable = true,
      .inputs = {Text("formatting"), Number("number", 0.0)},
      .results = {Text("formatted string")},
  };
  static Status Run(Call& call, std::string_view format, Repeated<double> given) {
    std::array<double, 17> numbers{};
    if (given.Size() > static_cast<std::int32_t>(numbers.size())) {
      call.Warn("PrintfNumInf", "Too many number arguments");
      return call.Set(0, "0");
    }
    for (std::int32_t i = 0; i < given.Size(); ++i) numbers[i] = given[i];
    return SetFormatted(call, "PrintfNumInf", format, numbers);
  }
};

template struct Instructions<CPrintfNum, CPrintfNumInf>;

}  // namespace formula
