// The local time, its pictures, and waiting.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace platform {

/// A local time by its parts: month and day count from 1, the weekday from Sunday's 0.
struct LocalTime {
  int year = 0;
  int month = 1;
  int day = 1;
  int weekday = 0;
  int hour = 0;
  int minute = 0;
  int second = 0;
};

LocalTime Now() noexcept;

/// A date or a time by a picture (picture.h), with the names of the user's locale; none where the
/// system rejects the picture.
std::optional<std::string> FormatDate(const char* picture, const LocalTime& time);
std::optional<std::string> FormatTime(const char* picture, const LocalTime& time);

/// Pauses the calling thread; 4294967295 milliseconds are for ever.
void Pause(std::uint32_t milliseconds) noexcept;

}  // namespace platform
