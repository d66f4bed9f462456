// Element-wise arithmetic on number arrays.

#include <algorithm>

#include "instr/array/math/kernels.h"
#include "plugin/instruction.h"

namespace formula {
namespace {

/// Two arrays to one as long as the shorter. A member states its row and its kernel.
template <class I>
struct TwoArrayFunction : Instruction<I> {
  static constexpr Definition Row(const char* name, const char* identifier, std::uint32_t help,
                                  const char* description, const char* first, const char* second,
                                  const char* result) {
    return {.category = "Array: Number",
            .name = name,
            .identifier = identifier,
            .help = help,
            .description = description,
            .inputs = {Numbers("array_1", first), Numbers("array_2", second)},
            .results = {Numbers(result)}};
  }
  static Status Run(Call& call) {
    CNuvDoubleVector& out = call.NumbersResult(0);
    const CNuvDoubleVector& a = call.Numbers(0);
    const CNuvDoubleVector& b = call.Numbers(1);
    out.Resize(std::min(a.Size(), b.Size()));
    (kKernels->*I::kKernel)(out.GetStorage(), a.GetStorage(), b.GetStorage(), out.Size());
    return Status::kSuccess;
  }
};

/// Below this size an array takes the general formula, whatever the constants.
constexpr std::size_t kSpecialisedSize = 16;

}  // namespace

/// Clears the sign bit: -0 becomes 0, and a NaN keeps its payload.
struct CNArrMathAbsolute final : Instruction<CNArrMathAbsolute> {
  static constexpr Definition kDefinition{.category = "Array: Number",
                                          .name = "AbsoluteValue",
                                          .identifier = "_Nuv_Array_CNArrMathAbsolute_",
                                          .help = 460247,
                                          .description = "Output array = |array|",
                                          .inputs = {Numbers("array", "Input array")},
                                          .results = {Numbers("|array|")}};
  static Status Run(Call& call) {
    CNuvDoubleVector& out = call.NumbersResult(0);
    const CNuvDoubleVector& in = call.Numbers(0);
    out.Resize(in.Size());
    kKernels->absolute(out.GetStorage(), in.GetStorage(), out.Size());
    return Status::kSuccess;
  }
};

struct CNArrMathSubtract final : TwoArrayFunction<CNArrMathSubtract> {
  static constexpr auto kKernel = &Kernels::subtract;
  static constexpr Definition kDefinition =
      Row("Subtract", "_Nuv_Array_CNArrMathSubtract_", 460249, "Output array = array_1 - array_2",
          "Input array to subtract from", "Input array to subtract", "array_1 - array_2");
};

struct CNArrMathAdd final : TwoArrayFunction<CNArrMathAdd> {
  static constexpr auto kKernel = &Kernels::add;
  static constexpr Definition kDefinition =
      Row("Add", "_Nuv_Array_CNArrMathAdd_", 460250, "New output array = array_1 + array_2",
          "first input array", "second input array", "new array");
};

struct CNArrMathMultiply final : TwoArrayFunction<CNArrMathMultiply> {
  static constexpr auto kKernel = &Kernels::multiply;
  static constexpr Definition kDefinition =
      Row("Multiply", "_Nuv_Array_CNArrMathMultiply_", 460251, "Output array = array_1 * array_2",
          "first input array", "second input array", "array_1 * array_2");
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
      .results = {Numbers("output array")}};
  static Status Run(Call& call) {
    const double factor = call.Number(1);
    const double summand = call.Number(2);
    CNuvDoubleVector& result = call.NumbersResult(0);
    const CNuvDoubleVector& array = call.Numbers(0);
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

template IXInstrPlugin* NewInstruction<CNArrMathAbsolute>() noexcept;
template IXInstrPlugin* NewInstruction<CNArrMathSubtract>() noexcept;
template IXInstrPlugin* NewInstruction<CNArrMathAdd>() noexcept;
template IXInstrPlugin* NewInstruction<CNArrMathMultiply>() noexcept;
template IXInstrPlugin* NewInstruction<CNArrMathConstMulAdd>() noexcept;

}  // namespace formula
