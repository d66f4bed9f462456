// Sums, extremes, means and variances, of numbers given one by one and of number arrays.

#include "algorithm/kernels.h"
#include "algorithm/sample.h"
#include "plugin/instruction.h"

namespace formula {
namespace {

/// What tells a statistics instruction from its sisters.
struct Row {
  const char* name;
  const char* identifier;
  std::uint32_t help;
  const char* description;
  ConstantList<Parameter, 16> results;
};

constexpr Definition Statistics(const Row& row, const Parameter& sample, bool repeatable) {
  return {.category = "Statistics",
          .name = row.name,
          .identifier = row.identifier,
          .help = row.help,
          .description = row.description,
          .repeatable = repeatable,
          .inputs = {sample},
          .results = row.results};
}
constexpr Definition OverInputs(const Row& row) {
  return Statistics(row, Number("number", 0.0), true);
}
constexpr Definition OverArray(const Row& row) {
  return Statistics(row, Numbers("numbers"), false);
}

Status SetExtreme(Call& call, const Extreme& extreme) {
  call.Set(0, extreme.value);
  return call.Set(1, static_cast<std::int32_t>(extreme.index));
}

/// Writes the input that beats all before it, and its index; the first of equals wins.
template <class Beats>
Status SetExtremeInput(Call& call, Repeated<double> sample, Beats beats) {
  Extreme best{.value = sample[0], .index = 0};
  for (std::int32_t i = 1; i < sample.Size(); ++i) {
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
  static constexpr Definition kDefinition = OverInputs({
      .name = "Min",
      .identifier = "_Nuv_Numeric_CMin_",
      .help = 460130,
      .description = "Returns the minimum of all numbers received as arguments.",
      .results = {Number("min"), Number("idx")},
  });
  static Status Run(Call& call, Repeated<double> numbers) {
    return SetExtremeInput(call, numbers, kSmaller);
  }
};

struct CMax final : Instruction<CMax> {
  static constexpr Definition kDefinition = OverInputs({
      .name = "Max",
      .identifier = "_Nuv_Numeric_CMax_",
      .help = 460131,
      .description = "Returns the maximum of all numbers received as arguments.",
      .results = {Number("max"), Number("idx")},
  });
  static Status Run(Call& call, Repeated<double> numbers) {
    return SetExtremeInput(call, numbers, kGreater);
  }
};

struct CMean final : Instruction<CMean> {
  static constexpr Definition kDefinition = OverInputs({
      .name = "Mean",
      .identifier = "_Nuv_Numeric_CMean_",
      .help = 460132,
      .description = "Returns the average of all numbers received as arguments.",
      .results = {Number("avg")},
  });
  static Status Run(Call& call, Repeated<double> numbers) { return SetMean(call, numbers); }
};

/// Kept: this is the population variance (division by n), while "VarianceArr" and the capability
/// indexes take the sample variance; saved programs have their limits set by it.
struct CVariance final : Instruction<CVariance> {
  static constexpr Definition kDefinition = OverInputs({
      .name = "Variance",
      .identifier = "_Nuv_Numeric_CVariance_",
      .help = 460133,
      .description =
          "Returns the variance (square of standard deviation) of all the numbers received as "
          "arguments.",
      .results = {Number("variance")},
  });
  static Status Run(Call& call, Repeated<double> sample) {
    if (sample.Size() < 2) return Status::kFailure;
    const auto n = static_cast<double>(sample.Size());
    const PowerSums sums = SumPowers(sample);
    return call.Set(0, (sums.squares - sums.values * sums.values / n) / n);
  }
};

struct CSumArr final : Instruction<CSumArr> {
  static constexpr Definition kDefinition = OverArray({
      .name = "SumArr",
      .identifier = "_Nuv_Numeric_CSumArr_",
      .help = 460134,
      .description = "Returns the sum of the values in its array argument.",
      .results = {Number("sum")},
  });
  static Status Run(Call& call, const CNuvDoubleVector& numbers) {
    return call.Set(0, Sum(numbers));
  }
};

struct CMinArr final : Instruction<CMinArr> {
  static constexpr Definition kDefinition = OverArray({
      .name = "MinArr",
      .identifier = "_Nuv_Numeric_CMinArr_",
      .help = 460135,
      .description = "Returns the minimum of all the values in the array argument.",
      .results = {Number("min"), Number("idx")},
  });
  static Status Run(Call& call, const CNuvDoubleVector& array) {
    if (array.Size() == 0) return Status::kFailure;
    return SetExtreme(call, kKernels->minimum(array.GetStorage(), array.Size()));
  }
};

struct CMaxArr final : Instruction<CMaxArr> {
  static constexpr Definition kDefinition = OverArray({
      .name = "MaxArr",
      .identifier = "_Nuv_Numeric_CMaxArr_",
      .help = 460136,
      .description = "Returns the maximum of all the values in the array argument.",
      .results = {Number("max"), Number("idx")},
  });
  static Status Run(Call& call, const CNuvDoubleVector& array) {
    if (array.Size() == 0) return Status::kFailure;
    return SetExtreme(call, kKernels->maximum(array.GetStorage(), array.Size()));
  }
};

struct CMeanArr final : Instruction<CMeanArr> {
  static constexpr Definition kDefinition = OverArray({
      .name = "MeanArr",
      .identifier = "_Nuv_Numeric_CMeanArr_",
      .help = 460137,
      .description = "Returns the average of all the values in the array argument.",
      .results = {Number("avg")},
  });
  static Status Run(Call& call, const CNuvDoubleVector& numbers) { return SetMean(call, numbers); }
};

/// The sample variance (division by n - 1), unlike "Variance".
struct CVarianceArr final : Instruction<CVarianceArr> {
  static constexpr Definition kDefinition = OverArray({
      .name = "VarianceArr",
      .identifier = "_Nuv_Numeric_CVarianceArr_",
      .help = 460138,
      .description =
          "Returns the variance (square of standard deviation) of all the values in the array "
          "argument.",
      .results = {Number("variance")},
  });
  static Status Run(Call& call, const CNuvDoubleVector& numbers) {
    const std::optional<Moments> moments = SampleMoments(numbers);
    if (!moments) return Status::kFailure;
    return call.Set(0, moments->variance);
  }
};

template struct Instructions<CMin, CMax, CMean, CVariance, CSumArr, CMinArr, CMaxArr, CMeanArr,
                             CVarianceArr>;

}  // namespace formula
