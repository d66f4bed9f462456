// The languages of formats, numbers and pictures of times, held against the C library's where it
// speaks the same.

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdio>
#include <string>

#include "algorithm/number_format.h"
#include "algorithm/number_scan.h"
#include "platform/picture.h"
#include "tests/fuzz/targets.h"
#include "tests/fuzz/values.h"

namespace fuzz {
namespace {

/// Without zero bytes, at which a text ends.
std::string Text(const Bytes& bytes) {
  std::string text = bytes.Rest();
  std::ranges::replace(text, '\0', ' ');
  return text;
}

platform::CalendarNames Names() {
  platform::CalendarNames names;
  names.days.fill("day");
  names.short_days.fill("d");
  names.months_with_day.fill("month");
  names.months.fill("month");
  names.short_months.fill("");
  names.morning = "am";
  return names;
}

}  // namespace

void Format(Bytes bytes) {
  std::array<double, 3> numbers{};
  for (double& number : numbers) number = AnyNumber(bytes);
  const std::string format = Text(bytes);
  const formula::FormattedText formatted = formula::FormatNumbers(format, numbers);
  for (const std::string_view invalid : formatted.invalid) {
    Require(invalid.starts_with('%') && formatted.text.find(invalid) != std::string::npos,
            "an invalid conversion that was not copied");
  }
#if defined(__GLIBC__)
  if (!formatted.invalid.empty()) return;
  const int size =
      std::snprintf(nullptr, 0, format.c_str(), numbers[0], numbers[1], numbers[2], 0.0);
  std::string expected(static_cast<std::size_t>(size) + 1, '\0');
  std::snprintf(expected.data(), expected.size(), format.c_str(), numbers[0], numbers[1],
                numbers[2], 0.0);
  expected.pop_back();
  Require(formatted.text == expected, "another text than the C library's: " + formatted.text);
#endif
}

void Scan(Bytes bytes) {
  const std::string text = Text(bytes);
  const std::optional<std::int32_t> hexadecimal = formula::ScanHexadecimal(text);
  const std::optional<double> number = formula::ScanNumber(text);
#if defined(__GLIBC__)
  unsigned expected_hexadecimal = 0;
  const bool is_hexadecimal = std::sscanf(text.c_str(), "%x", &expected_hexadecimal) == 1;
  Require(hexadecimal == (is_hexadecimal
                              ? std::optional(static_cast<std::int32_t>(expected_hexadecimal))
                              : std::nullopt),
          "another hexadecimal number than the C library's");
  double expected = 0;
  const bool is_number = std::sscanf(text.c_str(), "%lf", &expected) == 1;
  Require(number.has_value() == is_number, "a number where the C library has none");
  if (!number || (std::isnan(*number) && std::isnan(expected))) return;
  Require(std::bit_cast<std::uint64_t>(*number) == std::bit_cast<std::uint64_t>(expected),
          "another number than the C library's");
#else
  Require(!hexadecimal || !number || !std::isnan(*number), "a hexadecimal number that is none");
#endif
}

void FormatTime(Bytes bytes) {
  static const platform::CalendarNames names = Names();
  platform::LocalTime time;
  time.year = static_cast<int>(bytes.Below(10000));
  time.month = 1 + static_cast<int>(bytes.Below(12));
  time.day = 1 + static_cast<int>(bytes.Below(31));
  time.weekday = static_cast<int>(bytes.Below(7));
  time.hour = static_cast<int>(bytes.Below(24));
  time.minute = static_cast<int>(bytes.Below(60));
  const std::string picture = Text(bytes);
  const std::string date = platform::FormatDatePicture(picture, time, names);
  const std::string clock = platform::FormatTimePicture(picture, time, names);
  if (picture.find_first_of("dMyg'") == picture.npos) Require(date == picture, "another date");
  if (picture.find_first_of("hHmst'") == picture.npos) Require(clock == picture, "another time");
  // What stands between apostrophes stands for itself.
  std::string quoted = "'";
  for (const char c : picture) quoted += c == '\'' ? "''" : std::string(1, c);
  Require(platform::FormatDatePicture(quoted + '\'', time, names) == picture, "a quoted date");
  Require(platform::FormatTimePicture(quoted, time, names) == picture, "a quoted time");
}

}  // namespace fuzz
