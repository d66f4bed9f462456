// The chart of a characteristic: its values part by part, and how they spread beside that.
#pragma once

#include <string>

#include "nuvhost/showing/page_data.h"

namespace nuvhost {

/// A run chart and a histogram over one scale of values, as HTML that the page's style lays out:
/// lines and points are SVG paths stretched to the room there is, all texts stand beside them.
/// Empty for a characteristic without limits for numbers, or without a finite number.
///
/// The scale holds the limits and all values but those very far off, which are drawn at its end.
/// Many parts are drawn as the range of each group, bad ones always one by one.
std::string Chart(const PageData& page, std::size_t characteristic);

/// A number as a person reads it: with so many decimals, or with 6 digits.
std::string ShortNumber(double number, std::optional<int> decimals);

}  // namespace nuvhost
