// The fits where points are hostile: gross outliers, extreme sizes, no answer.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "tests/host/fit_calls.h"

namespace {

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
          const double distance = std::fabs(
              circle
                  ? std::hypot(p.x - result.center.x, p.y - result.center.y) - result.diameter / 2.0
                  : p.y * std::cos(result.line.a) - p.x * std::sin(result.line.a) - result.line.d);
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

/// The same figure, moved and resized.
TEST(FitRobust, FollowsItsPoints) {
  Random random(7);
  const struct {
    double scale, x, y;
  } moves[] = {{1.0, 1e6, -1e6},  {0x1p-20, 1e6, 1e6}, {0x1p600, 0, 0},        {0x1p-600, 0, 0},
               {0x1p-1030, 0, 0}, {0x1p1016, 0, 0},    {0x1p-640, 0x1p-600, 0}};
  for (const int count : {12, 80}) {
    for (const auto& move : moves) {
      Points points = NearFigure(random, false, count, 0.2, 0.5);
      Points circle_points = NearFigure(random, true, count, 0.2, 0.5);
      const auto moved = [&](Points& from) {
        Points to;
        for (CNuvPoint& p : from) {
          // Few bits, so that moving does not round.
          p = {std::round(p.x * 64) / 64, std::round(p.y * 64) / 64};
          to.emplace_back(p.x * move.scale + move.x, p.y * move.scale + move.y);
        }
        return to;
      };
      const Points moved_points = moved(points);
      const Result line = FitLine(points, 25);
      const Result moved_line = FitLine(moved_points, 25);
      ASSERT_EQ(moved_line.status, 0U) << move.scale;
      EXPECT_NEAR(moved_line.line.a, line.line.a, 1e-12);
      const double cosine = std::cos(line.line.a);
      const double sine = std::sin(line.line.a);
      EXPECT_NEAR(moved_line.line.d / move.scale,
                  line.line.d + (move.y / move.scale * cosine - move.x / move.scale * sine),
                  1e-11 + 1e-15 * (std::fabs(move.x) + std::fabs(move.y)) / move.scale);
      const Points moved_circle = moved(circle_points);
      const Result circle = FitCircle(circle_points, 25);
      const Result there = FitCircle(moved_circle, 25);
      ASSERT_EQ(there.status, 0U) << move.scale;
      EXPECT_NEAR(there.diameter / move.scale, circle.diameter, 1e-11);
      EXPECT_NEAR(there.error / move.scale, circle.error, 1e-11);
      const double coarse = 1e-11 + 1e-15 * (std::fabs(move.x) + std::fabs(move.y)) / move.scale;
      EXPECT_NEAR((there.center.x - move.x) / move.scale, circle.center.x, coarse);
      EXPECT_NEAR((there.center.y - move.y) / move.scale, circle.center.y, coarse);
      // The same points in all places.
      for (std::size_t i = 0; i < line.used.size(); ++i) {
        EXPECT_EQ(moved_line.used[i].x, line.used[i].x * move.scale + move.x);
        EXPECT_EQ(there.used[i].x, circle.used[i].x * move.scale + move.x);
      }
      // A quarter turn.
      Points turned;
      for (const CNuvPoint& p : circle_points) turned.emplace_back(-p.y, p.x);
      const Result turned_circle = FitCircle(turned, 25);
      EXPECT_NEAR(turned_circle.center.x, -circle.center.y, 1e-11);
      EXPECT_NEAR(turned_circle.diameter, circle.diameter, 1e-11);
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
    bool line_too;
  } rows[] = {
      {{}, 0, true},
      {{{1, 1}}, 0, true},
      {{{1, 1}, {2, 3}}, 0, false},
      {{{1, 1}, {2, 3}, {3, 3}}, 50, false},
      {{{1, 1}, {2, 3}, {3, 3}}, 67, true},
      {good, 100, true},
      {good, 4294967295U, true},
      {good, 80, true},
      {good, 60, false},
      {same, 0, true},
      {same, 30, true},
      {{{1, 1}, {1, 1}, {1, 1}}, 0, true},
      {tenths, 0, false},
      {tenths, 30, false},
      {many_tenths, 0, false},
      {{{0, 0}, {1, 1}, {2, 2}, {5, 5}}, 25, false},
      {with(kNan, 0), 0, true},
      {with(0, kNan), 20, true},
      {with(kInfinity, 0), 0, true},
      {with(0, -kInfinity), 20, true},
      {with(kInfinity, kInfinity), 0, true},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::Message() << &row - rows);
    Result nothing;
    nothing.included = 0;
    for (const bool circle : {false, true}) {
      const Result fit =
          circle ? FitCircle(row.points, row.percent) : FitLine(row.points, row.percent);
      if (!circle && !row.line_too) {
        EXPECT_EQ(fit.status, 0U);
        continue;
      }
      nothing.status = fit.status;
      nothing.line = circle ? CNuvLine(7.0, 7.0) : CNuvLine();
      nothing.center = circle ? CNuvPoint() : CNuvPoint(7.0, 7.0);
      nothing.diameter = nothing.error = circle ? 0.0 : 7.0;
      EXPECT_NE(fit.status, 0U);
      EXPECT_EQ(fit, nothing);
    }
  }
}

TEST(FitRobust, ExtremesAreOfThePointsUsed) {
  // A gross outlier, and the line y = 0 with points above and below, two of them equally far.
  const Points points = {{0, 0},  {1, 1},  {2, 1},  {3, -1}, {4, -1},
                         {5, 50}, {4, -1}, {3, -1}, {2, 1},  {1, 1}};
  std::uint32_t included = 77;
  double low = 7.0;
  double high = 7.0;
  CNuvPoint low_point(7, 7);
  CNuvPoint high_point(7, 7);
  CNuvLine line(7, 7);
  CNuvPointVector outliers;
  outliers.Resize(3);
  const auto fit = [&](std::uint32_t count, std::uint32_t percent) {
    return CNuvGeometry::Points2BestLineMaxOutliers(points.data(), count, percent, &included, &low,
                                                    &high, &low_point, &high_point, &line,
                                                    &outliers);
  };
  ASSERT_EQ(fit(10, 10), 0U);
  const Result plain = FitLine(points, 10);
  EXPECT_EQ(line, plain.line);
  EXPECT_EQ(included, 9U);
  EXPECT_EQ(ToPoints(outliers), plain.outliers);
  double least = kInfinity;
  double most = -kInfinity;
  for (const CNuvPoint& p : plain.used) {
    const double distance = p.y * std::cos(line.a) - p.x * std::sin(line.a) - line.d;
    least = std::min(least, distance);
    most = std::max(most, distance);
  }
  EXPECT_LT(low, 0.0);
  EXPECT_NEAR(low, least, 1e-14);
  EXPECT_NEAR(high, most, 1e-14);
  EXPECT_EQ(ToPoints(outliers), (Points{{5, 50}}));

  ASSERT_NE(fit(0, 0), 0U);
  EXPECT_EQ(included, 0U);
  EXPECT_EQ(low, 0.0);
  EXPECT_EQ(high, 0.0);
  EXPECT_EQ(low_point, CNuvPoint());
  EXPECT_EQ(high_point, CNuvPoint());
  EXPECT_EQ(line, CNuvLine());
  EXPECT_EQ(outliers.Size(), 0U);
}

}  // namespace
