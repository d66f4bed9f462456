#include "nuvhost/running/lost_digits.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <string_view>

#include "nuvhost/text/names.h"
#include "nuvhost/values/value_text.h"

namespace nuvhost {
namespace {

constexpr double kLeastSpread = 1e-7;  // of the mean

/// The instructions that compute a variance, and where their values begin among the inputs.
constexpr struct {
  std::string_view identifier;
  std::size_t first;
} kOverVariances[] = {{"_Nuv_Numeric_CVariance_", 0},  {"_Nuv_Numeric_CVarianceArr_", 0},
                      {"_Nuv_Array_CNMeanAndVar_", 0}, {"_Nuv_Numeric-Stat_CCp_", 2},
                      {"_Nuv_Numeric-Stat_CCpk_", 2},  {"_Nuv_Default_CCpArr_", 2},
                      {"_Nuv_Number-Stat_CCpkArr_", 2}};

struct Range {
  double least = 0.0;
  double most = 0.0;
  double sum = 0.0;
  std::size_t count = 0;

  void Add(double value) {
    least = count == 0 ? value : std::min(least, value);
    most = count == 0 ? value : std::max(most, value);
    sum += value;
    ++count;
  }
};

Range RangeOf(const std::vector<CNuvObject>& inputs, std::size_t first) {
  Range range;
  for (std::size_t i = first; i < inputs.size(); ++i) {
    if (inputs[i].GetType() == NUV_OBJ_DOUBLE_VECTOR) {
      const auto& values = static_cast<const CNuvDoubleVector&>(*inputs[i].Get());
      for (std::size_t j = 0; j < values.Size(); ++j) range.Add(values[j]);
    } else {
      range.Add(static_cast<double>(inputs[i]));
    }
  }
  return range;
}

}  // namespace

std::optional<std::string> LostDigits(const DescriptorRecord& descriptor,
                                      const std::vector<CNuvObject>& inputs) {
  const auto* const found = std::ranges::find_if(
      kOverVariances, [&](const auto& row) { return row.identifier == descriptor.identifier; });
  if (found == std::end(kOverVariances)) return std::nullopt;
  const Range range = RangeOf(inputs, found->first);
  const double mean = range.sum / static_cast<double>(range.count);
  const double spread = range.most - range.least;
  const bool is_lost = range.count > 1 && spread > 0.0 && spread < kLeastSpread * std::abs(mean) &&
                       std::isfinite(mean);
  if (!is_lost) return std::nullopt;
  return fmt::format(
      "the values differ by less than 1e-7 of their mean, so that their variance has lost its "
      "digits; subtract a constant from them{} first, such as {}",
      found->first == 0 ? "" : " and from the limits", NumberText(range.least));
}

}  // namespace nuvhost
