#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <functional>
#include <limits>
#include <numbers>
#include <random>
#include <vector>

#include "host/geometry.h"
#include "reference_host/geometry/enumerate.h"
#include "tests/instr/random_rounds.h"

namespace {

using Points = std::vector<CNuvPoint>;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

Points ToPoints(const CNuvPointVector& vector) {
  return {vector.GetStorage(), vector.GetStorage() + vector.Size()};
}

/// Results that begin as rubbish, so that one not written shows.
struct Result {
  std::uint32_t status = 77;
  std::uint32_t included = 77;
  CNuvLine line{7.0, 7.0};
  CNuvPoint center{7.0, 7.0};
  double diameter = 7.0;
  double error = 7.0;
  Points outliers;
  Points used;

  friend bool operator==(const Result& a, const Result& b) {
    const auto same = [](double x, double y) { return std::memcmp(&x, &y, sizeof x) == 0; };
    return a.status == b.status && a.included == b.included && same(a.line.a, b.line.a) &&
           same(a.line.d, b.line.d) && same(a.center.x, b.center.x) &&
           same(a.center.y, b.center.y) && same(a.diameter, b.diameter) && same(a.error, b.error) &&
           a.outliers == b.outliers && a.used == b.used;
  }
};

using Fitting = Result (*)(const Points&, std::uint32_t percent);

Result FitLine(const Points& points, std::uint32_t percent) {
  Result result;
  CNuvPointVector outliers;
  CNuvPointVector used;
  outliers.Resize(3);
  used.Resize(3);
  result.status =
      CNuvGeometry::Points2BestLine(points.data(), static_cast<std::uint32_t>(points.size()),
                                    percent, &result.included, &result.line, &outliers, &used);
  result.outliers = ToPoints(outliers);
  result.used = ToPoints(used);
  return result;
}

Result FitCircle(const Points& points, std::uint32_t percent) {
  Result result;
  CNuvPointVector outliers;
  CNuvPointVector used;
  outliers.Resize(3);
  used.Resize(3);
  result.status = CNuvGeometry::Points2BestCircle(
      points.data(), static_cast<std::uint32_t>(points.size()), percent, &result.diameter,
      &result.included, &result.error, &result.center, &outliers, &used);
  result.outliers = ToPoints(outliers);
  result.used = ToPoints(used);
  return result;
}

class Random {
 public:
  explicit Random(std::uint64_t seed) : engine_(seed) {}
  double Between(double low, double high) {
    return low + (high - low) * static_cast<double>(engine_() >> 11) * 0x1p-53;
  }
  double Normal() { return normal_(engine_); }
  int Below(int end) { return static_cast<int>(engine_() % static_cast<unsigned>(end)); }

