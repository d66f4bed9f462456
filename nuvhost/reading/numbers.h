// Numbers as data files have them.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace nuvhost {

/// With small letters for capitals.
std::string Lowered(std::string_view text);

/// A number of up to 8 characters behind a minus, digits with a decimal point or none; false for
/// any other text. Behind the text stand `behind` more characters that may be read.
bool ParseShortest(std::string_view text, std::size_t behind, double& number);

/// Any number with that decimal sign; nothing for other texts. `text` has no blanks around it.
/// Beyond the range it is infinite.
std::optional<double> ParseNumber(std::string_view text, char decimal);

/// Whether a number is infinite that its text does not call so.
bool IsInfinite(std::optional<double> number, std::string_view text);

}  // namespace nuvhost
