#include "algorithm/number_scan.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <limits>

namespace formula {
namespace {

char Lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

bool IsHexDigit(char c) {
  return IsDigit(c) || (Lower(c) >= 'a' && Lower(c) <= 'f');
}

void SkipSpace(std::string_view& text) {
  text.remove_prefix(std::min(text.find_first_not_of(" \t\n\v\f\r"), text.size()));
}

/// Takes a sign where there is one; true for a minus.
bool TakeSign(std::string_view& text) {
  if (text.empty() || (text[0] != '-' && text[0] != '+')) return false;
  const bool negative = text[0] == '-';
  text.remove_prefix(1);
  return negative;
}

/// Takes a word, which is given in lower case, where the text begins with it in either case.
bool TakeWord(std::string_view& text, std::string_view word) {
  const std::string_view start = text.substr(0, word.size());
  if (!std::ranges::equal(start, word, {}, Lower)) return false;
  text.remove_prefix(word.size());
  return true;
}

/// How far an exponent written in a text counts. No text is long enough for its digits to make up
/// for more, and sums of these fit.
constexpr std::int64_t kEndlessExponent = std::int64_t{1} << 60;

/// The exponent behind a significand, 0 where there is none.
std::int64_t TakeExponent(std::string_view& text, char letter) {
  if (text.empty() || Lower(text[0]) != letter) return 0;
  text.remove_prefix(1);
  const bool negative = TakeSign(text);
  std::uint64_t read = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), read);
  if (error == std::errc::result_out_of_range) read = kEndlessExponent;
  const auto exponent = static_cast<std::int64_t>(std::min<std::uint64_t>(read, kEndlessExponent));
  return negative ? -exponent : exponent;
}

/// Digits that are kept as they are. No number halfway between two doubles has more than 767, so
/// all that counts behind these is whether one is not zero.
constexpr std::size_t kKeptDigits = 800;

/// The digits of a number, room for its exponent behind them.
struct DigitBuffer {
  char text[kKeptDigits + 32];
  std::size_t size = 0;

  void Append(char c) { text[size++] = c; }
};

/// The digits of a number without their leading zeros, and how many more stand before the point
/// (fewer: negative).
struct Significand {
  DigitBuffer digits;
  std::int64_t exponent = 0;
  bool found = false;  ///< there was a digit, be it a zero
};

Significand TakeSignificand(std::string_view& text, bool (&is_digit)(char)) {
  Significand number;
  bool point = false;
  bool more = false;
  std::size_t i = 0;
  for (; i < text.size(); ++i) {
    const char c = text[i];
    if (c == '.' && !point) {
      point = true;
      continue;
    }
    if (!is_digit(c)) break;
    number.found = true;
    if (number.digits.size >= kKeptDigits) {
      more |= c != '0';
      number.exponent += point ? 0 : 1;
    } else {
      if (c != '0' || number.digits.size > 0) number.digits.Append(c);
      number.exponent -= point ? 1 : 0;
    }
  }
  text.remove_prefix(i);
  if (more) {
    number.digits.Append('1');
    --number.exponent;
  }
  return number;
}

/// The nearest double to a number's size.
double Nearest(Significand& number, std::int64_t exponent, bool hexadecimal) {
  DigitBuffer& digits = number.digits;
  if (digits.size == 0) return 0.0;
  const std::int64_t digit = hexadecimal ? 4 : 1;  // exponents of a hexadecimal number count bits
  exponent += digit * number.exponent;
  const std::int64_t top = exponent + digit * static_cast<std::int64_t>(digits.size);
  const double beyond = top > 0 ? std::numeric_limits<double>::infinity() : 0.0;
  if (std::abs(top) > 2000) return beyond;

  digits.Append(hexadecimal ? 'p' : 'e');
  const char* end = std::to_chars(digits.text + digits.size, std::end(digits.text), exponent).ptr;
  double nearest = 0.0;
  const std::errc error =
      std::from_chars(digits.text, end, nearest,
                      hexadecimal ? std::chars_format::hex : std::chars_format::general)
          .ec;
  return error == std::errc{} ? nearest : beyond;
}

}  // namespace

std::optional<std::int32_t> ScanHexadecimal(std::string_view text) {
  SkipSpace(text);
  const bool negative = TakeSign(text);
  const bool prefix = TakeWord(text, "0x");
  std::uint64_t bits = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), bits, 16);
  if (error == std::errc::invalid_argument && !prefix) return std::nullopt;
  if (error == std::errc::result_out_of_range) return -1;
  return static_cast<std::int32_t>(negative ? 0 - bits : bits);
}

std::optional<double> ScanNumber(std::string_view text) {
  SkipSpace(text);
  const double sign = TakeSign(text) ? -1.0 : 1.0;
  if (TakeWord(text, "nan")) {
    return std::copysign(std::numeric_limits<double>::quiet_NaN(), sign);
  }
  if (TakeWord(text, "inf")) {
    // A further "i" promises the whole word.
    const bool longer = !text.empty() && Lower(text[0]) == 'i';
    if (longer && !TakeWord(text, "inity")) return std::nullopt;
    return sign * std::numeric_limits<double>::infinity();
  }
  const bool hexadecimal = TakeWord(text, "0x");
  const bool point = text.starts_with('.');
  Significand number = TakeSignificand(text, hexadecimal ? IsHexDigit : IsDigit);
  if (!number.found) {
    // Behind "0x" a point alone makes it a number, the zero of that prefix.
    if (hexadecimal && point) return sign * 0.0;
    return std::nullopt;
  }
  const std::int64_t exponent = TakeExponent(text, hexadecimal ? 'p' : 'e');
  return sign * Nearest(number, exponent, hexadecimal);
}

}  // namespace formula
