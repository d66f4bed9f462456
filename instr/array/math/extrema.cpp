// Extremes, mean and variance of a number array.

#include <cmath>

#include "instr/array/math/kernels.h"
#include "instr/numeric/sample.h"
#include "plugin/instruction.h"

namespace formula {
namespace {

constexpr Definition Row(const char* name, const char* identifier, std::uint32_t help,
                         const char* description, ConstantList<Parameter, 16> results) {
  return {.category = "Array: Number",
          .name = name,
          .identifier = identifier,
          .help = help,
          .description = description,
          .inputs = {Numbers("array", "Input array")},
          .results = results};
}

/// Writes an element and its index.
Status SetExtreme(Call& call, std::int32_t result, const Extreme& extreme) {
  call.Set(result, extreme.value);
  return call.Set(result + 1, static_cast<double>(extreme.index));
}

/// What the kernel finds; 0 at 0 for an empty array.
template <class Found>
Found Search(const Call& call, Found (*kernel)(const double* in, std::size_t size)) {
  const CNuvDoubleVector& array = call.Numbers(0);
  return array.Size() == 0 ? Found{} : kernel(array.GetStorage(), array.Size());
}

}  // namespace

struct CNArrMathMaximum final : Instruction<CNArrMathMaximum> {
  static constexpr Definition kDefinition =
      Row("Maximum", "_Nuv_Array_CNArrMathMaximum_", 460255,
          "Return input array's maximum value and element index",
          {Number("maximum value"), Number("maximum index")});
  static Status Run(Call& call) { return SetExtreme(call, 0, Search(call, kKernels->maximum)); }
};

struct CNArrMathMinimum final : Instruction<CNArrMathMinimum> {
  static constexpr Definition kDefinition =
      Row("Minimum", "_Nuv_Array_CNArrMathMinimum_", 460256,
          "Return input array's minimum value and element index",
          {Number("minimum value"), Number("minimum index")});
  static Status Run(Call& call) { return SetExtreme(call, 0, Search(call, kKernels->minimum)); }
};

struct CNArrMathExtrema final : Instruction<CNArrMathExtrema> {
  static constexpr Definition kDefinition =
      Row("Extrema", "_Nuv_Array_CNArrMathExtrema_", 460257,
          "Return input array's maximum and minimum values and element indexes",
          {Number("maximum value"), Number("maximum index"), Number("minimum value"),
           Number("minimum index")});
  static Status Run(Call& call) {
    const Extremes found = Search(call, kKernels->extrema);
    SetExtreme(call, 0, found.maximum);
    return SetExtreme(call, 2, found.minimum);
  }
};

/// The population variance by one pass, not clamped: where rounding makes it negative, the
/// standard deviation is NaN.
/// Kept: the identifier lacks the "Arr" of its neighbours; saved programs find it by this one.
struct CNArrMeanAndVar final : Instruction<CNArrMeanAndVar> {
  static constexpr Definition kDefinition = Row(
      "MeanAndVariance", "_Nuv_Array_CNMeanAndVar_", 460260,
      "Return mean, variance, standard deviation, and number (count) of array values",
      {Number("mean"), Number("variance"), Number("standard deviation"), Number("number (count)")});
  static Status Run(Call& call) {
    const ArraySample sample(call, 0);
    const auto count = static_cast<double>(sample.Size());
    double mean = 0.0;
    double variance = 0.0;
    if (sample.Size() > 0) {
      const PowerSums sums = SumPowers(sample);
      mean = sums.values / count;
      variance = sums.squares / count - mean * mean;
    }
    call.Set(0, mean);
    call.Set(1, variance);
    call.Set(2, std::sqrt(variance));
    return call.Set(3, count);
  }
};

template IXInstrPlugin* NewInstruction<CNArrMathMaximum>() noexcept;
template IXInstrPlugin* NewInstruction<CNArrMathMinimum>() noexcept;
template IXInstrPlugin* NewInstruction<CNArrMathExtrema>() noexcept;
template IXInstrPlugin* NewInstruction<CNArrMeanAndVar>() noexcept;

}  // namespace formula
