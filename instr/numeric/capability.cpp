// Process-capability indexes Cp and Cpk: the tolerance between two specification limits against
// the spread of a sample (AIAG, Statistical Process Control, 2nd edition, 2005).

#include <cmath>

#include "instr/numeric/sample.h"
#include "plugin/instruction.h"

namespace formula {
namespace {

/// What an essentially constant sample gives. The threshold applies to the variance.
constexpr double kCappedIndex = 999.0;
constexpr double kConstantSampleVariance = 1e-7;

constexpr Definition Row(const char* name, const char* identifier, std::uint32_t help,
                         const char* description, Parameter sample, bool repeatable,
                         const char* result) {
  return {.category = "Statistics",
          .name = name,
          .identifier = identifier,
          .help = help,
          .description = description,
          .repeatable = repeatable,
          .inputs = {Number("HiLim", 0.0), Number("LoLim", 0.0), sample},
          .results = {Number(result)}};
}

constexpr Definition OverInputs(const char* name, const char* identifier, std::uint32_t help,
                                const char* description, const char* result) {
  return Row(name, identifier, help, description, Number("number", 0.0), true, result);
}

constexpr Definition OverArray(const char* name, const char* identifier, std::uint32_t help,
                               const char* description, const char* result) {
  return Row(name, identifier, help, description, Numbers("numbers"), false, result);
}

/// Writes index(upper limit, lower limit, mean, sigma); fewer than two values fail.
template <class Sample, class Index>
Status SetIndex(Call& call, const Sample& sample, Index index) {
  const double high = call.Number(0);
  const double low = call.Number(1);
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
  static constexpr Definition kDefinition = OverInputs(
      "Cp", "_Nuv_Numeric-Stat_CCp_", 460139, "Returns the process capability index Cp", "Cp");
  static Status Run(Call& call) { return SetIndex(call, InputSample(call, 2), Cp); }
};

struct CCpk final : Instruction<CCpk> {
  static constexpr Definition kDefinition =
      OverInputs("Cpk", "_Nuv_Numeric-Stat_CCpk_", 460140,
                 "Returns the process capability index Cpk (2 sided specification limits).", "Cpk");
  static Status Run(Call& call) { return SetIndex(call, InputSample(call, 2), Cpk); }
};

struct CCpArr final : Instruction<CCpArr> {
  static constexpr Definition kDefinition = OverArray(
      "CpArr", "_Nuv_Default_CCpArr_", 460141,
      "Returns the process capability index Cp for all the values in the array argument.", "Cp");
  static Status Run(Call& call) { return SetIndex(call, ArraySample(call, 2), Cp); }
};

/// Kept: the description lacks a parenthesis and a blank; hosts show it so.
struct CCpkArr final : Instruction<CCpkArr> {
  static constexpr Definition kDefinition = OverArray(
      "CpkArr", "_Nuv_Number-Stat_CCpkArr_", 460142,
      "Returns the process capability index Cpk2 sided specification limits) for all the valuesin "
      "the array argument.",
      "Cpk");
  static Status Run(Call& call) { return SetIndex(call, ArraySample(call, 2), Cpk); }
};

template IXInstrPlugin* NewInstruction<CCp>() noexcept;
template IXInstrPlugin* NewInstruction<CCpk>() noexcept;
template IXInstrPlugin* NewInstruction<CCpArr>() noexcept;
template IXInstrPlugin* NewInstruction<CCpkArr>() noexcept;

}  // namespace formula
