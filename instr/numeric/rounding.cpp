// Numbers to whole numbers. What fits no 32-bit integer, and NaN, becomes -2147483648.

#include "host/integer.h"
#include "instr/numeric/families.h"

namespace formula {

/// Halves go to the even neighbour.
struct CRound final : NumberFunction<CRound> {
  static constexpr Definition kDefinition =
      Row("Round", "_Nuv_Numeric_CRound_", 460120,
          "Returns the number rounded to the nearest integer.", "rounded number");
  static std::int32_t Of(double number) { return NuvRound(number); }
};

struct CTruncate final : NumberFunction<CTruncate> {
  static constexpr Definition kDefinition =
      Row("Truncate", "_Nuv_Numeric_CTruncate_", 460123, "Returns the integer part of a number.",
          "integer part of number");
  static std::int32_t Of(double number) { return NuvTruncate(number); }
};

/// The number less its truncation, so the sign stays.
struct CFractional final : NumberFunction<CFractional> {
  static constexpr Definition kDefinition =
      Row("Fractional", "_Nuv_Numeric_CFractional_", 460272,
          "Returns the fractional part of a number.", "fractional part of number");
  static double Of(double number) { return number - NuvTruncate(number); }
};

template IXInstrPlugin* NewInstruction<CRound>() noexcept;
template IXInstrPlugin* NewInstruction<CTruncate>() noexcept;
template IXInstrPlugin* NewInstruction<CFractional>() noexcept;

}  // namespace formula