 private:
  std::mt19937_64 engine_;
  std::normal_distribution<double> normal_;
};

/// Points near a line or a circle of size 100, with a share of outliers.
Points Scene(Random& random, bool circle, int count, double outlier_share, double noise) {
  const double angle = random.Between(0.0, 3.2);
  const double x = random.Between(-100.0, 100.0);
  const double y = random.Between(-100.0, 100.0);
  Points points;
  for (int i = 0; i < count; ++i) {
    if (random.Between(0.0, 1.0) < outlier_share) {
      points.emplace_back(x + random.Between(-80.0, 80.0), y + random.Between(-80.0, 80.0));
    } else if (circle) {
      const double t = random.Between(0.0, 2.0 * std::numbers::pi);
      const double r = 50.0 + noise * random.Normal();
      points.emplace_back(x + r * std::cos(t), y + r * std::sin(t));
    } else {
      const double t = random.Between(-50.0, 50.0);
      const double r = noise * random.Normal();
      points.emplace_back(x + t * std::cos(angle) - r * std::sin(angle),
                          y + t * std::sin(angle) + r * std::cos(angle));
    }
  }
  return points;
}

/// Sum of squared distances from the best line.
long double LineSquares(const Points& points) {
  long double x = 0, y = 0, xx = 0, xy = 0, yy = 0, squares = 0;
  const auto n = static_cast<long double>(points.size());
  for (const CNuvPoint& p : points) {
    x += p.x / n;
    y += p.y / n;
  }
  for (const CNuvPoint& p : points) {
    xx += (p.x - x) * (p.x - x);
    xy += (p.x - x) * (p.y - y);
    yy += (p.y - y) * (p.y - y);
  }
  if (std::all_of(points.begin(), points.end(), [&](auto& p) { return p == points[0]; })) {
    return kInfinity;
  }
  const long double a = std::atan2(2 * xy, xx - yy) / 2;
  for (const CNuvPoint& p : points) {
    const long double distance = (p.y - y) * std::cos(a) - (p.x - x) * std::sin(a);
    squares += distance * distance;
  }
  return squares;
}

long double CircleSquares(const Points& points, double x, double y) {
  long double mean = 0, squares = 0;
  const auto distance = [=](const CNuvPoint& p) {
    return std::hypot(static_cast<long double>(p.x) - x, static_cast<long double>(p.y) - y);
  };
  for (const CNuvPoint& p : points) mean += distance(p) / static_cast<long double>(points.size());
  for (const CNuvPoint& p : points) squares += (distance(p) - mean) * (distance(p) - mean);
  return squares;
}

long double CircleSquares(const Points& points) {
  const Result fit = FitCircle(points, 0);
  return fit.status == 0 ? CircleSquares(points, fit.center.x, fit.center.y) : kInfinity;
}

long double LeastOfAllSubsets(const Points& points, std::size_t kept,
                              const std::function<long double(const Points&)>& squares) {
  std::vector<bool> take(points.size());
  std::fill_n(take.begin(), kept, true);
  long double least = kInfinity;
  do {
    Points subset;
    for (std::size_t i = 0; i < points.size(); ++i) {
      if (take[i]) subset.push_back(points[i]);
    }
    least = std::min(least, squares(subset));
  } while (std::prev_permutation(take.begin(), take.end()));
  return least;
}

/// Used and left out together are the input, each in its order.
void ExpectDivided(const Points& points, const Result& result, std::uint32_t percent) {
  const std::size_t out = points.size() * percent / 100;
  ASSERT_EQ(result.outliers.size(), out);
  ASSERT_EQ(result.used.size(), points.size() - out);
  EXPECT_EQ(result.included, result.used.size());
  // How many of the first points may be among those used: several, where points coincide.
  std::vector<bool> possible(result.used.size() + 1);
  possible[0] = true;
  for (std::size_t i = 0; i < points.size(); ++i) {
    std::vector<bool> next(possible.size());
    for (std::size_t used = 0; used < possible.size(); ++used) {
      if (!possible[used] || used > i) continue;
      const std::size_t left = i - used;
      if (used < result.used.size() && result.used[used] == points[i]) next[used + 1] = true;
      if (left < out && result.outliers[left] == points[i]) next[used] = true;
    }
    possible = next;
  }
  EXPECT_TRUE(possible.back()) << "not the input in its order";
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
    Points points = Scene(random, false, count, 0.3, 1.0);
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
    ExpectDivided(points, fit, percent);
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
    const Points points = Scene(random, false, static_cast<int>(count), 0.4, 1.0);
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
    const Points points = Scene(random, true, 5 + random.Below(5), 0.3, 3.0);
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
    ExpectDivided(points, fit, percent);
    EXPECT_LE(CircleSquares(fit.used, fit.center.x, fit.center.y), least * (1 + 1e-7) + 1e-25);
  }
}

TEST(Fit, NothingNearbyIsBetter) {
  Random random(4);
  for (int round = RandomRounds(200); round > 0; --round) {
    const int count = 3 + random.Below(60);
    const double noise = std::pow(10.0, random.Between(-6.0, 1.0));
    const Result line = FitLine(Scene(random, false, count, 0.1, noise), 0);
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

    const Points points = Scene(random, true, count, 0.1, noise);
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

TEST(Fit, TrimmedFitIsTheFitOfThePointsUsedWhichAreTheNearest) {
  Random random(5);
  for (const int count : {49, 60, 100, 513, 3000}) {
    for (const bool circle : {false, true}) {
      const Fitting fit = circle ? FitCircle : FitLine;
      const Points points = Scene(random, circle, count, 0.3, 0.5);
      const Result result = fit(points, 30);
      ASSERT_EQ(result.status, 0U);
      ExpectDivided(points, result, 30);
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

TEST(Fit, GrossOutliersDoNotMatter) {
  Random random(6);
  for (const double far : {1e3, 1e9, 1e100, 1e200, 1.7e308}) {
    for (const int count : {20, 200}) {
      for (const bool circle : {false, true}) {
        const Fitting fit = circle ? FitCircle : FitLine;
        const Points clean = Scene(random, circle, count, 0.0, 0.1);
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
TEST(Fit, FollowsItsPoints) {
  Random random(7);
  const struct {
    double scale, x, y;
  } moves[] = {{1.0, 1e6, -1e6},  {0x1p-20, 1e6, 1e6}, {0x1p600, 0, 0},        {0x1p-600, 0, 0},
               {0x1p-1030, 0, 0}, {0x1p1016, 0, 0},    {0x1p-640, 0x1p-600, 0}};
  for (const int count : {12, 80}) {
    for (const auto& move : moves) {
      Points points = Scene(random, false, count, 0.2, 0.5);
      Points circle_points = Scene(random, true, count, 0.2, 0.5);
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

TEST(Fit, ShortArcs) {
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

TEST(Fit, WhatHasNoAnswerFailsWithDefinedOutputs) {
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

TEST(Fit, ExtremesAreOfThePointsUsed) {
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
