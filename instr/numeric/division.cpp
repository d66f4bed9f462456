// Division of numbers and of integers.

#include <limits>

#include "plugin/instruction.h"

namespace formula {
namespace {

/// The one quotient of two 32-bit integers that does not fit; to divide them faults the processor.
bool Overflows(std::int32_t numerator, std::int32_t denominator) {
  return numerator == std::numeric_limits<std::int32_t>::min() && denominator == -1;
}

}  // namespace

/// Quotient of two numbers; a denominator of exactly zero is an error.
struct CDivide final : Instruction<CDivide> {
  static constexpr Definition kDefinition{
      .category = "Numeric",
      .name = "Divide",
      .identifier = "_Nuv_Numeric_DivideNumbers_",
      .help = 460113,
      .description = "Divide two numbers.",
      .inputs = {Number("numerator", 0.0), Number("denominator", 1.0)},
      .results = {Number("quotient")},
  };
  static Status Run(Call& call, double numerator, double denominator) {
    if (denominator == 0.0) return call.Fail("Numeric: Divide", "Division by zero");
    return call.Set(0, numerator / denominator);
  }
};

/// Quotient of two integers, truncated toward zero. A denominator that converts to zero is an
/// error, as is the one quotient that fits no 32-bit integer.
struct CIntegerDivide final : Instruction<CIntegerDivide> {
  static constexpr Definition kDefinition{
      .category = "Numeric",
      .name = "Integer Divide",
      .identifier = "_Nuv_Numeric_IntegerDivideNumbers_",
      .help = 460115,
      .description = "Divide two integer numbers.",
      .inputs = {Number("numerator", 0.0), Number("denominator", 1.0)},
      .results = {Number("quotient")},
  };
  static Status Run(Call& call, HostInteger numerator, HostInteger denominator) {
    if (denominator == 0) return call.Fail("Numeric: Integer Divide", "Division by zero");
    if (Overflows(numerator, denominator)) {
      return call.Fail("Numeric: Integer Divide", "Integer overflow");
    }
    return call.Set(0, numerator / denominator);
  }
};

/// Remainder of the integer division, with the sign of the numerator.
struct CRemainder final : Instruction<CRemainder> {
  static constexpr Definition kDefinition{
      .category = "Numeric",
      .name = "Remainder",
      .identifier = "_Nuv_Numeric_RemainderNumbers_",
      .help = 460116,
      .description = "Integer remainder function.",
      .inputs = {Number("numerator", 0.0), Number("denominator", 1.0)},
      .results = {Number("remainder")},
  };
  static Status Run(Call& call, HostInteger numerator, HostInteger denominator) {
    if (denominator == 0) return call.Fail("Numeric: Remainder", "Division by zero");
    return call.Set(0, Overflows(numerator, denominator) ? 0 : numerator % denominator);
  }
};

template struct Instructions<CDivide, CIntegerDivide, CRemainder>;

}  // namespace formula
