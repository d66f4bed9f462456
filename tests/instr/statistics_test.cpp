#include <algorithm>
#include <cmath>
#include <numeric>
#include <random>
#include <vector>

#include "tests/instr/table.h"

namespace {

using nuvhost::Json;

TEST(Statistics, Rows) {
  const InstructionRow rows[] = {
      {"_Nuv_Numeric_CMin_", "[3, 1, 1]", "[1,1]"},
      {"_Nuv_Numeric_CMin_", R"([1, "NaN", -1])", "[-1,2]"},
      {"_Nuv_Numeric_CMin_", R"(["NaN", 1, 2])", R"(["NaN",0])"},
      {"_Nuv_Numeric_CMin_", "[0, -0.0]", "[0,0]"},
      {"_Nuv_Numeric_CMax_", "[5]", "[5,0]"},
      {"_Nuv_Numeric_CMax_", "[1, 3, 3]", "[3,1]"},
      {"_Nuv_Numeric_CMean_", "[4]", "[4]"},
      {"_Nuv_Numeric_CVariance_", "[1, 2, 3, 4]", "[1.25]"},
      Fails("_Nuv_Numeric_CVariance_", "[1]"),
      {"_Nuv_Numeric_CSumArr_", "[[]]", "[0]"},
      Fails("_Nuv_Numeric_CMinArr_", "[[]]"),
      Fails("_Nuv_Numeric_CMaxArr_", "[[]]"),
      Fails("_Nuv_Numeric_CMeanArr_", "[[]]"),
      {"_Nuv_Numeric_CVarianceArr_", "[[1, 2, 3, 4]]", "[1.6666666666666667]"},
      Fails("_Nuv_Numeric_CVarianceArr_", "[[1]]"),
      {"_Nuv_Numeric-Stat_CCp_", "[10, 0, 5, 5, 5]", "[999]"},
      {"_Nuv_Numeric-Stat_CCp_", "[10, 0, 4, 6]", "[1.178511301977579]"},
      Fails("_Nuv_Numeric-Stat_CCp_", "[10, 0, 4]"),
      {"_Nuv_Numeric-Stat_CCpk_", "[10, 0, 7, 9]", "[0.4714045207910316]"},
      {"_Nuv_Numeric-Stat_CCpk_", "[10, 0, 17, 19]", "[-1.8856180831641265]"},  // not clamped
      Fails("_Nuv_Numeric-Stat_CCpk_", "[]"),
      // The cap goes by the variance: 8e-8 is below 1e-7, 1.25e-7 above.
      {"_Nuv_Default_CCpArr_", "[6, 0, [0, 0.0004]]", "[999]"},
      {"_Nuv_Default_CCpArr_", "[6, 0, [0, 0.0005]]", "[2828.42712474619]"},
      Fails("_Nuv_Default_CCpArr_", "[10, 0, [5]]"),
      Fails("_Nuv_Number-Stat_CCpkArr_", "[10, 0, []]"),
      {"_Nuv_Number-Stat_CCpkArr_", R"([10, 0, [1, "Infinity"]])", R"(["NaN"])"},
  };
  CheckRows(rows);
}

TEST(Statistics, CountBelowTheDeclaredInputsFails) {
  nuvhost::ExecSession session(BuiltCatalogue());
  for (const char* call : {R"({"instr":"_Nuv_Numeric_CMean_","in":[1],"count":0})",
                           R"({"instr":"_Nuv_Numeric-Stat_CCp_","in":[9,1,2,4],"count":1})"}) {
    EXPECT_EQ(Exec(session, call)["status"], 3) << call;
  }
}

/// The first result of a call, or the second.
Json Result(nuvhost::ExecSession& session, const char* identifier, const Json& inputs,
            std::size_t result = 0) {
  return Exec(session, Json{{"instr", identifier}, {"in", inputs}}.dump())["out"][result];
}

// The forms over inputs and over arrays must agree to the last bit, and both with what the
// standard library finds.
TEST(Statistics, BothFormsAgreeOnRandomSamples) {
  nuvhost::ExecSession session(BuiltCatalogue());
  std::mt19937_64 random(4);
  for (int round = 0; round < 300; ++round) {
    std::vector<double> sample(2 + random() % 60);
    std::normal_distribution<double> normal(std::ldexp(1.0, static_cast<int>(random() % 20)), 1.0);
    for (double& value : sample) {
      value = round % 3 == 0 ? static_cast<double>(random() % 5) : normal(random);
    }
    const Json numbers = sample;
    Json limited = Json::array({sample[0] + 3.0, sample[0] - 2.0});
    Json limited_array = limited;
    limited_array.push_back(numbers);
    for (const double value : sample) limited.push_back(value);

    const Json array = Json::array({numbers});
    EXPECT_EQ(Result(session, "_Nuv_Numeric_CMean_", numbers),
              Result(session, "_Nuv_Numeric_CMeanArr_", array));
    EXPECT_EQ(Result(session, "_Nuv_Numeric_AddNumbers_", numbers),
              Result(session, "_Nuv_Numeric_CSumArr_", array));
    EXPECT_EQ(Result(session, "_Nuv_Numeric_CSumArr_", array),
              std::accumulate(sample.begin(), sample.end(), 0.0));
    EXPECT_EQ(Result(session, "_Nuv_Numeric-Stat_CCp_", limited),
              Result(session, "_Nuv_Default_CCpArr_", limited_array));
    EXPECT_EQ(Result(session, "_Nuv_Numeric-Stat_CCpk_", limited),
              Result(session, "_Nuv_Number-Stat_CCpkArr_", limited_array));

    const auto smallest = std::ranges::min_element(sample);
    const auto largest = std::max_element(sample.begin(), sample.end());
    for (const auto& [form, inputs] : {std::pair{"", numbers}, std::pair{"Arr", array}}) {
      const std::string min = std::string("_Nuv_Numeric_CMin") + form + "_";
      const std::string max = std::string("_Nuv_Numeric_CMax") + form + "_";
      EXPECT_EQ(Result(session, min.c_str(), inputs), *smallest);
      EXPECT_EQ(Result(session, min.c_str(), inputs, 1), smallest - sample.begin());
      EXPECT_EQ(Result(session, max.c_str(), inputs), *largest);
      EXPECT_EQ(Result(session, max.c_str(), inputs, 1), largest - sample.begin());
    }

    const auto n = static_cast<double>(sample.size());
    const double population = Result(session, "_Nuv_Numeric_CVariance_", numbers);
    const double unbiased = Result(session, "_Nuv_Numeric_CVarianceArr_", array);
    const double scale = n * sample[0] * sample[0] + 1.0;
    EXPECT_NEAR(population * n / (n - 1.0), unbiased, 1e-14 * scale);
    double squares = 0.0;  // the two-pass variance of textbooks
    const double mean = std::accumulate(sample.begin(), sample.end(), 0.0) / n;
    for (const double value : sample) squares += (value - mean) * (value - mean);
    EXPECT_NEAR(unbiased, squares / (n - 1.0), 1e-14 * scale);
  }
}

}  // namespace
