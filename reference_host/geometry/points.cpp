#include <cmath>
#include <limits>

#include "host/geometry.h"

namespace {

double Root(double dx, double dy) {
  return std::sqrt(dx * dx + dy * dy);
}

}  // namespace

double CNuvGeometry::Point2PointDist(const CNuvPoint& p1, const CNuvPoint& p2) {
  const double dx = p2.x - p1.x;
  const double dy = p2.y - p1.y;
  const double sum = dx * dx + dy * dy;
  // The squares of what is very close or very far apart lie outside the range of numbers. Scaling
  // by a power of two is exact; the hypot functions of C libraries differ in their last bit.
  if (sum < std::numeric_limits<double>::min()) return Root(dx * 0x1p600, dy * 0x1p600) * 0x1p-600;
  if (sum > std::numeric_limits<double>::max()) return Root(dx * 0x1p-600, dy * 0x1p-600) * 0x1p600;
  return std::sqrt(sum);
}
