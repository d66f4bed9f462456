// The line of least squared distances at right angles.
#pragma once

#include <cstddef>

#include "host/values.h"

namespace geometry {

/// A line through a point, by the cosine and sine of its direction: cosine >= 0, and sine 1 where
/// that is 0.
struct Direction {
  double cosine = 1.0;
  double sine = 0.0;
};

/// A line fitted to points: its normal form, and the more exact form that gave it.
struct LineFit {
  CNuvLine line;
  Direction direction;
  double x = 0.0;  ///< the mean of the points, which lies on the line
  double y = 0.0;

  /// Computed about the mean, so without the rounding of a line far from the origin.
  double SignedDistance(const CNuvPoint& point) const;
};

/// Principal axis of the points (Pearson, "On lines and planes of closest fit to systems of points
/// in space", 1901). False for fewer than two points, coincident ones, and where a coordinate or
/// the line's distance from the origin is not finite. Points scattered alike in all directions
/// have the line along the x axis.
bool FitLine(const CNuvPoint* points, std::size_t count, LineFit* fit);

/// The line as trimmed searches see it: -x sine + y cosine = offset, in coordinates of a frame.
struct LineFigure {
  static constexpr std::size_t kPoints = 2;
  Direction direction;
  double offset = 0.0;

  /// The line through the points at two positions; false where they coincide.
  bool Through(const double* x, const double* y, const std::size_t* positions);
  /// The line fitted to the points; false where they coincide.
  bool Fit(const double* x, const double* y, std::size_t count);
  bool FitClosely(const double* x, const double* y, std::size_t count) { return Fit(x, y, count); }
  /// Of one point, or of two points side by side.
  template <class Number>
  Number SquaredDistance(Number x, Number y) const {
    const Number distance =
        y * Number(direction.cosine) - x * Number(direction.sine) - Number(offset);
    return distance * distance;
  }
  /// Of each point.
  void SquaredDistances(const double* x, const double* y, std::size_t count, double* out) const;
};

}  // namespace geometry
