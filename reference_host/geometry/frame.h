// Frame: coordinates about an origin near the points, in a unit near their spread.
//
// Squares and fourth powers of such coordinates neither overflow nor lose the small differences
// of points far from the origin. The unit is a power of two, so that only the subtraction of the
// origin rounds.
#pragma once

#include <cstddef>

#include "host/values.h"

namespace geometry {

/// The smallest upright box around points. It is not finite where a coordinate is not.
struct Box {
  double left, right, top, bottom;

  bool IsFinite() const;
  /// The largest magnitude of a coordinate.
  double Magnitude() const;
};
Box BoundingBox(const CNuvPoint* points, std::size_t count);

class Frame {
 public:
  /// The frame in which an origin is (0, 0) and a distance `spread` is about 1; any spread, 0 and
  /// infinity included, for coordinates up to `magnitude`.
  Frame(double origin_x, double origin_y, double spread, double magnitude);
  /// The frame about the middle of the box.
  static Frame Around(const Box& box);

  /// Of one coordinate, or of two side by side.
  template <class Number>
  Number X(Number x) const {
    return (x * Number(before_) - Number(origin_x_)) * Number(after_);
  }
  template <class Number>
  Number Y(Number y) const {
    return (y * Number(before_) - Number(origin_y_)) * Number(after_);
  }
  /// Both coordinates of a point; one farther away than 1e60 is drawn in to there, so that its
  /// squares remain finite.
  void Map(const CNuvPoint& point, double* x, double* y) const;
  double BackX(double x) const { return (x / after_ + origin_x_) / before_; }
  double BackY(double y) const { return (y / after_ + origin_y_) / before_; }
  double Length(double length) const { return length * before_ * after_; }
  double BackLength(double length) const { return length / after_ / before_; }
  /// A length in the frame that is as small as the rounding of coordinates of that magnitude.
  double Resolution(double magnitude) const;

 private:
  double before_;  ///< 1, or less where differences of coordinates overflow
  double origin_x_;
  double origin_y_;
  double after_;
};

}  // namespace geometry
