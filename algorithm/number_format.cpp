#include "algorithm/number_format.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>
#include <optional>

namespace formula {
namespace {

/// The largest width and precision, so that no format asks for gigabytes.
constexpr int kLimit = 65535;

struct Conversion {
  bool left = false;       // -
  bool plus = false;       // +
  bool blank = false;      // a blank
  bool alternate = false;  // #
  bool zeros = false;      // 0
  int width = 0;
  int precision = -1;  // none
  char letter = 'f';   // in lower case
  bool upper = false;
};

/// How long the conversion at the start of a format is. It ends with its letter, which is what
/// follows all flags, digits, and marks that any C library knows between % and letter; a % is no
/// letter but begins the next one, so that in "100 % %f" the number is formatted.
std::size_t ConversionLength(std::string_view format) {
  if (format.starts_with("%%")) return 2;
  const std::size_t letter = format.find_first_not_of("-+ #0123456789.*$'hlLjzt", 1);
  if (letter == format.npos) return format.size();
  return format[letter] == '%' ? letter : letter + 1;
}

bool SetFlag(Conversion& conversion, char flag) {
  switch (flag) {
    case '-': return conversion.left = true;
    case '+': return conversion.plus = true;
    case ' ': return conversion.blank = true;
    case '#': return conversion.alternate = true;
    case '0': return conversion.zeros = true;
    default: return false;
  }
}

/// Reads digits where there are some; false for more than the limit.
bool TakeSize(std::string_view& text, int& size) {
  const std::size_t digits = std::min(text.find_first_not_of("0123456789"), text.size());
  const auto [end, error] = std::from_chars(text.data(), text.data() + digits, size);
  text.remove_prefix(digits);
  return error != std::errc::result_out_of_range && size <= kLimit;
}

std::optional<Conversion> Parse(std::string_view text) {
  Conversion conversion;
  text.remove_prefix(1);
  while (!text.empty() && SetFlag(conversion, text[0])) text.remove_prefix(1);
  if (!TakeSize(text, conversion.width)) return std::nullopt;
  if (text.starts_with('.')) {
    text.remove_prefix(1);
    conversion.precision = 0;
    if (!TakeSize(text, conversion.precision)) return std::nullopt;
  }
  // As in C, an l says nothing before such a letter.
  if (text.starts_with('l')) text.remove_prefix(1);
  if (text.size() != 1 || std::string_view("eEfFgGaA").find(text[0]) == text.npos) {
    return std::nullopt;
  }
  conversion.upper = text[0] <= 'Z';
  conversion.letter = static_cast<char>(text[0] | 0x20);
  return conversion;
}

/// By the C++ library, whose digits are exact and the same on every platform; the printf of the
/// Windows libraries loses the sign of a NaN and some of the padding, and rounds %a otherwise. A
/// negative precision: as many digits as the number has.
std::string ToChars(double magnitude, std::chars_format format, int precision) {
  char digits[kLimit + 320];  // the largest number has 309 digits before its point
  char* const limit = std::end(digits);
  const auto [end, error] = precision < 0
                                ? std::to_chars(digits, limit, magnitude, format)
                                : std::to_chars(digits, limit, magnitude, format, precision);
  return {digits, end};
}

/// %#g, which keeps the zeros at the end.
std::string AllDigits(double magnitude, int precision) {
  const int significant = std::max(precision, 1);
  std::string text = ToChars(magnitude, std::chars_format::scientific, significant - 1);
  const int exponent = std::stoi(text.substr(text.find('e') + 1));
  if (exponent < -4 || exponent >= significant) return text;
  return ToChars(magnitude, std::chars_format::fixed, significant - 1 - exponent);
}

/// A finite number without its sign, and for %a without its "0x".
std::string Digits(const Conversion& conversion, double magnitude) {
  const int precision = conversion.precision < 0 ? 6 : conversion.precision;
  switch (conversion.letter) {
    case 'a': return ToChars(magnitude, std::chars_format::hex, conversion.precision);
    case 'e': return ToChars(magnitude, std::chars_format::scientific, precision);
    case 'f': return ToChars(magnitude, std::chars_format::fixed, precision);
    default:
      return conversion.alternate ? AllDigits(magnitude, precision)
                                  : ToChars(magnitude, std::chars_format::general, precision);
  }
}

void Append(std::string& text, const Conversion& conversion, double number) {
  const bool finite = std::isfinite(number);
  std::string sign = std::signbit(number) ? "-"
                     : conversion.plus    ? "+"
                     : conversion.blank   ? " "
                                          : "";
  std::string digits = std::isnan(number) ? "nan" : "inf";
  if (finite) {
    if (conversion.letter == 'a') sign += "0x";
    digits = Digits(conversion, std::fabs(number));
    if (conversion.alternate && digits.find('.') == digits.npos) {
      digits.insert(std::min(digits.find_first_of("ep"), digits.size()), 1, '.');
    }
  }
  const auto width = static_cast<std::size_t>(conversion.width);
  const std::size_t padding = width - std::min(width, sign.size() + digits.size());
  const bool zeros = conversion.zeros && !conversion.left && finite;

  const std::size_t start = text.size();
  if (!conversion.left && !zeros) text.append(padding, ' ');
  text += sign;
  if (zeros) text.append(padding, '0');
  text += digits;
  if (conversion.left) text.append(padding, ' ');
  if (!conversion.upper) return;
  for (char& c : std::span(text).subspan(start)) {
    if (c >= 'a') c = static_cast<char>(c - 'a' + 'A');
  }
}

}  // namespace

FormattedText FormatNumbers(std::string_view format, std::span<const double> numbers) {
  FormattedText result;
  std::size_t used = 0;
  while (true) {
    const std::size_t plain = std::min(format.find('%'), format.size());
    result.text += format.substr(0, plain);
    format.remove_prefix(plain);
    if (format.empty()) return result;

    const std::string_view text = format.substr(0, ConversionLength(format));
    format.remove_prefix(text.size());
    const std::optional<Conversion> conversion = Parse(text);
    if (text == "%%") {
      result.text += '%';
    } else if (conversion && used < numbers.size()) {
      Append(result.text, *conversion, numbers[used++]);
    } else {
      result.text += text;
      result.invalid.push_back(text);
    }
  }
}

}  // namespace formula
