// The picture languages of Win32's date and time formatting.
//
// In a picture, runs of certain letters stand for a part of the time, text between apostrophes
// for itself (two apostrophes inside for one; the closing one may be missing), and whatever else
// for itself.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "platform/clock.h"

namespace platform {

/// Names of a locale; days from Sunday on, months from January on. In some languages a month has
/// another name beside the number of a day: "5 listopada", "listopad 2024".
struct CalendarNames {
  std::array<std::string, 7> days;
  std::array<std::string, 7> short_days;
  std::array<std::string, 12> months_with_day;
  std::array<std::string, 12> months;
  std::array<std::string, 12> short_months;
  std::string morning;
  std::string afternoon;
};

/// d, dd the day; ddd, dddd its name; M, MM the month; MMM, MMMM its name; y, yy the year within
/// its century; yyy and on the year; g, gg the era. A longer run is as the longest listed.
std::string FormatDatePicture(std::string_view picture, const LocalTime& time,
                              const CalendarNames& names);

/// h, hh the hour from 1 to 12; H, HH from 0 to 23; m, mm the minute; s, ss the second; t, tt the
/// half of the day, by its first character or in full. A longer run is as the longest listed.
std::string FormatTimePicture(std::string_view picture, const LocalTime& time,
                              const CalendarNames& names);

}  // namespace platform
