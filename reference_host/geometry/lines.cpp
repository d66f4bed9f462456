// Lines: normal form, construction, distances and intersections.

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

#include "host/geometry.h"
#include "reference_host/geometry/direction.h"

namespace {

/// Folds an angle into (-pi/2, pi/2], and says whether by an odd number of half turns.
bool Fold(double& angle) {
  constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
  if (angle > -CNuvGeometry::PiDiv2 && angle <= CNuvGeometry::PiDiv2) return false;
  int halves = 0;
  const double rest = std::isfinite(angle) ? std::remquo(angle, CNuvGeometry::Pi, &halves) : kNaN;
  const bool lowest = rest == -CNuvGeometry::PiDiv2;
  angle = lowest ? CNuvGeometry::PiDiv2 : rest + 0.0;  // a multiple of pi is 0, never -0
  return (halves % 2 != 0) != lowest;
}

CNuvLine Normalized(CNuvLine line) {
  // A difference from 0, since a line through the origin has no distance -0.
  if (Fold(line.a)) line.d = 0.0 - line.d;
  return line;
}

/// Whether two angles differ, up to half turns, by no more than their own rounding: a few units in
/// the last place, as conversions and differences leave them.
bool Parallel(double angle1, double angle2) {
  const double size = std::max({1.0, std::abs(angle1), std::abs(angle2)});
  const double turn = std::remainder(angle2 - angle1, CNuvGeometry::Pi);
  return std::abs(turn) <= 4.0 * std::numeric_limits<double>::epsilon() * size;
}

/// Where one line crosses another: how far along that one, in its normal form, from the foot of the
/// perpendicular through the origin.
std::optional<double> Crossing(const CNuvLine& line, const CNuvLine& crossed) {
  if (Parallel(line.a, crossed.a)) return std::nullopt;
  const CNuvLine l = Normalized(line);
  const CNuvLine m = Normalized(crossed);
  const Direction turn = DirectionOf(l.a - m.a);
  const double along = (m.d * turn.cosine - l.d) / turn.sine;
  if (!std::isfinite(along)) return std::nullopt;
  return along;
}

}  // namespace

void CNuvGeometry::NormalizeAngleMinusPiBy2ToPiBy2(double* angle) {
  Fold(*angle);
}

void CNuvGeometry::NormalizeLine(CNuvLine* line) {
  *line = Normalized(*line);
}

void CNuvGeometry::PointPointToLine(const CNuvPoint& p1, const CNuvPoint& p2, CNuvLine* line) {
  *line = LineThrough(p1, DirectionAlong(p2.x - p1.x, p2.y - p1.y).value_or(Direction{1.0, 0.0}));
}

void CNuvGeometry::LineParallel(const double& a, const CNuvPoint& p, CNuvLine* line) {
  CNuvLine parallel(a);
  Fold(parallel.a);
  parallel.d = DirectionOf(parallel.a).OffsetOf(p);
  *line = parallel;
}

void CNuvGeometry::LinePerpendicular(const double& a, const CNuvPoint& p, CNuvLine* line) {
  double folded = a;
  Fold(folded);  // first, or a quarter turn is lost in a large angle
  LineParallel(folded + PiDiv2, p, line);
}

void CNuvGeometry::LinePerpendicular(const double& a, const double& x, const double& y, double* a2,
                                     double* d2) {
  CNuvLine perpendicular;
  LinePerpendicular(a, CNuvPoint(x, y), &perpendicular);
  *a2 = perpendicular.a;
  *d2 = perpendicular.d;
}

bool CNuvGeometry::LineIntersection(const CNuvLine& l1, const CNuvLine& l2, CNuvPoint* point) {
  const CNuvLine line = Normalized(l1);
  const std::optional<double> along = Crossing(l2, l1);
  *point = CNuvPoint();
  if (!along) return false;
  const Direction direction = DirectionOf(line.a);
  const CNuvPoint crossing(*along * direction.cosine - line.d * direction.sine,
                           *along * direction.sine + line.d * direction.cosine);
  if (!std::isfinite(crossing.x) || !std::isfinite(crossing.y)) return false;
  *point = crossing;
  return true;
}

bool CNuvGeometry::Line2LineDist(const CNuvLine& l1, const CNuvLine& l2, const CNuvLine& l3,
                                 double* distance) {
  const std::optional<double> from = Crossing(l1, l3);
  const std::optional<double> to = Crossing(l2, l3);
  *distance = 0.0;
  if (!from || !to || !std::isfinite(*to - *from)) return false;
  *distance = std::abs(*to - *from);
  return true;
}

void CNuvGeometry::PointArray2LineDist(const CNuvPoint* points, const std::uint32_t& count,
                                       const CNuvLine& line, double* distances) {
  const Direction direction = DirectionOf(line.a);
  for (std::uint32_t i = 0; i < count; ++i) {
    distances[i] = direction.OffsetOf(points[i]) - line.d;
  }
}
