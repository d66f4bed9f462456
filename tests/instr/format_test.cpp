// The printf-style formatter, and the instructions that show numbers by it.
#include <cmath>
#include <limits>
#include <memory>

#include "algorithm/number_format.h"
#include "tests/instr/random_rounds.h"
#include "tests/instr/table.h"

namespace {

using formula::FormatNumbers;

/// A call that gives a text and warnings, each "text of the warning;".
struct FormatRow {
  const char* instruction;
  const char* values;  ///< members of the request: the inputs, the constants
  const char* text;
  const char* warnings = "";
};

void CheckFormats(const char* source, std::span<const FormatRow> rows) {
  nuvhost::ExecSession session(BuiltCatalogue());
  for (const FormatRow& row : rows) {
    SCOPED_TRACE(std::string(row.instruction) + " " + row.values);
    const nuvhost::Json answer =
        Exec(session, std::string(R"({"instr":")") + row.instruction + "\"," + row.values + "}");
    ASSERT_FALSE(answer.contains("error")) << answer.dump();
    EXPECT_EQ(answer["status"], 0);
    EXPECT_EQ(answer["out"][0], row.text);
    std::string warnings;
    for (const nuvhost::Json& message : answer.value("messages", nuvhost::Json::array())) {
      EXPECT_EQ(message["severity"], 1);
      EXPECT_EQ(message["source"], source);
      warnings += message["text"].get<std::string>() + ";";
    }
    EXPECT_EQ(warnings, row.warnings);
  }
}

TEST(Format, NumToString) {
  const double large[] = {1e300};
  const std::string longest = FormatNumbers("%+.1000f", large).text;
  EXPECT_EQ(longest.size(), 1 + 301 + 1 + 1000);
  EXPECT_TRUE(
      longest.starts_with("+1000000000000000052504760255204420248704468581108159154915854"));
  const char* name = "_Nuv_String_CNumberToString_";
  const FormatRow rows[] = {
      {name, R"("in":[1e300],"const":[true,1000,1,1000])", longest.c_str()},
  };
  CheckFormats("NumToString", rows);
}

TEST(Format, PrintfNum) {
  const char* name = "_Nuv_String_CPrintfNum_";
  const FormatRow rows[] = {
      {name, R"("in":["%*f %.*fx %1$f %.-1f", 1])", "%*f %.*fx %1$f %.-1f",
       R"(Invalid conversion "%*f" in format;Invalid conversion "%.*f" in format;)"
       R"(Invalid conversion "%1$f" in format;Invalid conversion "%.-1f" in format;)"},
      {name, R"("in":["%llf%Lf%lf", 1])", "%llf%Lf1.000000",
       R"(Invalid conversion "%llf" in format;Invalid conversion "%Lf" in format;)"},
      {name, R"("in":["5%5%", 1])", "5%5%",
       R"(Invalid conversion "%5" in format;Invalid conversion "%" in format;)"},
      {name, R"("in":["%99999999999999999999f", 1])", "%99999999999999999999f",
       R"(Invalid conversion "%99999999999999999999f" in format;)"},
  };
  CheckFormats("PrintfNum", rows);

  // Beyond a hundred, invalid conversions are counted.
  std::string format;
  std::string messages;
  for (int i = 1; i <= 103; ++i) {
    format += "%d";
    if (i <= 100) messages += R"(Invalid conversion "%d" in format;)";
    if (i != 100 && i != 103) continue;
    if (i > 100) messages += "3 more invalid conversions in format;";
    const std::string members = R"("in":[")" + format + R"("])";
    const FormatRow row[] = {{name, members.c_str(), format.c_str(), messages.c_str()}};
    CheckFormats("PrintfNum", row);
  }
}

TEST(Format, PrintfNumInfWithACountBelowItsInputs) {
  const char* name = "_Nuv_String_CPrintfNumInf_";
  const FormatRow rows[] = {{name, R"("in":["%g-%g", 1, 2],"count":1)", "0-0"},
                            {name, R"("in":["%g-%g", 1, 2],"count":0)", "0-0"}};
  CheckFormats("PrintfNumInf", rows);
}

TEST(Format, LimitsOfWidthAndPrecision) {
  const double largest[] = {std::numeric_limits<double>::max()};
  const std::string text = FormatNumbers("%#.65535f", largest).text;
  EXPECT_EQ(text.size(), 309 + 1 + 65535);
  EXPECT_EQ(FormatNumbers("%065535.65535f", largest).text, text);
  const double smallest[] = {-std::numeric_limits<double>::denorm_min()};
  EXPECT_EQ(FormatNumbers("%65535.f", smallest).text, std::string(65533, ' ') + "-0");
  for (const char* beyond : {"%65536f", "%.65536f"}) {
    EXPECT_EQ(FormatNumbers(beyond, largest).invalid, std::vector<std::string_view>{beyond});
  }
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

// Formats made of anything: under the sanitizers a read behind the numbers, or outside the format,
// ends the test. What is invalid is copied, so that it stands in the text, too.
TEST(Format, AnyFormatIsSafe) {
  constexpr const char* kPieces[] = {"%", "%", "%", "f", "e", "g",  "a",  "G",    ".",     "*",
                                     "$", "-", "+", " ", "#", "0",  "1",  "9",    "l",     "h",
                                     "s", "n", "d", "x", "'", "%f", "%%", "\x80", "65535", "65536"};
  std::mt19937_64 random(2);
  for (int round = RandomRounds(100'000); round > 0; --round) {
    const std::string text = AnyText(random, kPieces, 12);
    const auto format = std::make_unique<char[]>(text.size());  // nothing stands behind it
    std::memcpy(format.get(), text.data(), text.size());
    std::vector<double> numbers(random() % 4);
    for (double& number : numbers) number = AnyNumber(random);
    const formula::FormattedText formatted = FormatNumbers({format.get(), text.size()}, numbers);
    std::size_t found = 0;
    for (const std::string_view invalid : formatted.invalid) {
      found = formatted.text.find(invalid, found);
      ASSERT_NE(found, std::string::npos) << text;
      found += invalid.size();
    }
    if (numbers.empty()) {
      const std::size_t percent_signs = text.size() - formatted.text.size();
      ASSERT_EQ(text.find("%%") == std::string::npos, percent_signs == 0) << text;
    }
  }
}

}  // namespace
