// Trigonometric instructions, in both angle units.
#include <cmath>
#include <cstdlib>
#include <cstring>

#include "tests/instr/table.h"

namespace {

struct TrigRow {
  const char* name;
  double input;
  double expected;  ///< rounded from 80 digits; an ArcXxx of degrees: rounded, times 180, over pi
};

/// How many doubles lie between two of one sign.
std::int64_t UlpsBetween(double a, double b) {
  std::int64_t bits[2];
  std::memcpy(&bits[0], &a, sizeof a);
  std::memcpy(&bits[1], &b, sizeof b);
  return std::abs(bits[0] - bits[1]);
}

void CheckTrig(const char* unit, std::span<const TrigRow> rows, std::int64_t most_ulps) {
  nuvhost::ExecSession session(BuiltCatalogue());
  Exec(session, std::string(R"({"set":{"angleUnit":")") + unit + R"("}})");
  for (const TrigRow& row : rows) {
    const nuvhost::Json request{{"instr", std::string("_Nuv_Trigonometric_") + row.name + "_"},
                                {"in", {row.input}}};
    const nuvhost::Json answer = Exec(session, request.dump());
    ASSERT_EQ(answer.value("status", -1), 0) << answer.dump();
    EXPECT_LE(UlpsBetween(answer["out"][0], row.expected), most_ulps)
        << row.name << " of " << row.input << " " << unit << ": " << answer.dump();
  }
  Exec(session, R"({"set":{"angleUnit":"radians"}})");  // the unit belongs to the process
}

TEST(Trigonometry, Degrees) {
  const TrigRow rows[] = {
      {"Sin", 1e9, -0.9848077528142326},
      {"ArcCos", 0.1, 84.26082952273322},
      {"ArcTan", 1e-9, 5.729577951308233e-08},
  };
  CheckTrig("degrees", rows, 2);
}

TEST(Trigonometry, Radians) {
  const TrigRow rows[] = {
      {"Sin", 90.0, 0.8939966636005579},
      {"Sin", 22.0, -0.008851309290403876},
      {"Sin", 1e9, 0.5458434494486996},
      {"Sin", -999999999.9, -0.4594673445348318},
      {"Cos", -2.5, -0.8011436155469337},
      {"Cos", 123456789.125, 0.01572303612257408},
      {"Tan", 123456789.125, 63.59308581576732},
      {"ArcSin", 0.1, 0.1001674211615598},
      {"ArcCos", 0.999999, 0.0014142136802445852},
      {"ArcTan", -1.0, -0.7853981633974483},
  };
  CheckTrig("radians", rows, 2);
}

}  // namespace
