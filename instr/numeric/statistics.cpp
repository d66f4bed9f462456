// Sums, extremes, means and variances, of numbers given one by one and of number arrays.

#include "instr/array/math/kernels.h"
#include "instr/numeric/sample.h"
#include "plugin/instruction.h"

namespace formula {
namespace {

constexpr Definition OverInputs(const char* name, const char* identifier, std::uint32_t help,
                                const char* description, ConstantList<Parameter, 16> results) {
  return {.category = "Statistics",
          .name = name,
          .identifier = identifier,
          .help = help,
          .description = description,
          .repeatable = true,
          .inputs = {Number("number", 0.0)},
          .results = results};
}

constexpr Definition OverArray(const char* name, const char* identifier, std::uint32_t help,
                               const char* description, ConstantList<Parameter, 16> results) {
  return {.category = "Statistics",
          .name = name,
          .identifier = identifier,
          .help = help,
          .description = description,
          .inputs = {Numbers("numbers")},
          .results = results};
}

Status SetExtreme(Call& call, const Extreme& extreme) {
  call.Set(0, extreme.value);
  return call.Set(1, static_cast<std::int32_t>(extreme.index));
}

/// Writes the input that beats all before it, and its index; the first of equals wins.
template <class Beats>
Status SetExtremeInput(Call& call, Beats beats) {
  const InputSample sample(call, 0);
  Extreme best{.value = sample[0], .index = 0};
  for (std::int64_t i = 1; i < sample.Size(); ++i) {
    const double value = sample[i];
    if (beats(value, best.value)) best = {.value = value, .index = static_cast<std::size_t>(i)};
  }
  return SetExtreme(call, best);
}

template <class Sample>
Status SetMean(Call& call, const Sample& sample) {
  if (sample.Size() < 1) return Status::kFailure;
  return call.Set(0, Sum(sample) / static_cast<double>(sample.Size()));
}

constexpr auto kSmaller = [](double value, double best) { return best > value; };
constexpr auto kGreater = [](double value, double best) { return value > best; };

}  // namespace

struct CMin final : Instruction<CMin> {
  static constexpr Definition kDefinition = OverInputs(
      "Min", "_Nuv_Numeric_CMin_", 460130,
      "Returns the minimum of all numbers received as arguments.", {Number("min"), Number("idx")});
  static Status Run(Call& call) { return SetExtremeInput(call, kSmaller); }
};

struct CMax final : Instruction<CMax> {
  static constexpr Definition kDefinition = OverInputs(
      "Max", "_Nuv_Numeric_CMax_", 460131,
      "Returns the maximum of all numbers received as arguments.", {Number("max"), Number("idx")});
  static Status Run(Call& call) { return SetExtremeInput(call, kGreater); }
};

struct CMean final : Instruction<CMean> {
  static constexpr Definition kDefinition =
      OverInputs("Mean", "_Nuv_Numeric_CMean_", 460132,
                 "Returns the average of all numbers received as arguments.", {Number("avg")});
  static Status Run(Call& call) { return SetMean(call, InputSample(call, 0)); }
};

/// Kept: this is the population variance (division by n), while "VarianceArr" and the capability
/// indexes take the sample variance; saved programs have their limits set by it.
struct CVariance final : Instruction<CVariance> {
  static constexpr Definition kDefinition = OverInputs(
      "Variance", "_Nuv_Numeric_CVariance_", 460133,
      "Returns the variance (square of standard deviation) of all the numbers received as "
      "arguments.",
      {Number("variance")});
  static Status Run(Call& call) {
    const InputSample sample(call, 0);
    if (sample.Size() < 2) return Status::kFailure;
    const auto n = static_cast<double>(sample.Size());
    const PowerSums sums = SumPowers(sample);
    return call.Set(0, (sums.squares - sums.values * sums.values / n) / n);
  }
};

struct CSumArr final : Instruction<CSumArr> {
  static constexpr Definition kDefinition =
      OverArray("SumArr", "_Nuv_Numeric_CSumArr_", 460134,
                "Returns the sum of the values in its array argument.", {Number("sum")});
  static Status Run(Call& call) { return call.Set(0, Sum(ArraySample(call, 0))); }
};

struct CMinArr final : Instruction<CMinArr> {
  static constexpr Definition kDefinition =
      OverArray("MinArr", "_Nuv_Numeric_CMinArr_", 460135,
                "Returns the minimum of all the values in the array argument.",
                {Number("min"), Number("idx")});
  static Status Run(Call& call) {
    const CNuvDoubleVector& array = call.Numbers(0);
    if (array.Size() == 0) return Status::kFailure;
    return SetExtreme(call, kKernels->minimum(array.GetStorage(), array.Size()));
  }
};

struct CMaxArr final : Instruction<CMaxArr> {
  static constexpr Definition kDefinition =
      OverArray("MaxArr", "_Nuv_Numeric_CMaxArr_", 460136,
                "Returns the maximum of all the values in the array argument.",
                {Number("max"), Number("idx")});
  static Status Run(Call& call) {
    const CNuvDoubleVector& array = call.Numbers(0);
    if (array.Size() == 0) return Status::kFailure;
    return SetExtreme(call, kKernels->maximum(array.GetStorage(), array.Size()));
  }
};

struct CMeanArr final : Instruction<CMeanArr> {
  static constexpr Definition kDefinition =
      OverArray("MeanArr", "_Nuv_Numeric_CMeanArr_", 460137,
                "Returns the average of all the values in the array argument.", {Number("avg")});
  static Status Run(Call& call) { return SetMean(call, ArraySample(call, 0)); }
};

/// The sample variance (division by n - 1), unlike "Variance".
struct CVarianceArr final : Instruction<CVarianceArr> {
  static constexpr Definition kDefinition = OverArray(
      "VarianceArr", "_Nuv_Numeric_CVarianceArr_", 460138,
      "Returns the variance (square of standard deviation) of all the values in the array "
      "argument.",
      {Number("variance")});
  static Status Run(Call& call) {
    const std::optional<Moments> moments = SampleMoments(ArraySample(call, 0));
    if (!moments) return Status::kFailure;
    return call.Set(0, moments->variance);
  }
};

template IXInstrPlugin* NewInstruction<CMin>() noexcept;
template IXInstrPlugin* NewInstruction<CMax>() noexcept;
template IXInstrPlugin* NewInstruction<CMean>() noexcept;
template IXInstrPlugin* NewInstruction<CVariance>() noexcept;
template IXInstrPlugin* NewInstruction<CSumArr>() noexcept;
template IXInstrPlugin* NewInstruction<CMinArr>() noexcept;
template IXInstrPlugin* NewInstruction<CMaxArr>() noexcept;
template IXInstrPlugin* NewInstruction<CMeanArr>() noexcept;
template IXInstrPlugin* NewInstruction<CVarianceArr>() noexcept;

}  // namespace formula
