#include "nuvhost/showing/page_statistics.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "reference_host/services/call_context.h"

namespace nuvhost {
namespace {

/// The first result of an instruction, if it is there, succeeds and gives a finite number.
std::optional<double> Call(const Catalogue& catalogue, const char* identifier,
                           const std::vector<CNuvObject>& inputs) {
  const CatalogueEntry* instruction = catalogue.FindIdentifier(identifier);
  if (instruction == nullptr) return std::nullopt;
  Services services;
  CallContext context(*instruction->descriptor, services);
  context.inputs = inputs;
  if (context.Execute(*instruction->prototype) != 0) return std::nullopt;
  const auto number = static_cast<double>(context.results[0]);
  return std::isfinite(number) ? std::optional(number) : std::nullopt;
}

CNuvObject ArrayOf(const std::vector<double>& numbers) {
  CNuvObject value;
  auto& array = static_cast<CNuvDoubleVector&>(value);
  for (const double number : numbers) array.PushBack(number);
  return value;
}

void SummariseNumbers(Statistics& statistics, const Limits& limits, std::vector<double> numbers,
                      const Catalogue& catalogue) {
  constexpr int kLargest = 10;  // binary digits of the largest deviation from the first
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  statistics.least = Call(catalogue, "_Nuv_Numeric_CMinArr_", {ArrayOf(numbers)});
  statistics.most = Call(catalogue, "_Nuv_Numeric_CMaxArr_", {ArrayOf(numbers)});

  const double first = numbers.front();
  double farthest = 0;
  for (const double number : numbers) farthest = std::max(farthest, std::abs(number - first));
  if (!std::isfinite(farthest)) return;
  const int shift = farthest > 0 ? kLargest - std::ilogb(farthest) : 0;
  const auto moved = [&](double number) { return std::ldexp(number - first, shift); };
  for (double& number : numbers) number = moved(number);
  const CNuvObject array = ArrayOf(numbers);

  const auto mean = Call(catalogue, "_Nuv_Numeric_CMeanArr_", {array});
  const auto variance = Call(catalogue, "_Nuv_Numeric_CVarianceArr_", {array});
  if (mean) statistics.mean = first + std::ldexp(*mean, -shift);
  if (!variance || *variance < 0) return;
  statistics.deviation = std::ldexp(std::sqrt(*variance), -shift);
  if (*variance == 0) return;
  CNuvObject high;
  CNuvObject low;
  high = limits.most ? moved(*limits.most) : kInfinity;
  low = limits.least ? moved(*limits.least) : -kInfinity;
  if (limits.least && limits.most) {
    statistics.cp = Call(catalogue, "_Nuv_Default_CCpArr_", {high, low, array});
  }
  statistics.cpk = Call(catalogue, "_Nuv_Number-Stat_CCpkArr_", {high, low, array});
}

}  // namespace

void Summarise(PageData& page, const Catalogue& catalogue) {
  page.statistics.clear();
  for (std::size_t i = 0; i < page.characteristics.size(); ++i) {
    Statistics& statistics = page.statistics.emplace_back();
    std::vector<double> numbers;
    for (const PartResult& part : page.parts) {
      const PartValue& value = part.values[i];
      if (!value.holds) ++statistics.bad;
      if (value.number && value.holds) ++statistics.good;
      if (value.number && std::isfinite(*value.number)) numbers.push_back(*value.number);
    }
    statistics.count = numbers.size();
    const Limits& limits = page.characteristics[i].limits;
    if (numbers.empty() || limits.expected) continue;
    SummariseNumbers(statistics, limits, std::move(numbers), catalogue);
  }
}

}  // namespace nuvhost
