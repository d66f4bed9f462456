// A text made by a user's format, as the result of an instruction.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "algorithm/number_format.h"
#include "plugin/call.h"

namespace formula {

/// Writes the text to the call's first result, with a warning for each invalid conversion. `source`
/// is the display name of the instruction.
inline Status SetFormatted(Call& call, const char* source, std::string_view format,
                           std::span<const double> numbers) {
  const FormattedText formatted = FormatNumbers(format, numbers);
  for (const std::string_view conversion : formatted.invalid) {
    const std::string text = "Invalid conversion \"" + std::string(conversion) + "\" in format";
    call.Warn(source, text.c_str());
  }
  return call.Set(0, formatted.text);
}

}  // namespace formula
