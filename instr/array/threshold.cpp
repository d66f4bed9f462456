// Thresholds and clipping of number arrays.

#include "algorithm/kernels.h"
#include "plugin/instruction.h"

namespace formula {
namespace {

/// Resizes the result to the array's size and hands out, in, size and the constants to the kernel.
template <class Kernel, class... Constants>
Status Map(Call& call, Kernel* kernel, const CNuvDoubleVector& in, Constants... constants) {
  CNuvDoubleVector& out = call.NumbersResult(0);
  out.Resize(in.Size());
  kernel(out.GetStorage(), in.GetStorage(), out.Size(), constants...);
  return Status::kSuccess;
}

}  // namespace

struct CNArrMathThreshold final : Instruction<CNArrMathThreshold> {
  static constexpr Definition kDefinition{
      .category = "Array: Number",
      .name = "Threshold",
      .identifier = "_Nuv_Array_CNArrMathThreshold_",
      .help = 460261,
      .description = "Set array values at or above 'threshold' to 'above', otherwise to 'below'",
      .inputs = {Numbers("array", "Input array"), Number("threshold", 0.0, "Threshold value"),
                 Number("above", 1.0, "Set numbers at or above the threshold to this value"),
                 Number("below", 0.0, "Set numbers below the threshold to this value")},
      .results = {Numbers("output array")},
  };
  static Status Run(Call& call, const CNuvDoubleVector& array, double threshold, double above,
                    double below) {
    return Map(call, kKernels->threshold, array, threshold, above, below);
  }
};

/// Kept: the upper test takes the larger of the two thresholds, the lower test "low threshold" as
/// given; with the two swapped nothing is between, as saved programs have it.
struct CNArrMathThresholdBand final : Instruction<CNArrMathThresholdBand> {
  static constexpr Definition kDefinition{
      .category = "Array: Number",
      .name = "ThresholdBand",
      .identifier = "_Nuv_Array_CNArrMathThresholdBand_",
      .help = 460262,
      .description =
          "Set array values at or above 'high threshold' to 'above', values below 'low "
          "threshold' to 'below', otherwise to 'between'",
      .inputs = {Numbers("array", "Input array"),
                 Number("high threshold", 1.0, "High (larger) threshold value"),
                 Number("low threshold", 0.0, "Low (smaller) threshold value"),
                 Number("above", 1.0, "Set numbers at or above 'high threshold' to this value"),
                 Number("between", 0.5,
                        "Set numbers below 'high' and at or above 'low threshold' to this value"),
                 Number("below", 0.0, "Set numbers below the 'low threshold' to this value")},
      .results = {Numbers("output array")},
  };
  static Status Run(Call& call, const CNuvDoubleVector& array, double high, double low,
                    double above, double between, double below) {
    const double upper = high < low ? low : high;
    return Map(call, kKernels->threshold_band, array, upper, low, above, between, below);
  }
};

struct CNArrMathClipLow final : Instruction<CNArrMathClipLow> {
  static constexpr Definition kDefinition{
      .category = "Array: Number",
      .name = "ClipLow",
      .identifier = "_Nuv_Array_CNArrMathClipLow_",
      .help = 460263,
      .description = "Set array values below 'threshold' to 'below' value",
      .inputs = {Numbers("array", "Input array"), Number("threshold", 0.0, "Threshold value"),
                 Number("below", 0.0, "Set numbers below the threshold to this value")},
      .results = {Numbers("output array")},
  };
  static Status Run(Call& call, const CNuvDoubleVector& array, double threshold, double below) {
    return Map(call, kKernels->clip_low, array, threshold, below);
  }
};

struct CNArrMathClipHigh final : Instruction<CNArrMathClipHigh> {
  static constexpr Definition kDefinition{
      .category = "Array: Number",
      .name = "ClipHigh",
      .identifier = "_Nuv_Array_CNArrMathClipHigh_",
      .help = 460264,
      .description = "Set array values at or above 'threshold' to 'above' value",
      .inputs = {Numbers("array", "Input array"), Number("threshold", 0.0, "Threshold value"),
                 Number("above", 0.0, "Set numbers at or above the threshold to this value")},
      .results = {Numbers("output array")},
  };
  static Status Run(Call& call, const CNuvDoubleVector& array, double threshold, double above) {
    return Map(call, kKernels->clip_high, array, threshold, above);
  }
};

template struct Instructions<CNArrMathThreshold, CNArrMathThresholdBand, CNArrMathClipLow,
                             CNArrMathClipHigh>;

}  // namespace formula
