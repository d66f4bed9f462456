// Numbers into a text by the user's own printf-style format.

#include <array>

#include "instr/string/number_format.h"
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
  static Status Run(Call& call) {
    return SetFormatted(call, "PrintfNum", call.Text(0), std::array{call.Number(1)});
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
  static Status Run(Call& call) {
    std::array<double, 17> numbers{};
    const std::int32_t count = call.Count() - 1;
    if (count > static_cast<std::int32_t>(numbers.size())) {
      call.Warn("PrintfNumInf", "Too many number arguments");
      return call.Set(0, "0");
    }
    for (std::int32_t i = 0; i < count; ++i) numbers[i] = call.Number(1 + i);
    return SetFormatted(call, "PrintfNumInf", call.Text(0), numbers);
  }
};

template IXInstrPlugin* NewInstruction<CPrintfNum>() noexcept;
template IXInstrPlugin* NewInstruction<CPrintfNumInf>() noexcept;

}  // namespace formula
