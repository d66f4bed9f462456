#include "nuvhost/reading/numbers.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>

#include "nuvhost/reading/words.h"

namespace nuvhost {
namespace {

/// What has no digits as numbers have them, also as older C libraries print it: 1.#INF.
std::optional<double> SpecialNumber(std::string_view text) {
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  std::string word = Lowered(text);
  if (word.starts_with("1.#")) word = word.substr(3, word.find_last_not_of('0') - 2);
  if (word == "inf" || word == "infinity") {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    return negative ? -kInfinity : kInfinity;
  }
  if (word == "nan" || word == "qnan" || word == "snan" || word == "ind") {
    return std::numeric_limits<double>::quiet_NaN();
  }
  return std::nullopt;
}

constexpr double kPowers[] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                              1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};

/// A short number such as -12.345: the quotient of two exact numbers is the nearest one (Clinger
/// 1990). Nothing for any other text.
std::optional<double> ParseShort(std::string_view text) {
  constexpr std::size_t kDigits = 15;
  const bool negative = text.starts_with('-');
  if (negative) text.remove_prefix(1);
  if (text.size() > kDigits + 1) return std::nullopt;
  std::size_t point = text.size();
  std::int64_t digits = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const unsigned digit = static_cast<unsigned char>(text[i]) - unsigned{'0'};
    if (digit <= 9) {
      digits = digits * 10 + digit;
    } else if (text[i] == '.' && point == text.size()) {
      point = i;
    } else {
      return std::nullopt;
    }
  }
  const std::size_t decimals = text.size() - std::min(point + 1, text.size());
  const std::size_t count = point < text.size() ? text.size() - 1 : text.size();
  if (count == 0 || count > kDigits) return std::nullopt;
  const double number = static_cast<double>(digits) / kPowers[decimals];
  return negative ? -number : number;
}

/// A number with a decimal point; nothing for other texts. Beyond the range it is infinite.
std::optional<double> ParseDecimal(std::string_view text) {
  std::size_t first = text.starts_with('-') || text.starts_with('+') ? 1 : 0;
  if (first == text.size()) return std::nullopt;
  // Digits only: none of the words that from_chars knows.
  if (text[first] != '.' && (text[first] < '0' || text[first] > '9')) return SpecialNumber(text);
  if (text[0] == '+') text.remove_prefix(1);
  if (const std::optional<double> number = ParseShort(text)) return number;
  double number = 0.0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error == std::errc::invalid_argument) return std::nullopt;
  if (end != text.data() + text.size()) return SpecialNumber(text);
  // Too large or too small, which only the C runtime tells apart.
  if (error == std::errc::result_out_of_range)
    return std::strtod(std::string(text).c_str(), nullptr);
  return number;
}

}  // namespace

std::string Lowered(std::string_view text) {
  std::string lowered(text);
  for (char& c : lowered) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return lowered;
}

bool ParseShortest(std::string_view text, std::size_t behind, double& number) {
  const bool negative = text.starts_with('-');
  if (negative) text.remove_prefix(1);
  const std::size_t size = text.size();
  if (size == 0 || size > 8 || size + behind < 8) return false;
  // The last character in the highest byte, zeros before the first.
  const std::size_t empty = 8 * (8 - size);
  std::uint64_t word = WordAt(text.data()) << empty | (Bytes('0') & ~(~std::uint64_t{0} << empty));
  std::size_t decimals = 0;
  if (const std::uint64_t points = ZeroBytes(word ^ Bytes('.'))) {
    // What stands before the point moves into its place.
    const std::uint64_t point = points & -points;
    const std::uint64_t upto = point | (point - 1);
    word = (word & ~upto) | (word & upto >> 8) << 8 | '0';
    decimals = 7 - static_cast<std::size_t>(std::countr_zero(point)) / 8;
    if (size == 1) return false;
  }
  word ^= Bytes('0');
  if (((word | (word + Bytes(6))) & Bytes(0xF0)) != 0) return false;  // no digits alone
  // Pairs of digits, then pairs of these, then both halves (Lemire 2018).
  word = word * 10 + (word >> 8);
  constexpr std::uint64_t kPairs = 0x000000FF000000FF;
  word = ((word & kPairs) * (100 + (std::uint64_t{1000000} << 32)) +
          (word >> 16 & kPairs) * (1 + (std::uint64_t{10000} << 32))) >>
         32;
  const double digits = static_cast<double>(static_cast<std::uint32_t>(word)) / kPowers[decimals];
  number = negative ? -digits : digits;
  return true;
}

std::optional<double> ParseNumber(std::string_view text, char decimal) {
  if (decimal == '.') return ParseDecimal(text);
  if (text.find('.') != std::string_view::npos) return SpecialNumber(text);
  std::string point(text);
  std::ranges::replace(point, decimal, '.');
  return ParseDecimal(point);
}

bool IsInfinite(std::optional<double> number, std::string_view text) {
  return number && std::isinf(*number) && !SpecialNumber(text);
}

}  // namespace nuvhost
