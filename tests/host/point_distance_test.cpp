// The distance of two points, near the limits of numbers too.

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "host/geometry.h"

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

TEST(PointDistance, KnownDistancesAtEveryScale) {
  // Small whole triangles, scaled by powers of two: the distance is exact.
  for (int exponent = -1070; exponent <= 1018; ++exponent) {
    const double unit = std::ldexp(1.0, exponent);
    EXPECT_EQ(CNuvGeometry::Point2PointDist({0, 0}, {3 * unit, -4 * unit}), 5 * unit) << exponent;
    EXPECT_EQ(CNuvGeometry::Point2PointDist({unit, 12 * unit}, {6 * unit, 0}), 13 * unit)
        << exponent;
    EXPECT_EQ(CNuvGeometry::Point2PointDist({unit, unit}, {unit, unit}), 0.0);
  }
}

TEST(PointDistance, IsTheRootOfTheSquares) {
  std::mt19937_64 random(3);
  std::uniform_real_distribution<double> coordinate(-1000.0, 1000.0);
  std::uniform_int_distribution<int> exponent(-1060, 1000);
  for (int round = 0; round < 20000; ++round) {
    const int scale = exponent(random);
    const CNuvPoint p(std::ldexp(coordinate(random), scale), std::ldexp(coordinate(random), scale));
    const CNuvPoint q(std::ldexp(coordinate(random), scale), std::ldexp(coordinate(random), scale));
    const long double dx = static_cast<long double>(q.x) - static_cast<long double>(p.x);
    const long double dy = static_cast<long double>(q.y) - static_cast<long double>(p.y);
    const auto wanted = static_cast<double>(std::sqrt(dx * dx + dy * dy));
    const double distance = CNuvGeometry::Point2PointDist(p, q);
    EXPECT_NEAR(distance, wanted, 4e-16 * wanted + 5e-324) << scale;
    EXPECT_EQ(distance, CNuvGeometry::Point2PointDist(q, p));
  }
}

TEST(PointDistance, OfWhatIsNotFinite) {
  EXPECT_EQ(CNuvGeometry::Point2PointDist({kInfinity, 0}, {0, 1}), kInfinity);
  EXPECT_EQ(CNuvGeometry::Point2PointDist({-1.5e308, 0}, {1.5e308, 0}), kInfinity);
  EXPECT_TRUE(std::isnan(CNuvGeometry::Point2PointDist({kInfinity, 0}, {kInfinity, 1})));
  EXPECT_TRUE(std::isnan(CNuvGeometry::Point2PointDist({kNaN, 0}, {1e300, 1e300})));
  EXPECT_TRUE(std::isnan(CNuvGeometry::Point2PointDist({kNaN, 0}, {kInfinity, 0})));
}

}  // namespace
