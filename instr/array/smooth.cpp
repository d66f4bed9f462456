// Smoothing number arrays.

#include "algorithm/smooth.h"

#include <algorithm>
#include <memory>

#include "algorithm/kernels.h"
#include "plugin/instruction.h"

namespace formula {

/// The filter (1, 2, 1) / 4 over each element and its neighbours, repeated. The ends stay as they
/// are, or are each other's neighbours where the array is circular.
struct CNArrMathSmooth final : Instruction<CNArrMathSmooth> {
  static constexpr Definition kDefinition{
      .category = "Array: Number",
      .name = "Smooth",
      .identifier = "_Nuv_Array_CNArrMathSmooth_",
      .help = 460252,
      .description = "Smoothed input array values with an 1,2,1 approximation to a Gaussian",
      .inputs = {Numbers("array", "Input array"),
                 Number("passes", 1.0, "Number of smoothing passes"),
                 Boolean("circular", false, "If true, 'array' is circular"),
                 Boolean("duplicate ends", false,
                         "If true, duplicate array value 1 to 0 and last-1 to last")},
      .results = {Numbers("Smoothed array")},
  };
  static Status Run(Call& call, const CNuvDoubleVector& array, Truncated passes, bool circular,
                    bool duplicate_ends) {
    CNuvDoubleVector& result = call.NumbersResult(0);
    const std::size_t size = array.Size();
    const bool shared = &result == &array;
    if (passes < 1 || size < 3) {
      // Kept: what is circular and not smoothed comes out with two zeros behind it; saved programs
      // count on the length.
      result.Resize(circular ? size + 2 : size);
      double* out = result.GetStorage();
      if (!shared) std::copy_n(array.GetStorage(), size, out);
      std::fill(out + size, out + result.Size(), 0.0);
      return Status::kSuccess;
    }
    std::unique_ptr<double[]> spare;
    if (shared || passes > kSmoothPasses) spare = std::make_unique_for_overwrite<double[]>(size);
    result.Resize(size);
    double* out = result.GetStorage();
    Smooth(out, array.GetStorage(), spare.get(), size, passes, circular);
    if (duplicate_ends) {
      out[0] = out[1];
      out[size - 1] = out[size - 2];
    }
    return Status::kSuccess;
  }
};

template struct Instructions<CNArrMathSmooth>;

}  // namespace formula
