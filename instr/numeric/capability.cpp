// Process-capability indexes Cp and Cpk: the tolerance between two specification limits against
// the spread of a sample (AIAG, Statistical Process Control, 2nd edition, 2005).

#include <cmath>

#include "algorithm/sample.h"
#include "plugin/instruction.h"

namespace formula {
namespace {

/// What an essentially constant sample gives. The threshold applies to the variance.
constexpr double kCappedIndex = 999.0;
constexpr double kConstantSampleVariance = 1e-7;

/// What tells a capability index from its sisters.
struct Row {
  const char* name;
  const char* identifier;
  std::uint32_t help;
  const char* description;
  const char* result;
};

constexpr Definition Capability(const Row& row, const Parameter& sample, bool repeatable) {
  return {.category = "Statistics",
          .name = row.name,
          .identifier = row.identifier,
          .help = row.help,
          .description = row.description,
          .repeatable = repeatable,
          .inputs = {Number("HiLim", 0.0), Number("LoLim", 0.0), sample},
          .results = {Number(row.result)}};
}
constexpr Definition OverInputs(const Row& row) {
  return Capability(row, Number("number", 0.0), true);
}
constexpr Definition OverArray(const Row& row) {
  return Capability(row, Numbers("numbers"), false);
}

/// Writes index(upper limit, lower limit, mean, sigma); fewer than two values fail.
template <class Sample, class Index>
Status SetIndex(Call& call, double high, double low, const Sample& sample, Index index) {
  const std::optional<Moments> moments = SampleMoments(sample);
  if (!moments) return Status::kFailure;
  if (moments->variance < kConstantSampleVariance) return call.Set(0, kCappedIndex);
  return call.Set(0, index(high, low, moments->mean, std::sqrt(moments->variance)));
}

double Cp(double high, double low, double /*mean*/, double sigma) {
  return (high - low) / (6.0 * sigma);
}

/// Negative where the mean lies outside the limits.
double Cpk(double high, double low, double mean, double sigma) {
  const double above = high - mean;
  const double below = mean - low;
  return (above > below ? below : above) / (3.0 * sigma);
}

}  // namespace

/// Kept: the identifiers of all four are irregular, each in its own way; saved programs find them
/// by these.
struct CCp final : Instruction<CCp> {
  static constexpr Definition kDefinition = OverInputs({
      .name = "Cp",
      .identifier = "_Nuv_Numeric-Stat_CCp_",
      .help = 460139,
      .description = "Returns the process capability index Cp",
      .result = "Cp",
  });
  static Status Run(Call& call, double high, double low, Repeated<double> sample) {
    return SetIndex(call, high, low, sample, Cp);
  }
};

struct CCpk final : Instruction<CCpk> {
  static constexpr Definition kDefinition = OverInputs({
      .name = "Cpk",
      .identifier = "_Nuv_Numeric-Stat_CCpk_",
      .help = 460140,
      .description = "Returns the process capability index Cpk (2 sided specification limits).",
      .result = "Cpk",
  });
  static Status Run(Call& call, double high, double low, Repeated<double> sample) {
    return SetIndex(call, high, low, sample, Cpk);
  }
};

struct CCpArr final : Instruction<CCpArr> {
  static constexpr Definition kDefinition = OverArray({
      .name = "CpArr",
      .identifier = "_Nuv_Default_CCpArr_",
      .help = 460141,
      .description =
          "Returns the process capability index Cp for all the values in the array argument.",
      .result = "Cp",
  });
  static Status Run(Call& call, double high, double low, const CNuvDoubleVector& sample) {
    return SetIndex(call, high, low, sample, Cp);
  }
};

struct CCpkArr final : Instruction<CCpkArr> {
  static constexpr Definition kDefinition = OverArray({
      .name = "CpkArr",
      .identifier = "_Nuv_Number-Stat_CCpkArr_",
      .help = 460142,
      .description = "Returns the process capability index Cpk2 sided specification limits) for "
                     "all the valuesin "
                     "the array argument.",
      .result = "Cpk",
  });
  static Status Run(Call& call, double high, double low, const CNuvDoubleVector& sample) {
    return SetIndex(call, high, low, sample, Cpk);
  }
};

template struct Instructions<CCp, CCpk, CCpArr, CCpkArr>;

}  // namespace formula
