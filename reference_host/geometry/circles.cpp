// Circles.

#include <algorithm>
#include <cmath>
#include <limits>

#include "host/geometry.h"
#include "reference_host/geometry/direction.h"

namespace {

/// How much a sum of products of numbers of this size may be off.
double RoundingOf(double size) {
  return 4.0 * std::numeric_limits<double>::epsilon() * size;
}

struct Vector {
  double x;
  double y;
  double Length() const { return std::sqrt(x * x + y * y); }
};

}  // namespace

bool CNuvGeometry::CircleInTriangle(const CNuvPoint& p1, const CNuvPoint& p2, const CNuvPoint& p3,
                                    double* diameter, CNuvPoint* center) {
  const CNuvPoint corners[] = {p1, p2, p3};
  *diameter = 0.0;
  *center = CNuvPoint();

  Vector sides[3];  // the side i lies opposite the corner i
  double size = 0.0;
  for (int i = 0; i < 3; ++i) {
    const CNuvPoint& from = corners[(i + 1) % 3];
    const CNuvPoint& to = corners[(i + 2) % 3];
    sides[i] = {to.x - from.x, to.y - from.y};
    size = std::max({size, std::abs(sides[i].x), std::abs(sides[i].y)});
  }
  const double scale = PowerOfTwoIn(size);
  double lengths[3];
  for (int i = 0; i < 3; ++i) {
    sides[i] = {sides[i].x / scale, sides[i].y / scale};
    lengths[i] = sides[i].Length();
  }

  // From the corner between the two shorter sides both area and centre come out most exactly.
  const auto apex = static_cast<int>(std::max_element(lengths, lengths + 3) - lengths);
  const int second = (apex + 1) % 3;
  const int third = (apex + 2) % 3;
  const Vector to_second = sides[third];
  const Vector to_third = {-sides[second].x, -sides[second].y};
  const double down = to_second.x * to_third.y;
  const double up = to_second.y * to_third.x;
  const double doubled_area = std::abs(down - up);
  // Corners on a line, as far as rounding lets one see; and whatever is not finite.
  if (!(doubled_area > RoundingOf(std::abs(down) + std::abs(up)))) return false;

  const double perimeter = lengths[0] + lengths[1] + lengths[2];
  const double second_weight = lengths[second] / perimeter * scale;
  const double third_weight = lengths[third] / perimeter * scale;
  const double width = 2.0 * doubled_area / perimeter * scale;
  const CNuvPoint middle(
      corners[apex].x + (to_second.x * second_weight + to_third.x * third_weight),
      corners[apex].y + (to_second.y * second_weight + to_third.y * third_weight));
  if (!std::isfinite(width) || !std::isfinite(middle.x) || !std::isfinite(middle.y)) return false;
  *diameter = width;
  *center = middle;
  return true;
}

void CNuvGeometry::CircleLineIntersection(const CNuvPoint& center, const double& radius,
                                          const CNuvLine& line, CNuvPoint* points, int* count) {
  CNuvLine normal = line;
  NormalizeLine(&normal);
  const Direction along = DirectionOf(normal.a);
  const double offset = along.OffsetOf(center) - normal.d;
  const CNuvPoint foot(center.x + offset * along.sine, center.y - offset * along.cosine);
  const double height = std::abs(offset);
  *count = 0;
  if (!std::isfinite(radius) || !std::isfinite(offset)) return;

  // A line whose distance cannot be told from the radius is a tangent.
  const double size = std::abs(center.x) + std::abs(center.y) + std::abs(normal.d);
  if (std::abs(height - radius) <= RoundingOf(size)) {
    points[0] = foot;
    *count = 1;
  } else if (height < radius) {
    const double scale = PowerOfTwoIn(radius);
    const double half_chord =
        std::sqrt((radius - height) / scale * ((radius + height) / scale)) * scale;
    const double dx = half_chord * along.cosine;
    const double dy = half_chord * along.sine;
    points[0] = CNuvPoint(foot.x - dx, foot.y - dy);
    points[1] = CNuvPoint(foot.x + dx, foot.y + dy);
    *count = 2;
  }
}
