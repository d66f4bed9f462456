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

TEST(Trigonometry, QuadrantsInDegreesAreExact) {
  const TrigRow rows[] = {
      {"Sin", 0.0, 0.0},     {"Sin", -0.0, -0.0},       {"Sin", 90.0, 1.0},
      {"Sin", -90.0, -1.0},  {"Sin", 270.0, -1.0},      {"Cos", 0.0, 1.0},
      {"Cos", 180.0, -1.0},  {"Cos", 360.0, 1.0},       {"Tan", 0.0, 0.0},
      {"ArcSin", 1.0, 90.0}, {"ArcSin", -1.0, -90.0},   {"ArcSin", -0.0, -0.0},
      {"ArcCos", 1.0, 0.0},  {"ArcCos", 0.0, 90.0},     {"ArcCos", -1.0, 180.0},
      {"ArcTan", 1.0, 45.0}, {"ArcTan", -1e300, -90.0}, {"ArcTan", -0.0, -0.0},
  };
  CheckTrig("degrees", rows, 0);
}

TEST(Trigonometry, Degrees) {
  const TrigRow rows[] = {
      {"Sin", 30.0, 0.49999999999999994},
      {"Sin", 180.0, 1.2246467991473532e-16},  // of the double nearest to pi
      {"Cos", 90.0, 6.123233995736766e-17},
      {"Tan", 45.0, 0.9999999999999999},
      {"Sin", 1e9, -0.9848077528142326},
      {"ArcSin", 0.5, 30.000000000000004},
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

// Without a message, and whatever the preferred unit.
TEST(Trigonometry, NoRangeIsChecked) {
  nuvhost::ExecSession session(BuiltCatalogue());
  const InstructionRow rows[] = {
      {"_Nuv_Trigonometric_ArcCos_", "[1.5]", R"(["NaN"])"},
      {"_Nuv_Trigonometric_ArcSin_", "[-2]", R"(["NaN"])"},
      {"_Nuv_Trigonometric_Sin_", R"(["Infinity"])", R"(["NaN"])"},
      {"_Nuv_Trigonometric_Tan_", R"(["NaN"])", R"(["NaN"])"},
      {"_Nuv_Trigonometric_Deg2Rad_", "[-7.3]", "[-0.12740903539558604]"},
      {"_Nuv_Trigonometric_Deg2Rad_", "[1e308]", R"(["Infinity"])"},  // the product overflows
      {"_Nuv_Trigonometric_Rad2Deg_", "[-7.3]", "[-418.25919044550096]"},
      {"_Nuv_Trigonometric_GetPi_", "[]", "[3.141592653589793]"},
      {"_Nuv_Trigonometry_CGetPiDiv2_", "[]", "[1.5707963267948966]"},
      {"_Nuv_Trigonometry_CGetPiDiv4_", "[]", "[0.7853981633974483]"},
  };
  for (const char* unit : {"degrees", "radians"}) {
    Exec(session, std::string(R"({"set":{"angleUnit":")") + unit + R"("}})");
    CheckRows(rows);
  }
}

}  // namespace
