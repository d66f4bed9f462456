// The printf-style formatter, and the instructions that show numbers by it.
#include <cmath>
#include <limits>

#include "algorithm/number_format.h"
#include "tests/instr/random_rounds.h"
#include "tests/instr/table.h"

namespace {

using formula::FormatNumbers;

TEST(Format, BeyondAHundredInvalidConversionsAreCounted) {
  nuvhost::ExecSession session(BuiltCatalogue());
  for (const std::size_t count : {100, 101, 103}) {
    std::string format;
    while (format.size() < 2 * count) format += "%d";
    const nuvhost::Json request{{"instr", "_Nuv_String_CPrintfNum_"}, {"in", {format}}};
    const nuvhost::Json messages = Exec(session, request.dump())["messages"];
    ASSERT_EQ(messages.size(), count == 100 ? 100 : 101);
    EXPECT_EQ(messages[99]["text"], R"(Invalid conversion "%d" in format)");
    if (count == 100) continue;
    EXPECT_EQ(messages[100]["text"],
              std::to_string(count - 100) + " more invalid conversions in format");
  }
}

TEST(Format, LimitsOfWidthAndPrecision) {
  const double largest[] = {std::numeric_limits<double>::max()};
  const std::string text = FormatNumbers("%#.65535f", largest).text;
  EXPECT_EQ(text.size(), 309 + 1 + 65535);
  EXPECT_EQ(FormatNumbers("%065535.65535f", largest).text, text);
  const double smallest[] = {-std::numeric_limits<double>::denorm_min()};
  EXPECT_EQ(FormatNumbers("%65535.f", smallest).text, std::string(65533, ' ') + "-0");
}

#if defined(__GLIBC__)
/// A valid conversion, any of its parts given or not.
std::string AnyConversion(std::mt19937_64& random) {
  constexpr const char* kFlags[] = {"-", "+", " ", "#", "0"};
  std::string conversion = "%" + AnyText(random, kFlags, 4);
  if (random() % 2 == 0) conversion += std::to_string(1 + random() % 40);
  if (random() % 4 != 0) conversion += '.';
  if (conversion.back() == '.' && random() % 8 != 0) {
    conversion += std::to_string(random() % (random() % 8 == 0 ? 1200 : 25));
  }
  if (random() % 8 == 0) conversion += 'l';
  return conversion + "eEfFgGaA"[random() % 8];
}

TEST(Format, EqualsTheCLibraryOnRandomConversions) {
  std::mt19937_64 random(1);
  for (int round = RandomRounds(200'000); round > 0; --round) {
    const std::string format = AnyConversion(random);
    const double numbers[] = {random() % 50 == 0 ? std::copysign(NAN, AnyNumber(random))
                                                 : AnyNumber(random)};
    char expected[2000];
    std::snprintf(expected, sizeof expected, format.c_str(), numbers[0]);
    // Where rounding lifts %#g to a power of ten with an exponent, the library loses the zeros.
    const std::string_view library = expected;
    if (library.find("1.e+") != library.npos || library.find("1.E+") != library.npos) continue;
    const formula::FormattedText formatted = FormatNumbers(format, numbers);
    ASSERT_EQ(formatted.text, expected) << format;
    ASSERT_TRUE(formatted.invalid.empty()) << format;
  }
}
#endif

}  // namespace
