// Sums, differences, products, and the functions of one or two numbers.

#include <cmath>

#include "instr/numeric/families.h"
#include "platform/math.h"

namespace formula {

/// Copies the input value as it is, whatever its type.
struct CNumericSet final : Instruction<CNumericSet> {
  static constexpr Definition kDefinition{
      .category = "Numeric",
      .name = "SetNumber",
      .identifier = "_Nuv_Numeric_Set_",
      .help = 460109,
      .description = "Set the output to the specified number value.",
      .inputs = {Number("number", 0.0)},
      .results = {Number("output")},
  };
  static Status Run(Call& call) { return call.Set(0, call.Input(0)); }
};

/// The sum of all inputs, in their order from 0.
struct CAdd final : Instruction<CAdd> {
  static constexpr Definition kDefinition{
      .category = "Numeric",
      .name = "Add",
      .identifier = "_Nuv_Numeric_AddNumbers_",
      .help = 460110,
      .description = "Add numbers.",
      .repeatable = true,
      .inputs = {Number("number", 0.0)},
      .results = {Number("sum")},
  };
  static Status Run(Call& call) {
    const std::int32_t count = call.Count();
    double sum = 0.0;
    for (std::int32_t i = 0; i < count; ++i) sum += call.Number(i);
    return call.Set(0, sum);
  }
};

/// The first input less every further one, in their order.
struct CSubtract final : Instruction<CSubtract> {
  static constexpr Definition kDefinition{
      .category = "Numeric",
      .name = "Subtract",
      .identifier = "_Nuv_Numeric_SubtractNumbers_",
      .help = 460111,
      .description = "Subtract numbers.",
      .repeatable = true,
      .inputs = {Number("number", 0.0)},
      .results = {Number("difference")},
  };
  static Status Run(Call& call) {
    const std::int32_t count = call.Count();
    double difference = call.Number(0);
    for (std::int32_t i = 1; i < count; ++i) difference -= call.Number(i);
    return call.Set(0, difference);
  }
};

/// The product of all inputs, in their order from 1.
struct CMultiply final : Instruction<CMultiply> {
  static constexpr Definition kDefinition{
      .category = "Numeric",
      .name = "Multiply",
      .identifier = "_Nuv_Numeric_MultiplyNumbers_",
      .help = 460112,
      .description = "Multiply numbers.",
      .repeatable = true,
      .inputs = {Number("number", 1.0)},
      .results = {Number("product")},
  };
  static Status Run(Call& call) {
    const std::int32_t count = call.Count();
    double product = 1.0;
    for (std::int32_t i = 0; i < count; ++i) product *= call.Number(i);
    return call.Set(0, product);
  }
};

struct CIncrement final : NumberFunction<CIncrement> {
  static constexpr Definition kDefinition =
      Row("Increment", "_Nuv_Numeric_Increment_", 460266, "Add 1 to a number to increment it.",
          "incremented");
  static double Of(double number) { return number + 1.0; }
};

struct CDecrement final : NumberFunction<CDecrement> {
  static constexpr Definition kDefinition =
      Row("Decrement", "_Nuv_Numeric_Decrement_", 460267,
          "Subtract 1 from a number to decrement it.", "decremented");
  static double Of(double number) { return number - 1.0; }
};

struct CAbs final : NumberFunction<CAbs> {
  static constexpr Definition kDefinition =
      Row("Abs", "_Nuv_Numeric_CAbs_", 460117, "Returns the absolute value of the input number.",
          "abs(number)");
  static double Of(double number) { return std::fabs(number); }
};

/// Unlike "SetNumber", the result is a number whatever the input holds.
struct CCopy final : NumberFunction<CCopy> {
  static constexpr Definition kDefinition =
      Row("Copy", "_Nuv_Numeric_CCopy_", 460118, "Returns a copy of the input number.",
          "copy of number");
  static double Of(double number) { return number; }
};

struct CNegate final : NumberFunction<CNegate> {
  static constexpr Definition kDefinition =
      Row("Negate", "_Nuv_Numeric_CNegate_", 460119, "Returns the negated value of the number.",
          "negated number");
  static double Of(double number) { return -number; }
};

struct CSquare final : NumberFunction<CSquare> {
  static constexpr Definition kDefinition =
      Row("Square", "_Nuv_Numeric_CSquare_", 460121, "Returns n*n.", "n squared", "n");
  static double Of(double n) { return n * n; }
};

/// The square root; a negative number fails without a message, a NaN gives NaN.
struct CSqrt final : Instruction<CSqrt> {
  static constexpr Definition kDefinition{
      .category = "Numeric",
      .name = "Sqrt",
      .identifier = "_Nuv_Numeric_CSqrt_",
      .help = 460122,
      .description = "Returns the square root of n.",
      .inputs = {Number("n", 0.0)},
      .results = {Number("sqrt of n")},
  };
  static Status Run(Call& call) {
    const double n = call.Number(0);
    if (n < 0.0) return Status::kFailure;
    return call.Set(0, std::sqrt(n));
  }
};

/// The C library's power function; a domain error gives what that function gives.
struct CPow final : TwoNumberFunction<CPow> {
  static constexpr Definition kDefinition{
      .category = "Numeric",
      .name = "Pow",
      .identifier = "_Nuv_Numeric_PowNumbers_",
      .help = 460114,
      .description = "Power function.",
      .inputs = {Number("number", 0.0), Number("exponent", 1.0)},
      .results = {Number("raised")},
  };
  static double Of(double number, double exponent) { return platform::Pow(number, exponent); }
};

/// Equal and unordered numbers give the second. Kept: both inputs are named "number", and saved
/// programs tell them apart by position.
struct CMin2 final : TwoNumberFunction<CMin2> {
  static constexpr Definition kDefinition{
      .category = "Numeric",
      .name = "Min2",
      .identifier = "_Nuv_Numeric_Min2Numbers_",
      .help = 460270,
      .description = "Output minimum of two numbers.",
      .inputs = {Number("number", 0.0), Number("number", 0.0)},
      .results = {Number("minimum")},
  };
  static double Of(double a, double b) { return b > a ? a : b; }
};

/// Equal and unordered numbers give the second. Kept: both inputs are named "number", as in
/// "Min2".
struct CMax2 final : TwoNumberFunction<CMax2> {
  static constexpr Definition kDefinition{
      .category = "Numeric",
      .name = "Max2",
      .identifier = "_Nuv_Numeric_Max2Numbers_",
      .help = 460271,
      .description = "Output maximum of two numbers.",
      .inputs = {Number("number", 0.0), Number("number", 0.0)},
      .results = {Number("maximum")},
  };
  static double Of(double a, double b) { return a > b ? a : b; }
};

template IXInstrPlugin* NewInstruction<CNumericSet>() noexcept;
template IXInstrPlugin* NewInstruction<CAdd>() noexcept;
template IXInstrPlugin* NewInstruction<CSubtract>() noexcept;
template IXInstrPlugin* NewInstruction<CMultiply>() noexcept;
template IXInstrPlugin* NewInstruction<CIncrement>() noexcept;
template IXInstrPlugin* NewInstruction<CDecrement>() noexcept;
template IXInstrPlugin* NewInstruction<CAbs>() noexcept;
template IXInstrPlugin* NewInstruction<CCopy>() noexcept;
template IXInstrPlugin* NewInstruction<CNegate>() noexcept;
template IXInstrPlugin* NewInstruction<CSquare>() noexcept;
template IXInstrPlugin* NewInstruction<CSqrt>() noexcept;
template IXInstrPlugin* NewInstruction<CPow>() noexcept;
template IXInstrPlugin* NewInstruction<CMin2>() noexcept;
template IXInstrPlugin* NewInstruction<CMax2>() noexcept;

}  // namespace formula
