// Points and pairs of points.

#include <cmath>
#include <numeric>

#include "host/geometry.h"
#include "reference_host/geometry/direction.h"

double CNuvGeometry::Points2Angle(const CNuvPoint& p1, const CNuvPoint& p2) {
  return std::atan2(p2.y - p1.y, p2.x - p1.x);
}

void CNuvGeometry::Point2PointDistPitch(const CNuvPoint& p1, const CNuvPoint& p2, CNuvLine* line) {
  *line = CNuvLine(Points2Angle(p1, p2), Point2PointDist(p1, p2));
}

void CNuvGeometry::MiddlePoint(const CNuvPoint& p1, const CNuvPoint& p2, CNuvPoint* middle) {
  *middle = CNuvPoint(std::midpoint(p1.x, p2.x), std::midpoint(p1.y, p2.y));
}

void CNuvGeometry::RotatePointClockwise(const double& angle, const CNuvPoint& center,
                                        CNuvPoint* point) {
  const Direction turn = DirectionOf(angle);
  const double dx = point->x - center.x;
  const double dy = point->y - center.y;
  // y grows downward, so that the turn from x to y is the clockwise one.
  *point = CNuvPoint(center.x + (dx * turn.cosine - dy * turn.sine),
                     center.y + (dx * turn.sine + dy * turn.cosine));
}
