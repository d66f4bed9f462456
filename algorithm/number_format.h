// printf-style formats over numbers: the same text on every platform and in every locale, and safe
// whatever the format says.
//
// A format is a user's text, so none of it reaches the C library. A conversion is
// %[-+ #0][width][.precision][l]{e,E,f,F,g,G,a,A} and takes the next number; %% is a percent sign.
// Anything else behind a % (%s, %n, %d, *, %1$f, another length such as L), a width or a precision
// over 65535, and a conversion for which no number is left, is invalid: it is copied as it stands,
// takes no number, and is told to the user.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace formula {

struct FormattedText {
  std::string text;
  /// The invalid conversions, in their order, as parts of the format.
  std::vector<std::string_view> invalid;
};

/// Formats as C defines it, to the exact decimal value, rounded half to even; the sign of a NaN is
/// shown.
FormattedText FormatNumbers(std::string_view format, std::span<const double> numbers);

}  // namespace formula
