// The fits find the best figure there is.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

#include "reference_host/geometry/enumerate.h"
#include "tests/host/fit_calls.h"
#include "tests/host/plain_fits.h"
#include "tests/instr/random_rounds.h"

namespace {

long double CircleSquares(const Points& points) {
  const Result fit = FitCircle(points, 0);
  return fit.status == 0 ? CircleSquares(points, fit.center.x, fit.center.y) : kInfinity;
}

TEST(Fit, SixPointsHaveThePublishedCircle) {
  const Result fit = FitCircle({{1, 7}, {2, 6}, {5, 8}, {7, 7}, {9, 5}, {3, 7}}, 0);
  EXPECT_EQ(fit.status, 0U);
  EXPECT_NEAR(fit.center.x, 4.7397824109, 1e-10);
  EXPECT_NEAR(fit.center.y, 2.9835326993, 1e-10);
  EXPECT_NEAR(fit.diameter / 2.0, 4.7142260378, 1e-10);
}

TEST(Fit, SimpleFiguresAreExact) {
  const double pi = std::numbers::pi;
  const struct {
    Points points;
    double a, d;
  } lines[] = {
      {{{0, 3}, {1, 3}, {7, 3}}, 0.0, 3.0},
      {{{5, 0}, {5, -4}, {5, 9}}, pi / 2, -5.0},
      {{{0, 0}, {1, 1}}, pi / 4, 0.0},
      {{{1, 0}, {0, 1}}, -pi / 4, std::sqrt(0.5)},
      {{{0, 0}, {1e-20, -1}}, pi / 2, 0.0},
      {{{0, 0}, {1, 0}, {1, 1}, {0, 1}}, 0.0, 0.5},
      {{{1e200, 5e200}, {3e200, 5e200}}, 0, 5e200},
  };
  for (const auto& row : lines) {
    const Result fit = FitLine(row.points, 0);
    EXPECT_EQ(fit.status, 0U);
    EXPECT_DOUBLE_EQ(fit.line.a, row.a);
    EXPECT_NEAR(fit.line.d, row.d, 1e-15 * std::fabs(row.d) + 1e-16);
  }
  const Result circle = FitCircle({{1, 0}, {0, 1}, {-1, 0}, {0, -1}}, 0);
  EXPECT_NEAR(circle.center.x, 0.0, 1e-16);
  EXPECT_NEAR(circle.center.y, 0.0, 1e-16);
  EXPECT_NEAR(circle.diameter, 2.0, 1e-15);
  EXPECT_NEAR(circle.error, 0.0, 1e-16);
}

TEST(Fit, LinesAreTheBestOfAllSubsets) {
  Random random(1);
  for (int round = RandomRounds(300); round > 0; --round) {
    const int count = 4 + random.Below(7);
    Points points = NearFigure(random, false, count, 0.3, 1.0);
    // Small whole coordinates: parallel, collinear and coincident points.
    if (round % 2 == 0) {
      for (CNuvPoint& p : points) p = {random.Below(5) * 1.0, random.Below(4) * 1.0};
    }
    // Tenths are on one line only nearly.
    if (round % 3 == 0) {
      for (CNuvPoint& p : points) p = {p.x * 0.1, p.y * 0.1};
    }
    const auto percent = static_cast<std::uint32_t>(random.Below(60));
    const std::size_t kept = points.size() - points.size() * percent / 100;
    const long double least = LeastOfAllSubsets(points, kept, LineSquares);
    const Result fit = FitLine(points, percent);
    ASSERT_EQ(fit.status == 0, least < kInfinity);
    if (fit.status != 0) continue;
    EXPECT_TRUE(IsDivided(points, fit, percent));
    EXPECT_LE(LineSquares(fit.used), least * (1 + 1e-9) + 1e-25);
  }
}

TEST(Fit, SearchBeyondTheExactOneFindsTheSame) {
  Random random(2);
  int missed = 0;
  const int rounds = RandomRounds(40);
  for (int round = 0; round < rounds; ++round) {
    const auto count = static_cast<std::size_t>(geometry::kMostSweptPoints + 1 + random.Below(40));
    const std::size_t kept = count - count * 40 / 100;
    const Points points = NearFigure(random, false, static_cast<int>(count), 0.4, 1.0);
    const geometry::Frame frame(0.0, 0.0, 0.0, 0.0);
    const std::vector<bool> best =
        geometry::BestLineSubset(geometry::InFrame(frame, points.data(), count), kept);
    Points subset;
    for (std::size_t i = 0; i < count; ++i) {
      if (best[i]) subset.push_back(points[i]);
    }
    const long double least = LineSquares(subset);
    const long double found = LineSquares(FitLine(points, 40).used);
    EXPECT_LE(least, found * (1 + 1e-9L));
    missed += found > least * (1 + 1e-9L) ? 1 : 0;
  }
  EXPECT_LE(missed, rounds / 10);
}

TEST(Fit, CirclesAreTheBestOfAllSubsets) {
  Random random(3);
  for (int round = RandomRounds(60); round > 0; --round) {
    const Points points = NearFigure(random, true, 5 + random.Below(5), 0.3, 3.0);
    const auto percent = static_cast<std::uint32_t>(random.Below(45));
    const std::size_t kept = points.size() - points.size() * percent / 100;
    const Result fit = FitCircle(points, percent);
    if (kept < 3) {
      EXPECT_NE(fit.status, 0U);
      continue;
    }
    const long double least =
        LeastOfAllSubsets(points, kept, [](const Points& p) { return CircleSquares(p); });
    ASSERT_EQ(fit.status == 0, least < kInfinity);
    if (fit.status != 0) continue;
    EXPECT_TRUE(IsDivided(points, fit, percent));
    EXPECT_LE(CircleSquares(fit.used, fit.center.x, fit.center.y), least * (1 + 1e-7) + 1e-25);
  }
}

TEST(Fit, NothingNearbyIsBetter) {
  Random random(4);
  for (int round = RandomRounds(200); round > 0; --round) {
    const int count = 3 + random.Below(60);
    const double noise = std::pow(10.0, random.Between(-6.0, 1.0));
    const Result line = FitLine(NearFigure(random, false, count, 0.1, noise), 0);
    ASSERT_EQ(line.status, 0U);
    // Half the gradient of the sum, along the offset and the angle.
    const long double a = line.line.a;
    long double offset = 0, turn = 0, size = 0;
    for (const CNuvPoint& p : line.used) {
      const long double r = -p.x * std::sin(a) + p.y * std::cos(a) - line.line.d;
      offset += r;
      turn += r * (p.x * std::cos(a) + p.y * std::sin(a));
      size += p.x * p.x + p.y * p.y;
    }
    EXPECT_LT(std::fabs(offset), 1e-14L * size);
    EXPECT_LT(std::fabs(turn), 1e-13L * size);

    const Points points = NearFigure(random, true, count, 0.1, noise);
    const Result circle = FitCircle(points, 0);
    ASSERT_EQ(circle.status, 0U);
    long double slope_x = 0, slope_y = 0, radius = 0, error = 0;
    for (const CNuvPoint& p : points) {
      const long double dx = p.x - circle.center.x, dy = p.y - circle.center.y;
      const long double d = std::hypot(dx, dy), r = d - circle.diameter / 2.0L;
      slope_x += r * dx / d;
      slope_y += r * dy / d;
      radius += r;
      error += std::fabs(r) / count;
    }
    EXPECT_LT(std::fabs(radius), 1e-12L * count * circle.diameter);
    EXPECT_NEAR(static_cast<double>(error), circle.error, 1e-10 * (circle.diameter + circle.error));
    // A circle far larger than its points is all but a line: its centre is not sharp.
    if (circle.diameter > 1e3) continue;
    EXPECT_LT(std::fabs(slope_x), 2e-9L * count);
    EXPECT_LT(std::fabs(slope_y), 2e-9L * count);
  }
}

}  // namespace
