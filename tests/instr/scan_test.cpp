// The number scanner against the C library's.
#include <cmath>
#include <optional>

#include "algorithm/number_scan.h"
#include "tests/instr/random_rounds.h"
#include "tests/instr/table.h"

namespace {

using formula::ScanHexadecimal;
using formula::ScanNumber;

TEST(Scan, HexadecimalNumbers) {
  EXPECT_EQ(ScanNumber("0x1.8p1"), 3.0);
  EXPECT_EQ(ScanNumber("-0X.8P-1074"), -0.0);  // halfway, to even
  EXPECT_EQ(ScanNumber("0x.8000000000000001p-1074"), 4.9406564584124654e-324);
  EXPECT_EQ(ScanNumber("0x1.fffffffffffff8p1023"), HUGE_VAL);
  EXPECT_EQ(ScanNumber("0x.p1"), 0.0);
  EXPECT_EQ(ScanNumber("0xp1"), std::nullopt);
}

// Time and memory grow with the text, and digits and exponent may make up for each other.
TEST(Scan, LongNumbers) {
  const std::string zeros(4'000'000, '0');
  EXPECT_EQ(ScanNumber("0." + zeros + "1e4000001"), 1.0);
  EXPECT_EQ(ScanNumber("25" + zeros + "e-4000001"), 2.5);
  EXPECT_EQ(ScanNumber("0x25" + zeros + "p-16000000"), 37.0);
  EXPECT_EQ(ScanNumber("9007199254740993" + zeros + "e-4000000"), 9007199254740992.0);
  EXPECT_EQ(ScanNumber("9007199254740993." + zeros + "10"), 9007199254740994.0);
  EXPECT_EQ(ScanNumber("1" + zeros), HUGE_VAL);
  EXPECT_EQ(ScanNumber("1e1" + zeros), HUGE_VAL);
  EXPECT_EQ(ScanNumber("1e-1" + zeros), 0.0);
  EXPECT_EQ(ScanNumber("0e1" + zeros), 0.0);
  EXPECT_EQ(ScanHexadecimal(zeros + "7f"), 127);
  EXPECT_EQ(ScanHexadecimal(std::string(zeros.size(), 'e')), -1);
}

#if defined(__GLIBC__)
/// Compares both scans with the C library's, to the sign of a zero and of a NaN.
void CompareWithTheCLibrary(const std::string& text) {
  unsigned bits = 0;
  const std::optional<std::int32_t> hexadecimal = ScanHexadecimal(text);
  ASSERT_EQ(hexadecimal.has_value(), std::sscanf(text.c_str(), "%x", &bits) == 1) << text;
  ASSERT_EQ(static_cast<unsigned>(hexadecimal.value_or(0)), bits) << text;

  double expected = 0.0;
  const std::optional<double> number = ScanNumber(text);
  ASSERT_EQ(number.has_value(), std::sscanf(text.c_str(), "%lf", &expected) == 1) << text;
  ASSERT_EQ(std::signbit(number.value_or(0.0)), std::signbit(expected)) << text;
  ASSERT_EQ(std::isnan(number.value_or(0.0)), std::isnan(expected)) << text;
  ASSERT_TRUE(std::isnan(expected) || number.value_or(0.0) == expected) << text;
}

TEST(Scan, EqualsTheCLibraryOnRandomTexts) {
  constexpr const char* kPieces[] = {
      "0",    "1",   "2",    "3",    "4",     "5",   "6",     "7",   "8",       "9",  "a",
      "b",    "c",   "d",    "e",    "f",     "x",   "X",     "p",   "P",       "e",  "E",
      "+",    "-",   ".",    ".",    "i",     "n",   "f",     "a",   "t",       "y",  "I",
      "N",    "F",   "A",    "T",    "Y",     "(",   ")",     " ",   "\t",      "0x", "0X",
      "p-10", "e+3", "e-30", "e300", "p1023", "inf", "inity", "nan", "00000000"};
  std::mt19937_64 random(3);
  for (int round = RandomRounds(400'000); round > 0; --round) {
    ASSERT_NO_FATAL_FAILURE(CompareWithTheCLibrary(AnyText(random, kPieces, 9)));
  }
}

// Numbers written out to any length, so that many lie at or near the middle of two doubles.
TEST(Scan, EqualsTheCLibraryOnWrittenNumbers) {
  std::mt19937_64 random(4);
  for (int round = RandomRounds(40'000); round > 0; --round) {
    const double number = AnyNumber(random);
    const double next = std::nextafter(number, HUGE_VAL);
    const long double middle = (static_cast<long double>(number) + next) / 2;
    char text[6000];
    const int digits = static_cast<int>(random() % (random() % 8 == 0 ? 1200 : 60));
    const char* formats[] = {"%.*Le", "%.*Lf", "%.*La", "%.*Le1", "%.*Lf0000001"};
    std::snprintf(text, sizeof text, formats[random() % 5], digits,
                  random() % 2 == 0 ? middle : static_cast<long double>(number));
    ASSERT_NO_FATAL_FAILURE(CompareWithTheCLibrary(text));
  }
}
#endif

}  // namespace
