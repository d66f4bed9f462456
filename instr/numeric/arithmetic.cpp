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
  static Status Run(Call& call, const CNuvObject& number) { return call.Set(0, number); }
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
  static Status Run(Call& call, Repeated<double> numbers) {
    double sum = 0.0;
    for (std::int32_t i = 0; i < numbers.Size(); ++i) sum += numbers[i];
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
  static Status Run(Call& call, Repeated<double> numbers) {
    double difference = numbers[0];
    for (std::int32_t i = 1; i < numbers.Size(); ++i) difference -= numbers[i];
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
  static Status Run(Call& call, Repeated<double> numbers) {
    double product = 1.0;
    for (std::int32_t i = 0; i < numbers.Size(); ++i) product *= numbers[i];
    return call.Set(0, product);
  }
};

struct CIncrement final : Instruction<CIncrement> {
  static constexpr Definition kDefinition = NumberFunction({
      .name = "Increment",
      .identifier = "_Nuv_Numeric_Increment_",
      .help = 460266,
      .description = "Add 1 to a number to increment it.",
      .result = "incremented",
  });
  static Status Run(Call& call, double number) { return call.Set(0, number + 1.0); }
};

struct CDecrement final : Instruction<CDecrement> {
  static constexpr Definition kDefinition = NumberFunction({
      .name = "Decrement",
      .identifier = "_Nuv_Numeric_Decrement_",
      .help = 460267,
      .description = "Subtract 1 from a number to decrement it.",
      .result = "decremented",
  });
  static Status Run(Call& call, double number) { return call.Set(0, number - 1.0); }
};

struct CAbs final : Instruction<CAbs> {
  static constexpr Definition kDefinition = NumberFunction({
      .name = "Abs",
      .identifier = "_Nuv_Numeric_CAbs_",
      .help = 460117,
      .description = "Returns the absolute value of the input number.",
      .result = "abs(number)",
  });
  static Status Run(Call& call, double number) { return call.Set(0, std::fabs(number)); }
};

/// Unlike "SetNumber", the result is a number whatever the input holds.
struct CCopy final : Instruction<CCopy> {
  static constexpr Definition kDefinition = NumberFunction({
      .name = "Copy",
      .identifier = "_Nuv_Numeric_CCopy_",
      .help = 460118,
      .description = "Returns a copy of the input number.",
      .result = "copy of number",
  });
  static Status Run(Call& call, double number) { return call.Set(0, number); }
};

struct CNegate final : Instruction<CNegate> {
  static constexpr Definition kDefinition = NumberFunction({
      .name = "Negate",
      .identifier = "_Nuv_Numeric_CNegate_",
      .help = 460119,
      .description = "Returns the negated value of the number.",
      .result = "negated number",
  });
  static Status Run(Call& call, double number) { return call.Set(0, -number); }
};

struct CSquare final : Instruction<CSquare> {
  static constexpr Definition kDefinition = NumberFunction({
      .name = "Square",
      .identifier = "_Nuv_Numeric_CSquare_",
      .help = 460121,
      .description = "Returns n*n.",
      .input = "n",
      .result = "n squared",
  });
  static Status Run(Call& call, double n) { return call.Set(0, n * n); }
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
  static Status Run(Call& call, double n) {
    if (n < 0.0) return Status::kFailure;
    return call.Set(0, std::sqrt(n));
  }
};

/// The C library's power function; a domain error gives what that function gives.
struct CPow final : Instruction<CPow> {
  static constexpr Definition kDefinition{
      .category = "Numeric",
      .name = "Pow",
      .identifier = "_Nuv_Numeric_PowNumbers_",
      .help = 460114,
      .description = "Power function.",
      .inputs = {Number("number", 0.0), Number("exponent", 1.0)},
      .results = {Number("raised")},
  };
  static Status Run(Call& call, double number, double exponent) {
    return call.Set(0, platform::Pow(number, exponent));
  }
};

/// Equal and unordered numbers give the second. Kept: both inputs are named "number", and saved
/// programs tell them apart by position.
struct CMin2 final : Instruction<CMin2> {
  static constexpr Definition kDefinition{
      .category = "Numeric",
      .name = "Min2",
      .identifier = "_Nuv_Numeric_Min2Numbers_",
      .help = 460270,
      .description = "Output minimum of two numbers.",
      .inputs = {Number("number", 0.0), Number("number", 0.0)},
      .results = {Number("minimum")},
  };
  static Status Run(Call& call, double a, double b) { return call.Set(0, b > a ? a : b); }
};

/// Equal and unordered numbers give the second. Kept: both inputs are named "number", as in
/// "Min2".
struct CMax2 final : Instruction<CMax2> {
  static constexpr Definition kDefinition{
      .category = "Numeric",
      .name = "Max2",
      .identifier = "_Nuv_Numeric_Max2Numbers_",
      .help = 460271,
      .description = "Output maximum of two numbers.",
      .inputs = {Number("number", 0.0), Number("number", 0.0)},
      .results = {Number("maximum")},
  };
  static Status Run(Call& call, double a, double b) { return call.Set(0, a > b ? a : b); }
};

template struct Instructions<CNumericSet, CAdd, CSubtract, CMultiply, CIncrement, CDecrement, CAbs,
                             CCopy, CNegate, CSquare, CSqrt, CPow, CMin2, CMax2>;

}  // namespace formula
