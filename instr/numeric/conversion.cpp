// Numbers to texts and back.

#include <array>
#include <optional>
#include <string>

#include "algorithm/number_scan.h"
#include "instr/string/formatted_result.h"
#include "plugin/instruction.h"

namespace formula {

/// Formats a number by a printf picture. The width is that of the whole field, sign, point and
/// decimals included; padding with blanks also puts one in the place of a plus sign.
struct CNumberToString final : Instruction<CNumberToString> {
  static constexpr Definition kDefinition{
      .category = "Numeric",
      .name = "NumToString",
      .identifier = "_Nuv_String_CNumberToString_",
      .help = 460216,
      .description = "Returns a string representing given number.",
      .constants = {{.type = NUV_PARAM_BOOLEAN,
                     .group = "Parameters",
                     .name = "Show +/-",
                     .description =
                         "Always show + or - signs. If false on negative numbers will show -"},
                    {.group = "Parameters",
                     .name = "Number of digits",
                     .description = "Used with padding. String will be formated to show at least "
                                    "specified number of digits.",
                     .default_value = 8,
                     .has_range = true,
                     .minimum = 1,
                     .maximum = 1000},
                    {.type = NUV_PARAM_CHOICE,
                     .group = "Parameters",
                     .name = "Integer field padding",
                     .description = "Controls how integers digits are padded.",
                     .choices = {{0, "No padding"}, {1, "Pad with '0'"}, {2, "Pad with ' '"}}},
                    {.group = "Parameters",
                     .name = "Number of decimal point digits",
                     .description = "The value is rounded to the appropriate number of digits.",
                     .default_value = 3,
                     .has_range = true,
                     .minimum = 0,
                     .maximum = 1000}},
      .inputs = {Number("number", 0.0)},
      .results = {Text("string")},
  };
  static Status Run(Call& call, double number) {
    const std::string width = std::to_string(call.ConstantInteger(1));
    const std::int32_t padding = call.ConstantInteger(2);
    std::string picture = "%";
    if (call.ConstantBoolean(0)) picture += '+';
    if (padding == 1) picture += '0' + width;
    if (padding == 2) picture += ' ' + width;
    picture += '.' + std::to_string(call.ConstantInteger(3)) + 'f';
    return SetFormatted(call, "NumToString", picture, std::array{number});
  }
};

/// Kept: "Number" in the identifier, where the family has "Numeric".
struct CStringToNumber final : Instruction<CStringToNumber> {
  static constexpr Definition kDefinition{
      .category = "Numeric",
      .name = "StringToNum",
      .identifier = "_Nuv_Number_CStringToNumber_",
      .help = 460223,
      .description = "Returns a number scanned from the given string.",
      .inputs = {Text("string", "String containing a number. Prefix with 0x for hex numbers.", "")},
      .results = {Number("number", "Scanned value"),
                  Boolean("success", "True if number was successfully scanned")},
  };
  static Status Run(Call& call, std::string_view text) {
    std::optional<double> number;
    // Kept: a "0x" anywhere makes the whole text hexadecimal, so that "11x" is 11 but "10x" 16.
    if (text.find("0x") != text.npos || text.find("0X") != text.npos) {
      number = ScanHexadecimal(text);
    }
    if (!number) number = ScanNumber(text);
    call.Set(0, number.value_or(0.0));
    return call.Set(1, number.has_value());
  }
};

template struct Instructions<CNumberToString, CStringToNumber>;

}  // namespace formula
