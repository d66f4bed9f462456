#include <algorithm>
#include <cmath>
#include <numeric>
#include <random>
#include <vector>

#include "tests/instr/table.h"

namespace {

using nuvhost::Json;

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
    /// The answers of an instruction over inputs, which are those of the one over an array.
    const auto both = [&](const char* one, const char* other, const Json& limits = Json::array()) {
      Json inputs = limits;
      Json array = limits;
      for (const double value : sample) inputs.push_back(value);
      array.push_back(sample);
      const Json out = Exec(session, Json{{"instr", one}, {"in", inputs}}.dump())["out"];
      EXPECT_EQ(Exec(session, Json{{"instr", other}, {"in", array}}.dump())["out"], out) << one;
      return out;
    };
    const auto smallest = std::ranges::min_element(sample);
    const auto largest = std::max_element(sample.begin(), sample.end());
    EXPECT_EQ(both("_Nuv_Numeric_CMin_", "_Nuv_Numeric_CMinArr_"),
              Json({*smallest, smallest - sample.begin()}));
    EXPECT_EQ(both("_Nuv_Numeric_CMax_", "_Nuv_Numeric_CMaxArr_"),
              Json({*largest, largest - sample.begin()}));
    const double sum = std::accumulate(sample.begin(), sample.end(), 0.0);
    EXPECT_EQ(both("_Nuv_Numeric_AddNumbers_", "_Nuv_Numeric_CSumArr_")[0], sum);
    const auto n = static_cast<double>(sample.size());
    const double mean = both("_Nuv_Numeric_CMean_", "_Nuv_Numeric_CMeanArr_")[0];
    EXPECT_EQ(mean, sum / n);
    double squares = 0.0;  // the two-pass variance of textbooks
    for (const double value : sample) squares += (value - mean) * (value - mean);
    const double scale = 1e-14 * (n * sample[0] * sample[0] + 1.0);
    const Json array = Json::array({sample});
    const auto variance = [&](const char* name, const Json& in) -> double {
      return Exec(session, Json{{"instr", name}, {"in", in}}.dump())["out"][0];
    };
    EXPECT_NEAR(variance("_Nuv_Numeric_CVariance_", sample), squares / n, scale);
    const double unbiased = variance("_Nuv_Numeric_CVarianceArr_", array);
    EXPECT_NEAR(unbiased, squares / (n - 1.0), scale);
    // The nearer of two limits, one of them on either side of the mean.
    const double high = mean + static_cast<double>(random() % 9) - 1.0;
    const Json limits = {high, mean - 3.0};
    const double cp = both("_Nuv_Numeric-Stat_CCp_", "_Nuv_Default_CCpArr_", limits)[0];
    const double cpk = both("_Nuv_Numeric-Stat_CCpk_", "_Nuv_Number-Stat_CCpkArr_", limits)[0];
    if (unbiased < 0.1) continue;
    const double sigma = std::sqrt(unbiased);
    EXPECT_NEAR(cp * sigma, (high - mean + 3.0) / 6.0, 1e-8);
    EXPECT_NEAR(cpk * sigma, std::min(high - mean, 3.0) / 3.0, 1e-8);
  }
}

}  // namespace
