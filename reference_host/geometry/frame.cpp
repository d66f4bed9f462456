#include "reference_host/geometry/frame.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "reference_host/geometry/two.h"

namespace geometry {

bool Box::IsFinite() const {
  return std::isfinite(left) && std::isfinite(right) && std::isfinite(top) && std::isfinite(bottom);
}

double Box::Magnitude() const {
  return std::max({std::fabs(left), std::fabs(right), std::fabs(top), std::fabs(bottom)});
}

Box BoundingBox(const CNuvPoint* points, std::size_t count) {
  // The lanes are x and y of one point. NaNs get lost in comparisons and are kept apart.
  Two low[2] = {Two(points->x, points->y), Two(points->x, points->y)};
  Two high[2] = {low[0], low[0]};
  Two faults;
  const auto add = [&](std::size_t i, std::size_t chain) {
    const Two point(points[i].x, points[i].y);
    low[chain] = Smallest(low[chain], point);
    high[chain] = Largest(high[chain], point);
    faults = Either(faults, IsNan(point));
  };
  std::size_t i = 0;
  for (; i + 1 < count; i += 2) {
    add(i, 0);
    add(i + 1, 1);
  }
  if (i < count) add(i, 0);
  const Two left_top = Either(Smallest(low[0], low[1]), faults);
  const Two right_bottom = Largest(high[0], high[1]);
  return {Low(left_top), Low(right_bottom), High(left_top), High(right_bottom)};
}

Frame::Frame(double origin_x, double origin_y, double spread, double magnitude) {
  before_ = magnitude > 1e300 ? 0.25 : 1.0;
  origin_x_ = origin_x * before_;
  origin_y_ = origin_y * before_;
  int exponent = 0;
  std::frexp(std::min(spread, std::numeric_limits<double>::max()) * before_, &exponent);
  after_ = std::ldexp(1.0, std::clamp(-exponent, -1000, 1000));
}

Frame Frame::Around(const Box& box) {
  const double width = box.right * 0.5 - box.left * 0.5;
  const double height = box.bottom * 0.5 - box.top * 0.5;
  return {box.left + width, box.top + height, std::max(width, height), box.Magnitude()};
}

void Frame::Map(const CNuvPoint& point, double* x, double* y) const {
  constexpr double kFarthest = 1e60;
  const double dx = point.x * before_ - origin_x_;
  const double dy = point.y * before_ - origin_y_;
  const double farther = std::max(std::fabs(dx), std::fabs(dy));
  const bool is_far = farther > kFarthest / after_;
  *x = is_far ? dx / farther * kFarthest : dx * after_;
  *y = is_far ? dy / farther * kFarthest : dy * after_;
}

double Frame::Resolution(double magnitude) const {
  return std::numeric_limits<double>::epsilon() * (1.0 + magnitude * before_ * after_);
}

}  // namespace geometry
