// A text made by a user's format, as the result of an instruction.
#pragma once

#include <algorithm>
#include <span>
#include <string>
#include <string_view>

#include "algorithm/number_format.h"
#include "plugin/call.h"

namespace formula {

/// How many invalid conversions of a format are reported one by one.
inline constexpr std::size_t kReportedConversions = 100;

/// Writes the text to the call's first result, with a warning for each of the first invalid
/// conversions and one that counts the rest. `source` is the display name of the instruction.
inline Status SetFormatted(Call& call, const char* source, std::string_view format,
                           std::span<const double> numbers) {
  const FormattedText formatted = FormatNumbers(format, numbers);
  const std::span<const std::string_view> invalid = formatted.invalid;
  const std::size_t reported = std::min(invalid.size(), kReportedConversions);
  for (const std::string_view conversion : invalid.first(reported)) {
    const std::string text = "Invalid conversion \"" + std::string(conversion) + "\" in format";
    call.Warn(source, text.c_str());
  }
  if (invalid.size() > reported) {
    const std::string text =
        std::to_string(invalid.size() - reported) + " more invalid conversions in format";
    call.Warn(source, text.c_str());
  }
  return call.Set(0, formatted.text);
}

}  // namespace formula
