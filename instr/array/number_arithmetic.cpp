// Element-wise arithmetic on number arrays.

#include <algorithm>

#include "algorithm/kernels.h"
#include "plugin/instruction.h"

namespace formula {
namespace {

/// Two arrays to one as long as the shorter.
Status Combine(Call& call, Kernels::TwoArrays* kernel, const CNuvDoubleVector& a,
               const CNuvDoubleVector& b) {
  CNuvDoubleVector& out = call.NumbersResult(0);
  out.Resize(std::min(a.Size(), b.Size()));
  kernel(out.GetStorage(), a.GetStorage(), b.GetStorage(), out.Size());
  return Status::kSuccess;
}

/// Below this size an array takes the general formula, whatever the constants.
constexpr std::size_t kSpecialisedSize = 16;

}  // namespace

/// Clears the sign bit: -0 becomes 0, and a NaN keeps its payload.
struct CNArrMathAbsolute final : Instruction<CNArrMathAbsolute> {
  static constexpr Definition kDefinition{
      .category = "Array: Number",
      .name = "AbsoluteValue",
      .identifier = "_Nuv_Array_CNArrMathAbsolute_",
      .help = 460247,
      .description = "Output array = |array|",
      .inputs = {Numbers("array", "Input array")},
      .results = {Numbers("|array|")},
  };
  static Status Run(Call& call, const CNuvDoubleVector& in) {
    CNuvDoubleVector& out = call.NumbersResult(0);
    out.Resize(in.Size());
    kKernels->absolute(out.GetStorage(), in.GetStorage(), out.Size());
    return Status::kSuccess;
  }
};

struct CNArrMathSubtract final : Instruction<CNArrMathSubtract> {
  static constexpr Definition kDefinition{
      .category = "Array: Number",
      .name = "Subtract",
      .identifier = "_Nuv_Array_CNArrMathSubtract_",
      .help = 460249,
      .description = "Output array = array_1 - array_2",
      .inputs = {Numbers("array_1", "Input array to subtract from"),
                 Numbers("array_2", "Input array to subtract")},
      .results = {Numbers("array_1 - array_2")},
  };
  static Status Run(Call& call, const CNuvDoubleVector& array_1, const CNuvDoubleVector& array_2) {
    return Combine(call, kKernels->subtract, array_1, array_2);
  }
};

struct CNArrMathAdd final : Instruction<CNArrMathAdd> {
  static constexpr Definition kDefinition{
      .category = "Array: Number",
      .name = "Add",
      .identifier = "_Nuv_Array_CNArrMathAdd_",
      .help = 460250,
      .description = "New output array = array_1 + array_2",
      .inputs = {Numbers("array_1", "first input array"), Numbers("array_2", "second input array")},
      .results = {Numbers("new array")},
  };
  static Status Run(Call& call, const CNuvDoubleVector& array_1, const CNuvDoubleVector& array_2) {
    return Combine(call, kKernels->add, array_1, array_2);
  }
};

struct CNArrMathMultiply final : Instruction<CNArrMathMultiply> {
  static constexpr Definition kDefinition{
      .category = "Array: Number",
      .name = "Multiply",
      .identifier = "_Nuv_Array_CNArrMathMultiply_",
      .help = 460251,
      .description = "Output array = array_1 * array_2",
      .inputs = {Numbers("array_1", "first input array"), Numbers("array_2", "second input array")},
      .results = {Numbers("array_1 * array_2")},
  };
  static Status Run(Call& call, const CNuvDoubleVector& array_1, const CNuvDoubleVector& array_2) {
    return Combine(call, kKernels->multiply, array_1, array_2);
  }
};

/// Kept: from 16 elements on a factor of 0 never reads the array and a summand of 0 is not added,
/// so that NaN, infinities and -0 come out otherwise than in shorter arrays.
struct CNArrMathConstMulAdd final : Instruction<CNArrMathConstMulAdd> {
  static constexpr Definition kDefinition{
      .category = "Array: Number",
      .name = "ConstMulAdd",
      .identifier = "_Nuv_Array_CNArrMathConstMulAdd_",
      .help = 460254,
      .description = "Output array = input_array*mulConst + addConst",
      .inputs = {Numbers("input array"), Number("mulConst", 1.0, "multiplication constant"),
                 Number("addConst", 0.0, "add constant")},
      .results = {Numbers("output array")},
  };
  static Status Run(Call& call, const CNuvDoubleVector& array, double factor, double summand) {
    CNuvDoubleVector& result = call.NumbersResult(0);
    const std::size_t size = array.Size();
    result.Resize(size);
    double* out = result.GetStorage();
    const double* in = array.GetStorage();
    if (size < kSpecialisedSize) {
      kKernels->scale_offset(out, in, size, factor, summand);
    } else if (factor == 0.0) {
      kKernels->fill(out, size, summand == 0.0 ? 0.0 : summand);
    } else if (factor == 1.0 && summand == 0.0) {
      if (out != in) std::copy_n(in, size, out);
    } else if (factor == 1.0) {
      kKernels->offset(out, in, size, summand);
    } else if (summand == 0.0) {
      kKernels->scale(out, in, size, factor);
    } else {
      kKernels->scale_offset(out, in, size, factor, summand);
    }
    return Status::kSuccess;
  }
};

template struct Instructions<CNArrMathAbsolute, CNArrMathSubtract, CNArrMathAdd, CNArrMathMultiply,
                             CNArrMathConstMulAdd>;

}  // namespace formula
