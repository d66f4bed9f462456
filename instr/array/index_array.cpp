// The order of a number array's elements.

#include <memory>

#include "algorithm/sort.h"
#include "plugin/instruction.h"

namespace formula {

/// The indices of the elements in order of their values, equal ones in order of their indices. NaN
/// stand outermost.
struct CNArrMathIndexArray final : Instruction<CNArrMathIndexArray> {
  static constexpr Definition kDefinition{
      .category = "Array: Number",
      .name = "IndexArray",
      .identifier = "_Nuv_Array_CNArrMathIndexArray_",
      .help = 460287,
      .description = "Index an input array using an index method",
      .constants = {{.type = NUV_PARAM_CHOICE,
                     .group = "Parameters",
                     .name = "index method",
                     .description = "Method to use for indexing input array",
                     .default_value = 1,
                     .choices = {{0, "none"},
                                 {1, "descending - largest first"},
                                 {2, "ascending - smallest first"}}}},
      .inputs = {Numbers("input array", "Input array of numbers to be indexed")},
      .results = {Numbers("index array")},
  };
  static Status Run(Call& call, const CNuvDoubleVector& array) {
    const std::int32_t method = call.ConstantInteger(0);
    CNuvDoubleVector& result = call.NumbersResult(0);
    const std::size_t size = array.Size();
    if (method != 1 && method != 2) {
      result.Resize(size);
      for (std::size_t i = 0; i < size; ++i) result[i] = static_cast<double>(i);
      return Status::kSuccess;
    }
    const auto words = std::make_unique_for_overwrite<std::uint64_t[]>(2 * size);
    std::uint64_t* keys = words.get();
    std::uint64_t* indices = keys + size;
    result.Resize(size);
    kKernels->sort_keys(keys, array.GetStorage(), size, method == 1);
    // The keys hold all that is needed: the result's room serves the sort, even if it is the input.
    double* out = result.GetStorage();
    SortIndices(indices, keys, size, out);
    for (std::size_t i = 0; i < size; ++i) {
      out[i] = static_cast<double>(static_cast<std::int64_t>(indices[i]));
    }
    return Status::kSuccess;
  }
};

template struct Instructions<CNArrMathIndexArray>;

}  // namespace formula
