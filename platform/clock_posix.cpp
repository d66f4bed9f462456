#include <langinfo.h>
#include <unistd.h>

#include <chrono>
#include <clocale>
#include <ctime>
#include <limits>
#include <thread>

#include "platform/clock.h"
#include "platform/environment_lock.h"
#include "platform/picture.h"

namespace platform {
namespace {

/// The locale that the environment names; the program's own is left alone.
class UserLocale {
 public:
  UserLocale() noexcept : locale_(newlocale(LC_TIME_MASK, "", nullptr)) {
    if (locale_ == nullptr) locale_ = newlocale(LC_TIME_MASK, "C", nullptr);
  }
  UserLocale(const UserLocale&) = delete;
  UserLocale& operator=(const UserLocale&) = delete;
  ~UserLocale() {
    if (locale_ != nullptr) freelocale(locale_);
  }

  const char* Text(nl_item item) const noexcept {
    return locale_ == nullptr ? "" : nl_langinfo_l(item, locale_);
  }

 private:
  locale_t locale_;
};

CalendarNames ReadUserNames() {
  const auto lock = LockEnvironment();
  const UserLocale locale;
  CalendarNames names;
  for (int i = 0; i < 7; ++i) {
    names.days[i] = locale.Text(DAY_1 + i);
    names.short_days[i] = locale.Text(ABDAY_1 + i);
  }
  for (int i = 0; i < 12; ++i) {
    names.months_with_day[i] = locale.Text(MON_1 + i);
    names.months[i] = locale.Text(ALTMON_1 + i);
    names.short_months[i] = locale.Text(ABMON_1 + i);
  }
  names.morning = locale.Text(AM_STR);
  names.afternoon = locale.Text(PM_STR);
  return names;
}

/// The names as the environment had them when they were first asked for.
const CalendarNames& UserNames() {
  static const CalendarNames names = ReadUserNames();
  return names;
}

}  // namespace

LocalTime Now() noexcept {
  const std::time_t seconds = std::time(nullptr);
  const auto lock = LockEnvironment();  // the time zone is the environment's
  std::tm parts{};
  localtime_r(&seconds, &parts);
  return {.year = parts.tm_year + 1900,
          .month = parts.tm_mon + 1,
          .day = parts.tm_mday,
          .weekday = parts.tm_wday,
          .hour = parts.tm_hour,
          .minute = parts.tm_min,
          .second = parts.tm_sec};
}

std::optional<std::string> FormatDate(const char* picture, const LocalTime& time) {
  return FormatDatePicture(picture, time, UserNames());
}

std::optional<std::string> FormatTime(const char* picture, const LocalTime& time) {
  return FormatTimePicture(picture, time, UserNames());
}

void Pause(std::uint32_t milliseconds) noexcept {
  while (milliseconds == std::numeric_limits<std::uint32_t>::max()) pause();
  std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

}  // namespace platform
