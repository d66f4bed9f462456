// Limits: what the value of a report's row must be for its part to be good.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "host/nuv_object.h"
#include "nuvhost/reading/checker.h"

namespace nuvhost {

/// A number from `least` to `most`, both included, or an expected truth; without any, nothing is
/// asked of the value.
struct Limits {
  std::optional<double> least;
  std::optional<double> most;
  std::optional<bool> expected;

  bool Judge() const { return least || most || expected; }
  bool operator==(const Limits&) const = default;
};

/// Reads "min", "max", "nominal" with "tolerance", and "expect" of a row whose value has the
/// parameter type. Nominal values and tolerances are added as decimals: 24.1 and 0.05 give 24.15.
Limits ReadLimits(Checker& checker, const Located& row, std::uint32_t type);

/// Whether a value lies within; a number that is not finite never does.
bool Hold(const Limits& limits, const CNuvObject& value);

/// "24.05 to 24.15", "at least 3", "at most 2", "yes"; empty where nothing is asked.
std::string LimitsText(const Limits& limits);
/// Takes off a text what LimitsText wrote at its beginning; nothing, and the text stays, where it
/// begins with something else.
std::optional<Limits> TakeLimits(std::string_view& text);

}  // namespace nuvhost
