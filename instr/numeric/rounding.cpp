// Numbers to whole numbers. What fits no 32-bit integer, and NaN, becomes -2147483648.

#include "host/integer.h"
#include "instr/numeric/families.h"

namespace formula {

/// Halves go to the even neighbour.
struct CRound final : Instruction<CRound> {
  static constexpr Definition kDefinition = NumberFunction({
      .name = "Round",
      .identifier = "_Nuv_Numeric_CRound_",
      .help = 460120,
      .description = "Returns the number rounded to the nearest integer.",
      .result = "rounded number",
  });
  static Status Run(Call& call, double number) { return call.Set(0, NuvRound(number)); }
};

struct CTruncate final : Instruction<CTruncate> {
  static constexpr Definition kDefinition = NumberFunction({
      .name = "Truncate",
      .identifier = "_Nuv_Numeric_CTruncate_",
      .help = 460123,
      .description = "Returns the integer part of a number.",
      .result = "integer part of number",
  });
  static Status Run(Call& call, double number) { return call.Set(0, NuvTruncate(number)); }
};

/// The number less its truncation, so the sign stays.
struct CFractional final : Instruction<CFractional> {
  static constexpr Definition kDefinition = NumberFunction({
      .name = "Fractional",
      .identifier = "_Nuv_Numeric_CFractional_",
      .help = 460272,
      .description = "Returns the fractional part of a number.",
      .result = "fractional part of number",
  });
  static Status Run(Call& call, double number) { return call.Set(0, number - NuvTruncate(number)); }
};

template struct Instructions<CRound, CTruncate, CFractional>;

}  // namespace formula
