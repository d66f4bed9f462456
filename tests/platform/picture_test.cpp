// The picture languages: what each letter stands for, and random pictures against the system's
// own formatting, which on Windows is another's.

#include "platform/picture.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>

namespace {

using platform::CalendarNames;
using platform::LocalTime;

const std::array<std::string, 12> kMonths = {"January",   "February", "March",    "April",
                                             "May",       "June",     "July",     "August",
                                             "September", "October",  "November", "December"};
const CalendarNames kEnglish{
    .days = {"Sunday", "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday"},
    .short_days = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"},
    .months_with_day = kMonths,
    .months = kMonths,
    .short_months = {"Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov",
                     "Dec"},
    .morning = "AM",
    .afternoon = "PM"};

// Dates and weekdays by the calendar of the year.
const LocalTime kTimes[] = {{2024, 3, 5, 2, 14, 7, 9},   {2015, 12, 31, 4, 0, 0, 0},
                            {1999, 1, 1, 5, 12, 59, 59}, {2199, 2, 28, 4, 11, 30, 1},
                            {1687, 5, 9, 5, 23, 1, 10},  {2024, 2, 29, 4, 1, 10, 0}};

TEST(Pictures, Rows) {
  const std::pair<const char*, const char*> dates[] = {
      {"d dd dddd M MM MMMM MMMMM", "5 05 Tuesday 3 03 March March"},
      {"ddd ddddd MMM yyy yyyy yyyyy", "Tue Tuesday Mar 2024 2024 2024"},
      {"g|gg|ggg", "A.D.|A.D.|A.D."},
      {"'day' d 'o''clock'", "day 5 o'clock"},
      {"d''d", "55"},
      {"''''", "'"},
      {"'", ""},
      {"d 'open d", "5 open d"},
      {"***Empty***", "***Empt24***"},
      {"hHmst %s \\n", "hHmst %s \\n"},
      {"", ""},
  };
  for (const auto& [picture, text] : dates) {
    EXPECT_EQ(platform::FormatDatePicture(picture, kTimes[0], kEnglish), text) << picture;
  }
  EXPECT_EQ(platform::FormatDatePicture("y yy yyy", LocalTime{.year = 2005}, kEnglish),
            "5 05 2005");
  const char* times[] = {"2 02 14 14 7 07 9 09 P PM", "12 12 0 00 0 00 0 00 A AM",
                         "12 12 12 12 59 59 59 59 P PM", "11 11 11 11 30 30 1 01 A AM"};
  for (std::size_t i = 0; i < std::size(times); ++i) {
    EXPECT_EQ(platform::FormatTimePicture("h hh H HH m mm s ss t tt", kTimes[i], kEnglish),
              times[i]);
  }
  EXPECT_EQ(platform::FormatTimePicture("hhh HHH mmmm sss ttt d", kTimes[0], kEnglish),
            "02 14 07 09 PM d");
}

/// Half a day's name may be of many bytes, or none at all.
TEST(Pictures, NamesAreTheLocales) {
  CalendarNames names = kEnglish;
  names.months_with_day[2] = "M\xC3\xA4rz";
  names.months[2] = "Monat";
  names.afternoon = "\xE5\x8D\x88\xE5\xBE\x8C";
  EXPECT_EQ(platform::FormatDatePicture("d. MMMM", kTimes[0], names), "5. M\xC3\xA4rz");
  EXPECT_EQ(platform::FormatDatePicture("MMMM yy, 'd'dd", kTimes[0], names), "M\xC3\xA4rz 24, d05");
  EXPECT_EQ(platform::FormatDatePicture("MMMM yy, 'd'ddd", kTimes[0], names), "Monat 24, dTue");
  EXPECT_EQ(platform::FormatTimePicture("t tt", kTimes[0], names),
            "\xE5\x8D\x88 \xE5\x8D\x88\xE5\xBE\x8C");
  names.afternoon = "";
  EXPECT_EQ(platform::FormatTimePicture("[t][tt]", kTimes[0], names), "[][]");
}

class SystemPictures : public testing::Test {
 protected:
  void SetUp() override {
#if !defined(_WIN32)
    ASSERT_EQ(setenv("LC_ALL", "C", 1), 0);
#endif
    if (platform::FormatDate("dddd", kTimes[0]) != "Tuesday") GTEST_SKIP() << "no English locale";
  }

  std::string Picture(const std::string& pieces) {
    std::string picture;
    for (std::size_t left = random_() % 14; left > 0; --left) {
      const char piece = pieces[random_() % pieces.size()];
      picture.append(random_() % 3 == 0 ? 1 + random_() % 5 : 1, piece);
    }
    return picture;
  }

  std::mt19937 random_{1};
};

/// Wine shows an "AD" for each g, where Windows has one "A.D." for all: no g here. Wine also puts
/// a zero before the y of 2005: no such years.
TEST_F(SystemPictures, FormatAsThePortableOnes) {
  std::string any = "ddddMMMMyyyyhhHHmmsstt''''''  /:.-";
  for (int byte = 1; byte < 256; ++byte) {
    if (byte != 'g') any += static_cast<char>(byte);
  }
  for (const std::string pieces : {"dMy'/ ", "hHmst': ", any.c_str()}) {
    for (int i = 0; i < 2000; ++i) {
      const std::string picture = Picture(pieces);
      const LocalTime& time = kTimes[i % std::size(kTimes)];
      ASSERT_EQ(platform::FormatDate(picture.c_str(), time),
                platform::FormatDatePicture(picture, time, kEnglish))
          << picture;
      ASSERT_EQ(platform::FormatTime(picture.c_str(), time),
                platform::FormatTimePicture(picture, time, kEnglish))
          << picture;
    }
  }
}

}  // namespace
