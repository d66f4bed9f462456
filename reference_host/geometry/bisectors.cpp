// Bisectors.

#include <cmath>
#include <numeric>
#include <optional>

#include "host/geometry.h"
#include "reference_host/geometry/direction.h"

// Of the two lines at equal distance from both, that in the acute angle: with the normals less than
// a right angle apart, it is where the two signed distances cancel. At a right angle it is the one
// between the two angles in normal form, whatever the order of the lines.
void CNuvGeometry::LineBisect(const CNuvLine& l1, const CNuvLine& l2, CNuvLine* bisector) {
  CNuvLine m1 = l1;
  CNuvLine m2 = l2;
  NormalizeLine(&m1);
  NormalizeLine(&m2);
  const double difference = m2.a - m1.a;
  const double turn = std::remainder(difference, Pi);
  if (turn != difference) m2.d = -m2.d;
  *bisector =
      CNuvLine(m1.a + turn / 2.0, std::midpoint(m1.d, m2.d) / DirectionOf(turn / 2.0).cosine);
  NormalizeLine(bisector);
}

bool CNuvGeometry::AngleBisect(const CNuvPoint& p1, const CNuvPoint& p2, const CNuvPoint& p3,
                               CNuvLine* bisector) {
  const std::optional<Direction> u = DirectionAlong(p1.x - p2.x, p1.y - p2.y);
  const std::optional<Direction> v = DirectionAlong(p3.x - p2.x, p3.y - p2.y);
  *bisector = CNuvLine();
  if (!u || !v) return false;
  // The sum of the two sides points along the bisector; in an obtuse angle, where it is short, the
  // perpendicular of their difference does.
  const bool acute = u->cosine * v->cosine + u->sine * v->sine >= 0.0;
  const std::optional<Direction> along =
      acute ? DirectionAlong(u->cosine + v->cosine, u->sine + v->sine)
            : DirectionAlong(v->sine - u->sine, u->cosine - v->cosine);
  const CNuvLine line = LineThrough(p2, *along);
  if (!std::isfinite(line.a) || !std::isfinite(line.d)) return false;
  *bisector = line;
  return true;
}
