// The fits where points are hostile: gross outliers, extreme sizes, no answer.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "tests/host/fit_calls.h"
#include "tests/host/plain_fits.h"

namespace {

double DistanceFrom(const Result& fit, bool circle, const CNuvPoint& p) {
  return std::fabs(circle ? std::hypot(p.x - fit.center.x, p.y - fit.center.y) - fit.diameter / 2.0
                          : p.y * std::cos(fit.line.a) - p.x * std::sin(fit.line.a) - fit.line.d);
}

TEST(FitRobust, TrimmedFitIsTheFitOfThePointsUsedWhichAreTheNearest) {
  Random random(5);
  for (const int count : {49, 60, 100, 513, 3000}) {
    for (const bool circle : {false, true}) {
      const Fitting fit = circle ? FitCircle : FitLine;
      const Points points = NearFigure(random, circle, count, 0.3, 0.5);
      const Result result = fit(points, 30);
      ASSERT_EQ(result.status, 0U);
      EXPECT_TRUE(IsDivided(points, result, 30));
      Result again = fit(result.used, 0);
      again.outliers = result.outliers;
      EXPECT_TRUE(again == result);
      EXPECT_TRUE(fit(points, 30) == result);
      const auto farthest = [&](const Points& from, bool least) {
        double found = least ? kInfinity : 0.0;
        for (const CNuvPoint& p : from) {
          const double distance = DistanceFrom(result, circle, p);
          found = least ? std::min(found, distance) : std::max(found, distance);
        }
        return found;
      };
      EXPECT_LE(farthest(result.used, false), farthest(result.outliers, true) * (1 + 1e-9));
    }
  }
}

TEST(FitRobust, GrossOutliersDoNotMatter) {
  Random random(6);
  for (const double far : {1e3, 1e9, 1e100, 1e200, 1.7e308}) {
    for (const int count : {20, 200}) {
      for (const bool circle : {false, true}) {
        const Fitting fit = circle ? FitCircle : FitLine;
        const Points clean = NearFigure(random, circle, count, 0.0, 0.1);
        Points points = clean;
        for (int i = 0; i < count / 5; ++i) {
          const CNuvPoint outlier(far * std::cos(i), far * std::sin(i));
          points.insert(points.begin() + i * 3, outlier);
        }
        // Of 6/5 n points, 17 % is the fifth of n, and not more.
        const Result result = fit(points, 17);
        ASSERT_EQ(result.status, 0U) << far;
        EXPECT_TRUE(result.used == clean) << far << " " << count << " " << circle;
      }
    }
  }
}

/// The points nearest to the fit of the inliers are one of the subsets to choose from, some
/// outliers among them.
TEST(FitRobust, TrimmedFitLeansOnNoOutlierThatMustBeKept) {
  Random random(8);
  constexpr OutlierKind kKinds[] = {OutlierKind::kSpread, OutlierKind::kNearBlob,
                                    OutlierKind::kTwoBlobs, OutlierKind::kSecondEdge};
  for (int round = 0; round < 1000; ++round) {
    const bool circle = round % 4 == 0;
    const auto percent = static_cast<std::uint32_t>(5 + random.Below(41));
    const std::size_t count = 49 + static_cast<std::size_t>(random.Below(150));
    const std::size_t out = count * percent / 100;
    const Scene scene =
        MakeScene(random, {.shape = circle ? Shape::kCircle : Shape::kLine,
                           .outliers = kKinds[random.Below(4)],
                           .count = count,
                           .out = out + 1 + static_cast<std::size_t>(random.Below(3)),
                           .noise = kSize * random.Scaled(1e-4, 1e-2)});
    const Fitting fit = circle ? FitCircle : FitLine;
    const Result truth = fit(scene.inliers, 0);
    Points nearest = scene.points;
    std::ranges::sort(nearest, {},
                      [&](const CNuvPoint& p) { return DistanceFrom(truth, circle, p); });
    nearest.resize(count - out);
    const auto squares = [&](const Result& result) {
      return circle ? CircleSquares(result.used, result.center.x, result.center.y)
                    : LineSquares(result.used);
    };
    EXPECT_LE(squares(fit(scene.points, percent)), 1.1L * squares(fit(nearest, 0))) << round;
  }
}

/// The same figure, resized, moved or turned. A power of two changes no digit of it, and none of
/// the fit, unless squares of the lengths leave the range of numbers.
TEST(FitRobust, FollowsItsPoints) {
  Random random(7);
  const struct {
    double scale, x, y, turn;
  } moves[] = {{0x1p-20, 0, 0, 0},
               {0x1p-150, 0, 0, 0},
               {0x1p150, 0, 0, 0},
               {0x1p600, 0, 0, 0},
               {0x1p-600, 0, 0, 0},
               {0x1p-1030, 0, 0, 0},
               {0x1p1016, 0, 0, 0},
               {1.0, 1e6, -1e6, 0},
               {0x1p-20, 1e6, 1e6, 0},
               {0x1p-640, 0x1p-600, 0, 0},
               {1.0, 0, 0, std::numbers::pi / 2},
               {1.0, 0, 0, 1.0},
               {0.3, 40, 50, -2.5}};
  for (const int count : {12, 40, 80, 600}) {
    for (const auto& move : moves) {
      SCOPED_TRACE(testing::Message() << count << " points, move " << &move - moves);
      const double cosine = std::cos(move.turn);
      const double sine = std::sin(move.turn);
      const auto moved = [&](const CNuvPoint& p) {
        return CNuvPoint((p.x * cosine - p.y * sine) * move.scale + move.x,
                         (p.x * sine + p.y * cosine) * move.scale + move.y);
      };
      const bool is_exact = &move - moves < 3;
      const double near =
          is_exact ? 0.0 : 1e-11 + 1e-15 * (std::fabs(move.x) + std::fabs(move.y)) / move.scale;
      for (const bool is_circle : {false, true}) {
        const Fitting fit = is_circle ? FitCircle : FitLine;
        Points points = NearFigure(random, is_circle, count, 0.2, 0.5);
        Points moved_points;
        for (CNuvPoint& p : points) {
          // Few bits, so that moving does not round.
          p = {std::round(p.x * 64) / 64, std::round(p.y * 64) / 64};
          moved_points.push_back(moved(p));
        }
        const Result here = fit(points, 25);
        const Result there = fit(moved_points, 25);
        ASSERT_EQ(there.status, 0U);
        for (std::size_t i = 0; i < here.used.size(); ++i) {
          ASSERT_EQ(there.used[i], moved(here.used[i]));
        }
        if (is_circle) {
          const CNuvPoint center = moved(here.center);
          EXPECT_NEAR(there.diameter / move.scale, here.diameter, near);
          EXPECT_NEAR(there.error / move.scale, here.error, near);
          EXPECT_NEAR(there.center.x / move.scale, center.x / move.scale, near);
          EXPECT_NEAR(there.center.y / move.scale, center.y / move.scale, near);
        } else {
          EXPECT_NEAR(std::remainder(there.line.a - here.line.a - move.turn, std::numbers::pi), 0.0,
                      near);
          const CNuvPoint foot = moved(
              CNuvPoint(-here.line.d * std::sin(here.line.a), here.line.d * std::cos(here.line.a)));
          EXPECT_NEAR(
              (foot.y * std::cos(there.line.a) - foot.x * std::sin(there.line.a)) / move.scale,
              there.line.d / move.scale, is_exact ? 1e-13 : near);
          EXPECT_TRUE(!is_exact || there.line.d == here.line.d * move.scale);
        }
      }
    }
  }
}

TEST(FitRobust, ShortArcs) {
  for (const double radius : {10.0, 1e3, 1e5, 1e6}) {
    Points points;
    for (int i = -20; i <= 20; ++i) {
      const double t = i / 20.0 / radius;
      points.emplace_back(radius * std::sin(t), 2.0 * radius * std::pow(std::sin(t / 2), 2.0));
    }
    const Result fit = FitCircle(points, 0);
    ASSERT_EQ(fit.status, 0U) << radius;
    EXPECT_NEAR(fit.diameter / 2.0 / radius, 1.0, 1e-14 * radius);
  }
}

TEST(FitRobust, WhatHasNoAnswerFailsWithDefinedOutputs) {
  constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
  const Points good = {{0, 0}, {4, 1}, {5, 5}, {1, 4}, {9, 9}};
  const Points same(60, CNuvPoint(0.1, 0.7));
  Points tenths;
  Points many_tenths;
  for (int i = 0; i < 60; ++i) {
    tenths.emplace_back(0.1 * i, 0.3 * i);
    many_tenths.emplace_back(1e6 + 0.1 * i, 0.3 * i);
  }
  const auto with = [&](double x, double y) {
    Points points = good;
    points[3] = {x, y};
    return points;
  };
  const struct {
    Points points;
    std::uint32_t percent;
    bool line_too = true;
  } rows[] = {
      {{}, 0},
      {{{1, 1}}, 0},
      {{{1, 1}, {2, 3}}, 0, false},
      {{{1, 1}, {2, 3}, {3, 3}}, 50, false},
      {{{1, 1}, {2, 3}, {3, 3}}, 67},
      {good, 100},
      {good, 4294967295U},
      {good, 80},
      {good, 60, false},
      {same, 0},
      {same, 30},
      {{{1, 1}, {1, 1}, {1, 1}}, 0},
      {tenths, 0, false},
      {tenths, 30, false},
      {many_tenths, 0, false},
      {{{0, 0}, {1, 1}, {2, 2}, {5, 5}}, 25, false},
      {with(kNan, 0), 0},
      {with(0, kNan), 20},
      {with(kInfinity, 0), 0},
      {with(0, -kInfinity), 20},
      {with(kInfinity, kInfinity), 0},
  };
  Result no_line;
  no_line.included = 0;
  Result no_circle = no_line;
  no_line.line = CNuvLine();
  no_circle.center = CNuvPoint();
  no_circle.diameter = no_circle.error = 0.0;
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::Message() << &row - rows);
    const Result circle = FitCircle(row.points, row.percent);
    EXPECT_NE(no_circle.status = circle.status, 0U);
    EXPECT_EQ(circle, no_circle);
    const Result line = FitLine(row.points, row.percent);
    EXPECT_EQ(line.status != 0, row.line_too);
    no_line.status = line.status;
    EXPECT_EQ(line == no_line, row.line_too);
  }
}

}  // namespace
