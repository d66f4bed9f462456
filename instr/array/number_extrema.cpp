// Extremes, mean and variance of a number array.

#include <cmath>

#include "algorithm/kernels.h"
#include "algorithm/sample.h"
#include "plugin/instruction.h"

namespace formula {
namespace {

/// Writes an element and its index.
Status SetExtreme(Call& call, std::int32_t result, const Extreme& extreme) {
  call.Set(result, extreme.value);
  return call.Set(result + 1, static_cast<double>(extreme.index));
}

/// What the kernel finds; 0 at 0 for an empty array.
template <class Found>
Found Search(const CNuvDoubleVector& array, Found (*kernel)(const double* in, std::size_t size)) {
  return array.Size() == 0 ? Found{} : kernel(array.GetStorage(), array.Size());
}

}  // namespace

struct CNArrMathMaximum final : Instruction<CNArrMathMaximum> {
  static constexpr Definition kDefinition{
      .category = "Array: Number",
      .name = "Maximum",
      .identifier = "_Nuv_Array_CNArrMathMaximum_",
      .help = 460255,
      .description = "Return input array's maximum value and element index",
      .inputs = {Numbers("array", "Input array")},
      .results = {Number("maximum value"), Number("maximum index")},
  };
  static Status Run(Call& call, const CNuvDoubleVector& array) {
    return SetExtreme(call, 0, Search(array, kKernels->maximum));
  }
};

struct CNArrMathMinimum final : Instruction<CNArrMathMinimum> {
  static constexpr Definition kDefinition{
      .category = "Array: Number",
      .name = "Minimum",
      .identifier = "_Nuv_Array_CNArrMathMinimum_",
      .help = 460256,
      .description = "Return input array's minimum value and element index",
      .inputs = {Numbers("array", "Input array")},
      .results = {Number("minimum value"), Number("minimum index")},
  };
  static Status Run(Call& call, const CNuvDoubleVector& array) {
    return SetExtreme(call, 0, Search(array, kKernels->minimum));
  }
};

struct CNArrMathExtrema final : Instruction<CNArrMathExtrema> {
  static constexpr Definition kDefinition{
      .category = "Array: Number",
      .name = "Extrema",
      .identifier = "_Nuv_Array_CNArrMathExtrema_",
      .help = 460257,
      .description = "Return input array's maximum and minimum values and element indexes",
      .inputs = {Numbers("array", "Input array")},
      .results = {Number("maximum value"), Number("maximum index"), Number("minimum value"),
                  Number("minimum index")},
  };
  static Status Run(Call& call, const CNuvDoubleVector& array) {
    const Extremes found = Search(array, kKernels->extrema);
    SetExtreme(call, 0, found.maximum);
    return SetExtreme(call, 2, found.minimum);
  }
};

/// The population variance by one pass, not clamped: where rounding makes it negative, the
/// standard deviation is NaN.
/// Kept: the identifier lacks the "Arr" of its neighbours; saved programs find it by this one.
struct CNArrMeanAndVar final : Instruction<CNArrMeanAndVar> {
  static constexpr Definition kDefinition{
      .category = "Array: Number",
      .name = "MeanAndVariance",
      .identifier = "_Nuv_Array_CNMeanAndVar_",
      .help = 460260,
      .description =
          "Return mean, variance, standard deviation, and number (count) of array values",
      .inputs = {Numbers("array", "Input array")},
      .results = {Number("mean"), Number("variance"), Number("standard deviation"),
                  Number("number (count)")},
  };
  static Status Run(Call& call, const CNuvDoubleVector& array) {
    const auto count = static_cast<double>(array.Size());
    double mean = 0.0;
    double variance = 0.0;
    if (array.Size() > 0) {
      const PowerSums sums = SumPowers(array);
      mean = sums.values / count;
      variance = sums.squares / count - mean * mean;
    }
    call.Set(0, mean);
    call.Set(1, variance);
    call.Set(2, std::sqrt(variance));
    return call.Set(3, count);
  }
};

template struct Instructions<CNArrMathMaximum, CNArrMathMinimum, CNArrMathExtrema, CNArrMeanAndVar>;

}  // namespace formula
