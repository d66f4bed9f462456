#include <windows.h>

#include "platform/clock.h"

namespace platform {
namespace {

/// GetDateFormatA and GetTimeFormatA.
using Formatter = decltype(&GetDateFormatA);

/// The first call asks for the size, the closing zero included; the second fills the text.
std::optional<std::string> Format(Formatter formatter, const char* picture, const LocalTime& time) {
  SYSTEMTIME parts{};
  parts.wYear = static_cast<WORD>(time.year);
  parts.wMonth = static_cast<WORD>(time.month);
  parts.wDay = static_cast<WORD>(time.day);
  parts.wDayOfWeek = static_cast<WORD>(time.weekday);
  parts.wHour = static_cast<WORD>(time.hour);
  parts.wMinute = static_cast<WORD>(time.minute);
  parts.wSecond = static_cast<WORD>(time.second);
  const int size = formatter(0, 0, &parts, picture, nullptr, 0);
  if (size <= 0) return std::nullopt;
  std::string text(static_cast<std::size_t>(size), '\0');
  if (formatter(0, 0, &parts, picture, text.data(), size) == 0) return std::nullopt;
  text.pop_back();
  return text;
}

}  // namespace

LocalTime Now() noexcept {
  SYSTEMTIME now;
  GetLocalTime(&now);
  return {.year = now.wYear,
          .month = now.wMonth,
          .day = now.wDay,
          .weekday = now.wDayOfWeek,
          .hour = now.wHour,
          .minute = now.wMinute,
          .second = now.wSecond};
}

std::optional<std::string> FormatDate(const char* picture, const LocalTime& time) {
  return Format(GetDateFormatA, picture, time);
}

std::optional<std::string> FormatTime(const char* picture, const LocalTime& time) {
  return Format(GetTimeFormatA, picture, time);
}

void Pause(std::uint32_t milliseconds) noexcept {
  Sleep(milliseconds);
}

}  // namespace platform
