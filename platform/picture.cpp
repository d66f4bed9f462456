#include "platform/picture.h"

#include <algorithm>

namespace platform {
namespace {

std::string Digits(int number, std::size_t least) {
  std::string digits = std::to_string(number);
  if (digits.size() < least) digits.insert(0, least - digits.size(), '0');
  return digits;
}

/// As a picture shows it: one digit where one is enough, or two.
std::string OneOrTwo(int number, std::size_t run) {
  return Digits(number, std::min<std::size_t>(run, 2));
}

std::string FirstCharacter(const std::string& utf8) {
  std::size_t end = 1;
  while (end < utf8.size() && (utf8[end] & 0xC0) == 0x80) ++end;
  return utf8.substr(0, end);
}

/// Fills a picture. `part(letter, run, text)` appends what a run of a letter stands for and says
/// whether it stands for anything.
template <class Part>
std::string Fill(std::string_view picture, Part part) {
  std::string text;
  bool quoted = false;
  for (std::size_t at = 0; at < picture.size();) {
    const char c = picture[at];
    if (c == '\'') {
      const bool doubled = quoted && at + 1 < picture.size() && picture[at + 1] == '\'';
      if (doubled) text += '\'';
      if (!doubled) quoted = !quoted;
      at += doubled ? 2 : 1;
    } else if (quoted) {
      text += c;
      ++at;
    } else {
      const std::size_t run = std::min(picture.find_first_not_of(c, at), picture.size()) - at;
      if (!part(c, run, text)) text.append(run, c);
      at += run;
    }
  }
  return text;
}

}  // namespace

std::string FormatDatePicture(std::string_view picture, const LocalTime& time,
                              const CalendarNames& names) {
  bool has_day = false;
  Fill(picture, [&](char letter, std::size_t run, std::string& /*text*/) {
    has_day = has_day || (letter == 'd' && run <= 2);
    return true;
  });
  const auto& months = has_day ? names.months_with_day : names.months;
  return Fill(picture, [&](char letter, std::size_t run, std::string& text) {
    const auto name = [run](const auto& short_names, const auto& full_names, int index) {
      return run == 3 ? short_names.at(index) : full_names.at(index);
    };
    switch (letter) {
      case 'd':
        text +=
            run <= 2 ? OneOrTwo(time.day, run) : name(names.short_days, names.days, time.weekday);
        return true;
      case 'M':
        text +=
            run <= 2 ? OneOrTwo(time.month, run) : name(names.short_months, months, time.month - 1);
        return true;
      case 'y':
        text += run <= 2 ? OneOrTwo(time.year % 100, run) : Digits(time.year, 4);
        return true;
      case 'g': text += "A.D."; return true;
      default: return false;
    }
  });
}

std::string FormatTimePicture(std::string_view picture, const LocalTime& time,
                              const CalendarNames& names) {
  return Fill(picture, [&](char letter, std::size_t run, std::string& text) {
    const std::string& half = time.hour < 12 ? names.morning : names.afternoon;
    switch (letter) {
      case 'h': text += OneOrTwo((time.hour + 11) % 12 + 1, run); return true;
      case 'H': text += OneOrTwo(time.hour, run); return true;
      case 'm': text += OneOrTwo(time.minute, run); return true;
      case 's': text += OneOrTwo(time.second, run); return true;
      case 't': text += run == 1 ? FirstCharacter(half) : half; return true;
      default: return false;
    }
  });
}

}  // namespace platform
