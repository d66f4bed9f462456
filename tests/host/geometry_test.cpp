// The geometry routines, by what must hold of their answers, at three scales.

#include "host/geometry.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

namespace {

using G = CNuvGeometry;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr int kRounds = 3000;

/// Random figures of a size.
struct Figures {
  double scale;
  std::mt19937_64 random{7};

  double Between(double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(random);
  }
  CNuvPoint Point() { return {Between(-scale, scale), Between(-scale, scale)}; }
  /// Now and then at a multiple of an eighth of a turn, seldom in normal form.
  CNuvLine Line() {
    const double eighth = static_cast<double>(random() % 41) - 20.0;
    return CNuvLine(random() % 4 == 0 ? eighth * G::PiDiv4 : Between(-9, 9),
                    Between(-scale, scale));
  }
};

/// Runs a check on figures of three sizes, many times each.
template <class Check>
void ForFigures(Check check) {
  for (const double scale : {1.0, 1e3, 1e6}) {
    SCOPED_TRACE(scale);
    Figures figures{scale};
    for (int i = 0; i < kRounds && !testing::Test::HasFailure(); ++i) check(figures);
  }
}

/// The signed distance of a point from a line, in more digits than the routines have.
double Offset(const CNuvLine& line, const CNuvPoint& p) {
  const long double a = line.a;
  return static_cast<double>(-p.x * std::sin(a) + p.y * std::cos(a) - line.d);
}

/// A point of the line, at a distance from the one next to the origin.
CNuvPoint On(const CNuvLine& line, double along) {
  const double s = std::sin(line.a);
  const double c = std::cos(line.a);
  return {-line.d * s + along * c, line.d * c + along * s};
}

void ExpectOn(const CNuvLine& line, const CNuvPoint& p, double tolerance = 4e-15) {
  EXPECT_NEAR(Offset(line, p), 0.0, tolerance * (std::abs(p.x) + std::abs(p.y) + std::abs(line.d)))
      << "a " << line.a << " d " << line.d << ", (" << p.x << ", " << p.y << ")";
}

void ExpectNormal(const CNuvLine& line) {
  EXPECT_TRUE(line.a > -G::PiDiv2 && line.a <= G::PiDiv2) << line.a;
}

TEST(Geometry, AnglesFold) {
  const auto folded = [](double angle) {
    G::NormalizeAngleMinusPiBy2ToPiBy2(&angle);
    return angle;
  };
  const double above = std::nextafter(G::PiDiv2, 2.0);
  const double rows[][2] = {{-0.0, -0.0},           {G::PiDiv2, G::PiDiv2}, {-G::PiDiv2, G::PiDiv2},
                            {above, above - G::Pi}, {-G::Pi, 0.0},          {1024.0 * G::Pi, 0.0}};
  for (const auto& [angle, wanted] : rows) {
    EXPECT_EQ(folded(angle), wanted) << angle;
    EXPECT_EQ(std::signbit(folded(angle)), std::signbit(wanted)) << angle;
  }
  for (const double angle : {kNaN, kInfinity, -kInfinity}) EXPECT_TRUE(std::isnan(folded(angle)));
  Figures figures{1.0};
  for (int i = 0; i < kRounds; ++i) {
    const double angle =
        std::ldexp(figures.Between(-2, 2), static_cast<int>(figures.random() % 1023));
    const double once = folded(angle);
    ExpectNormal(CNuvLine(once));
    EXPECT_EQ(folded(once), once);
    EXPECT_TRUE(once == std::remainder(angle, G::Pi) || once == G::PiDiv2) << angle;
  }
}

TEST(Geometry, NormalFormIsTheSameLine) {
  ForFigures([](Figures& figures) {
    const CNuvLine line = figures.Line();
    CNuvLine normal = line;
    G::NormalizeLine(&normal);
    ExpectNormal(normal);
    EXPECT_EQ(std::abs(normal.d), std::abs(line.d));
    for (const double along : {-figures.scale, figures.scale}) ExpectOn(normal, On(line, along));
  });
}

TEST(Geometry, LinesThroughPoints) {
  ForFigures([](Figures& figures) {
    const CNuvPoint p = figures.Point();
    CNuvPoint q = figures.Point();
    if (figures.random() % 4 == 0) q.x = p.x;
    if (figures.random() % 4 == 0) q.y = p.y;
    CNuvLine line;
    G::PointPointToLine(p, q, &line);
    ExpectNormal(line);
    ExpectOn(line, p);
    ExpectOn(line, q);
    CNuvLine back;
    G::PointPointToLine(q, p, &back);
    EXPECT_EQ(back.a, line.a);

    const CNuvLine given = figures.Line();
    CNuvLine parallel;
    CNuvLine perpendicular;
    G::LineParallel(given.a, p, &parallel);
    G::LinePerpendicular(given.a, p, &perpendicular);
    for (const CNuvLine& l : {parallel, perpendicular}) {
      ExpectNormal(l);
      ExpectOn(l, p);
    }
    EXPECT_NEAR(std::remainder(parallel.a - given.a, G::Pi), 0.0, 4e-15);
    EXPECT_NEAR(std::abs(std::remainder(perpendicular.a - given.a, G::Pi)), G::PiDiv2, 4e-15);
    CNuvLine second;
    G::LinePerpendicular(given.a, p.x, p.y, &second.a, &second.d);
    EXPECT_EQ(second, perpendicular);

    double distances[2];
    const CNuvPoint pair[] = {p, q};
    G::PointArray2LineDist(pair, 2, given, distances);
    for (int i = 0; i < 2; ++i) {
      EXPECT_NEAR(distances[i], Offset(given, pair[i]), 4e-15 * figures.scale);
    }
  });
}

TEST(Geometry, IntersectionsLieOnBothLines) {
  ForFigures([](Figures& figures) {
    const CNuvLine l = figures.Line();
    CNuvLine m = figures.Line();
    if (figures.random() % 2 == 0) m.a = l.a + std::exp(figures.Between(-25.0, 0.0));
    CNuvPoint p;
    if (!G::LineIntersection(l, m, &p)) {
      EXPECT_NEAR(std::remainder(l.a - m.a, G::Pi), 0.0, 1e-14);
      return;
    }
    ExpectOn(l, p);
    ExpectOn(m, p);

    const CNuvLine n = figures.Line();
    CNuvPoint q;
    double distance = -1.0;
    const bool meet = G::LineIntersection(n, m, &q) && G::LineIntersection(l, n, &p);
    ASSERT_EQ(G::Line2LineDist(l, m, n, &distance), meet);
    if (!meet) return;
    EXPECT_NEAR(
        distance, G::Point2PointDist(p, q),
        1e-14 * (figures.scale + std::abs(p.x) + std::abs(p.y) + std::abs(q.x) + std::abs(q.y)));
  });
}

TEST(Geometry, ParallelLinesDoNotMeet) {
  const double degree = G::Pi / 180.0;
  const CNuvLine pairs[][2] = {
      {CNuvLine(0.5, 1), CNuvLine(0.5, 2)},
      {CNuvLine(0.5, 1), CNuvLine(0.5, 1)},
      {CNuvLine(-G::PiDiv2, 1), CNuvLine(G::PiDiv2, 2)},
      {CNuvLine(30 * degree, 1), CNuvLine(210 * degree, 2)},
      {CNuvLine(30 * degree, 1), CNuvLine(3600030 * degree, 2)},
      {CNuvLine(1, 1), CNuvLine(std::nextafter(1.0, 2.0), 2)},
      {CNuvLine(0, 1), CNuvLine(1e300, 2)},  // an angle that says nothing
      {CNuvLine(0, 1), CNuvLine(kNaN, 2)},
      {CNuvLine(0, 1), CNuvLine(kInfinity, 2)},
      {CNuvLine(0, 1), CNuvLine(1, kInfinity)},
      {CNuvLine(0, 1e308), CNuvLine(1e-3, -1e308)},
  };
  for (const auto& pair : pairs) {
    for (const bool swapped : {false, true}) {
      CNuvPoint p(7, 7);
      EXPECT_FALSE(G::LineIntersection(pair[swapped], pair[!swapped], &p)) << pair[1].a;
      EXPECT_EQ(p, CNuvPoint());
      double distance = 7.0;
      EXPECT_FALSE(G::Line2LineDist(CNuvLine(2, 3), pair[swapped], pair[!swapped], &distance));
      EXPECT_EQ(distance, 0.0);
    }
  }
}

TEST(Geometry, BisectorsOfLinesAreEquidistant) {
  ForFigures([](Figures& figures) {
    const CNuvLine l = figures.Line();
    CNuvLine m = figures.Line();
    if (figures.random() % 4 == 0) m.a = l.a + static_cast<double>(figures.random() % 4) * G::Pi;
    CNuvLine bisector;
    CNuvLine other;
    G::LineBisect(l, m, &bisector);
    G::LineBisect(m, l, &other);
    ExpectNormal(bisector);
    for (const double along : {-figures.scale, 0.0, 2 * figures.scale}) {
      const CNuvPoint p = On(bisector, along);
      EXPECT_NEAR(std::abs(Offset(l, p)), std::abs(Offset(m, p)), 4e-14 * figures.scale);
      ExpectOn(other, p, 1e-14);
    }
    const double half = std::abs(std::remainder(bisector.a - l.a, G::Pi));
    EXPECT_LE(half, G::PiDiv4 + 1e-14);  // the acute angle's
  });
}

TEST(Geometry, BisectorsOfAnglesAreEquidistant) {
  ForFigures([](Figures& figures) {
    const CNuvPoint p1 = figures.Point();
    const CNuvPoint p2 = figures.Point();
    const CNuvPoint p3 = figures.Point();
    CNuvLine bisector;
    ASSERT_TRUE(G::AngleBisect(p1, p2, p3, &bisector));
    ExpectNormal(bisector);
    ExpectOn(bisector, p2);
    // Both sides lean away from the bisector by the same angle, to opposite sides.
    const double size = figures.scale;
    const double length1 = G::Point2PointDist(p1, p2);
    const double length3 = G::Point2PointDist(p3, p2);
    EXPECT_NEAR(Offset(bisector, p1) / length1, -Offset(bisector, p3) / length3,
                1e-14 * (1.0 + size / length1 + size / length3));
    const CNuvLine across(bisector.a + G::PiDiv2);
    const auto along = [&](const CNuvPoint& p) { return Offset(across, p) - Offset(across, p2); };
    EXPECT_TRUE(along(p1) * along(p3) > -1e-12 * size * size) << "the bisector of the angle beside";
  });
  CNuvLine line;
  EXPECT_TRUE(G::AngleBisect({1e300, 5}, {3, 5}, {9, 5}, &line));  // none at all
  EXPECT_EQ(line, CNuvLine(0, 5));
  const CNuvPoint failures[][3] = {{{1, 1}, {1, 1}, {2, 2}},
                                   {{2, 2}, {1, 1}, {1, 1}},
                                   {{kNaN, 0}, {1, 1}, {2, 2}},
                                   {{0, 0}, {1, kInfinity}, {2, 2}}};
  for (const auto& f : failures) {
    line = CNuvLine(1, 1);
    EXPECT_FALSE(G::AngleBisect(f[0], f[1], f[2], &line));
    EXPECT_EQ(line, CNuvLine());
  }
}

TEST(Geometry, RotationTurnsClockwiseAndBack) {
  ForFigures([](Figures& figures) {
    const CNuvPoint start = figures.Point();
    const CNuvPoint center = figures.Point();
    const double angle = figures.Line().a;
    CNuvPoint turned = start;
    G::RotatePointClockwise(angle, center, &turned);
    const double tolerance = 8e-15 * figures.scale;
    const double turn = G::Points2Angle(center, turned) - G::Points2Angle(center, start);
    const double distance = G::Point2PointDist(center, start);
    EXPECT_NEAR(std::remainder(turn - angle, 2.0 * G::Pi) * distance, 0.0, tolerance);
    EXPECT_NEAR(G::Point2PointDist(center, turned), distance, tolerance);
    G::RotatePointClockwise(-angle, center, &turned);
    EXPECT_NEAR(turned.x, start.x, tolerance);
    EXPECT_NEAR(turned.y, start.y, tolerance);
  });
}

TEST(Geometry, DistanceIsTheRootOfTheSquares) {
  std::mt19937_64 random(3);
  std::uniform_real_distribution<double> coordinate(-1000.0, 1000.0);
  std::uniform_int_distribution<int> exponent(-1060, 1000);
  // A whole triangle is exact, at either end of the numbers, too.
  for (const double unit : {std::ldexp(1.0, -1070), std::ldexp(1.0, 1018)}) {
    EXPECT_EQ(G::Point2PointDist({0, 0}, {3 * unit, -4 * unit}), 5 * unit);
    EXPECT_EQ(G::Point2PointDist({unit, unit}, {unit, unit}), 0.0);
  }
  for (int round = 0; round < 20000; ++round) {
    const int scale = exponent(random);
    const CNuvPoint p(std::ldexp(coordinate(random), scale), std::ldexp(coordinate(random), scale));
    const CNuvPoint q(std::ldexp(coordinate(random), scale), std::ldexp(coordinate(random), scale));
    const long double dx = static_cast<long double>(q.x) - static_cast<long double>(p.x);
    const long double dy = static_cast<long double>(q.y) - static_cast<long double>(p.y);
    const auto wanted = static_cast<double>(std::sqrt(dx * dx + dy * dy));
    const double distance = G::Point2PointDist(p, q);
    EXPECT_NEAR(distance, wanted, 4e-16 * wanted + 5e-324) << scale;
    EXPECT_EQ(distance, G::Point2PointDist(q, p));
  }
  EXPECT_EQ(G::Point2PointDist({kInfinity, 0}, {0, 1}), kInfinity);
  EXPECT_EQ(G::Point2PointDist({-1.5e308, 0}, {1.5e308, 0}), kInfinity);
  EXPECT_TRUE(std::isnan(G::Point2PointDist({kInfinity, 0}, {kInfinity, 1})));
  EXPECT_TRUE(std::isnan(G::Point2PointDist({kNaN, 0}, {1e300, 1e300})));
  EXPECT_TRUE(std::isnan(G::Point2PointDist({kNaN, 0}, {kInfinity, 0})));
}

TEST(Geometry, InscribedCirclesTouchAllSides) {
  ForFigures([](Figures& figures) {
    CNuvPoint corners[] = {figures.Point(), figures.Point(), figures.Point()};
    // Some needles, and some so large or small that squares would not fit.
    const bool needle = figures.random() % 4 == 0;
    if (needle) {
      corners[2] = {corners[1].x + 1e-9 * corners[2].x, corners[1].y + 1e-9 * corners[2].y};
    }
    constexpr double kSizes[] = {1.0, 1.0, 1e200, 1e-200};
    const double size = kSizes[figures.random() % 4];
    for (CNuvPoint& corner : corners) corner = {corner.x * size, corner.y * size};
    double diameter = 0.0;
    CNuvPoint center;
    ASSERT_TRUE(G::CircleInTriangle(corners[0], corners[1], corners[2], &diameter, &center));
    diameter /= size;
    ASSERT_GT(diameter, 0.0);
    double perimeter = 0.0;
    double doubled_area = 0.0;
    for (int i = 0; i < 3; ++i) {
      // By the cross product from the side's start, relative to the size of the triangle.
      const CNuvPoint& from = corners[i];
      const double x = (corners[(i + 1) % 3].x - from.x) / size;
      const double y = (corners[(i + 1) % 3].y - from.y) / size;
      const auto product = [&](const CNuvPoint& p) {
        return static_cast<double>(x * static_cast<long double>((p.y - from.y) / size) -
                                   y * static_cast<long double>((p.x - from.x) / size));
      };
      const double length = std::hypot(x, y);
      perimeter += length;
      doubled_area = product(corners[(i + 2) % 3]);  // the last side, which has all its digits
      EXPECT_NEAR(std::abs(product(center)) / length, diameter / 2.0, 4e-15 * figures.scale);
      if (diameter > 1e-12 * figures.scale) {
        EXPECT_EQ(product(center) > 0.0, doubled_area > 0.0) << "outside";
      }
    }
    const double exact = 2.0 * std::abs(doubled_area) / perimeter;
    EXPECT_NEAR(diameter, exact, needle ? 1e-11 * exact : 1e-11 * figures.scale);
  });
  const CNuvPoint failures[][3] = {
      {{0, 0}, {1, 1}, {3, 3}},    {{0.1, 0.3}, {0.2, 0.6}, {0.7, 2.1}},
      {{2, 2}, {2, 2}, {5, 1}},    {{2, 2}, {2, 2}, {2, 2}},
      {{kNaN, 2}, {2, 3}, {5, 1}}, {{1, 2}, {2, kInfinity}, {5, 1}}};
  for (const auto& f : failures) {
    for (int i = 0; i < 3; ++i) {
      double diameter = 7.0;
      CNuvPoint center(7, 7);
      EXPECT_FALSE(G::CircleInTriangle(f[i], f[(i + 1) % 3], f[(i + 2) % 3], &diameter, &center));
      EXPECT_EQ(diameter, 0.0);
      EXPECT_EQ(center, CNuvPoint());
    }
  }
}

TEST(Geometry, CirclesAndLinesMeetOnBoth) {
  ForFigures([](Figures& figures) {
    const CNuvPoint center = figures.Point();
    const double radius = figures.Between(0.0, figures.scale);
    CNuvLine line = figures.Line();
    const double touching = figures.random() % 2 == 0 ? radius : -radius;
    const bool tangent = figures.random() % 4 == 0;
    if (tangent) line.d = Offset(CNuvLine(line.a), center) + touching;
    CNuvPoint points[2];
    int count = -1;
    G::CircleLineIntersection(center, radius, line, points, &count);
    const double distance = std::abs(Offset(line, center));
    const double tolerance = 1e-14 * figures.scale;
    if (tangent) {
      ASSERT_EQ(count, 1);
    } else if (std::abs(distance - radius) > tolerance) {
      ASSERT_EQ(count, distance < radius ? 2 : 0);
    }
    for (int i = 0; i < count; ++i) {
      EXPECT_NEAR(Offset(line, points[i]), 0.0, tolerance);
      EXPECT_NEAR(G::Point2PointDist(points[i], center), radius, tolerance);
    }
    if (count == 2) {  // the first lies behind the second along the line in normal form
      G::NormalizeLine(&line);
      EXPECT_GE((points[1].x - points[0].x) * std::cos(line.a) +
                    (points[1].y - points[0].y) * std::sin(line.a),
                0.0);
    }
  });
  const struct {
    CNuvPoint center;
    double radius;
    CNuvLine line;
    int count;
  } rows[] = {
      {{0, 4}, 0, CNuvLine(0, 3), 0},         {{0, 0}, 1e200, CNuvLine(0, 3), 2},
      {{0, 0}, kInfinity, CNuvLine(0, 3), 0}, {{0, 0}, kNaN, CNuvLine(0, 3), 0},
      {{0, kNaN}, 5, CNuvLine(0, 3), 0},      {{0, 0}, 5, CNuvLine(kInfinity, 3), 0},
      {{0, 0}, 5, CNuvLine(0, kInfinity), 0},
  };
  for (const auto& row : rows) {
    CNuvPoint points[2];
    int count = -1;
    G::CircleLineIntersection(row.center, row.radius, row.line, points, &count);
    EXPECT_EQ(count, row.count) << row.radius << " " << row.line.d;
    for (int i = 0; i < count; ++i) {
      EXPECT_DOUBLE_EQ(std::hypot(points[i].x - row.center.x, points[i].y - row.center.y),
                       row.radius);
    }
  }
}

}  // namespace
