// The fits find the best figure there is.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

#include "tests/host/fit_sum.h"
#include "tests/instr/random_rounds.h"

namespace {

TEST(Fit, SixPointsHaveThePublishedCircle) {
  const Result fit = FitCircle({{1, 7}, {2, 6}, {5, 8}, {7, 7}, {9, 5}, {3, 7}}, 0);
  EXPECT_EQ(fit.status, 0U);
  EXPECT_NEAR(fit.center.x, 4.7397824109, 1e-10);
  EXPECT_NEAR(fit.center.y, 2.9835326993, 1e-10);
  EXPECT_NEAR(fit.diameter / 2.0, 4.7142260378, 1e-10);
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
    long double squares = 0;
    for (const CNuvPoint& p : fit.used) {
      const long double a = fit.line.a, r = p.y * std::cos(a) - p.x * std::sin(a) - fit.line.d;
      squares += r * r;
    }
    EXPECT_LE(squares, least * (1 + 1e-9) + 1e-25);
  }
}

TEST(Fit, CirclesAreTheBestOfAllSubsets) {
  Random random(3);
  for (int round = RandomRounds(60); round > 0; --round) {
    const Challenge challenge = AnyChallenge(random, kShapes[1 + random.Below(3)],
                                             kOutlierKinds[random.Below(7)], 8 + round % 7);
    EXPECT_FALSE(IsLarger(SumQuotient(challenge))) << round;
    const Result fit = FitCircle(challenge.scene.points, challenge.percent);
    EXPECT_TRUE(IsDivided(challenge.scene.points, fit, challenge.percent));
  }
}

/// On both sides of where lines are swept exactly, where all subsets of circles are tried (of 15
/// points up to 5, of 24 up to 3), and where a sample is drawn.
TEST(Fit, SumsAreNotLargerThanThoseOfTheTrueInliers) {
  Random random(2);
  const std::size_t counts[] = {15, 24, 25, 48, 49, 100, 511, 512, 513, 600, 4096, 5000};
  int larger = 0;
  const int rounds = RandomRounds(336);
  for (int round = 0; round < rounds; ++round) {
    const Challenge challenge =
        AnyChallenge(random, kShapes[round % 4], kOutlierKinds[round % 7], counts[round % 12]);
    larger += IsLarger(SumQuotient(challenge)) ? 1 : 0;
  }
  EXPECT_LE(larger, rounds / 500);
}

/// The worst that lines through samples can meet: more outliers than their share in half of the
/// samples, and a stretch of the list without anything else.
TEST(Fit, RunsOfFarOutliersDoNotMatter) {
  for (const std::size_t count : {600U, 1000U, 20000U}) {
    for (const std::size_t percent : {5U, 30U, 45U}) {
      Points points(count);
      const std::size_t out = count * percent / 100;
      for (std::size_t i = 0; i < count; ++i) {
        const double x = static_cast<double>(i % 97);
        points[i] = i >= out && i < 2 * out ? CNuvPoint(5000.0 + x, 8000.0 - x) : CNuvPoint(x, 0.0);
      }
      const Result fit = FitLine(points, static_cast<std::uint32_t>(percent));
      EXPECT_EQ(fit.line, CNuvLine(0.0, 0.0)) << count << " " << percent;
    }
  }
}

TEST(Fit, CentresOfCirclesDoNotRunAway) {
  Random random(5);
  for (int round = RandomRounds(100); round > 0; --round) {
    const Scene scene = MakeScene(random, {.shape = Shape::kQuarterArc, .count = 15, .out = 3});
    const Result fit = FitCircle(scene.points, 20);
    ASSERT_EQ(fit.status, 0U);
    EXPECT_LT(fit.diameter, 2.0 * kSize);
  }
}

/// Small whole coordinates often lie symmetric about their mean, where all slopes are 0.
TEST(Fit, NoCircleStandsOnASaddle) {
  Random random(6);
  for (int round = RandomRounds(20'000); round > 0; --round) {
    Points points(static_cast<std::size_t>(3 + random.Below(7)));
    for (CNuvPoint& p : points) p = {1.0 * random.Below(7), 0.001 * random.Below(3) - 0.001};
    if (round % 2 == 0) {
      for (CNuvPoint& p : points) p.y = random.Below(4);
    }
    const Result circle = FitCircle(points, 0);
    if (circle.status != 0) continue;
    const long double least = CircleSquares(points, circle.center.x, circle.center.y);
    for (int way = 0; way < 16; ++way) {
      const double turn = way * std::numbers::pi / 8.0;
      const double x = circle.center.x + 0.005 * circle.diameter * std::cos(turn);
      const double y = circle.center.y + 0.005 * circle.diameter * std::sin(turn);
      EXPECT_GE(CircleSquares(points, x, y), least * (1.0L - 1e-5L) - 1e-24L)
          << round << ": " << circle.center.x << " " << circle.center.y << " " << circle.diameter;
    }
  }
}

TEST(Fit, NoCircleNearbyIsBetter) {
  Random random(4);
  for (int round = RandomRounds(200); round > 0; --round) {
    const int count = 3 + random.Below(60);
    const double noise = std::pow(10.0, random.Between(-6.0, 1.0));
    const Points points = NearFigure(random, true, count, 0.1, noise);
    const Result circle = FitCircle(points, 0);
    ASSERT_EQ(circle.status, 0U);
    // Half the gradient of the sum, along the centre's coordinates and the radius.
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
