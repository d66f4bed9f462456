// Directions: the cosine and sine that the geometry routines compute with.
//
// A half turn is CNuvGeometry::Pi, the double, exactly. So multiples of it fold away without error,
// PiDiv2 is a right angle to the last bit, and an angle of any size stands for the same line before
// and after folding; from the true sine this is less than half a unit in the angle's last place
// away. The C libraries' functions differ in the last bit between platforms and processors, which
// is the whole answer where terms cancel; here every machine has the same bits.
#pragma once

#include <optional>

#include "host/values.h"

/// A vector of length 1.
struct Direction {
  double cosine;
  double sine;

  /// Signed distance of a point from the line through the origin along this direction.
  double OffsetOf(const CNuvPoint& p) const { return p.y * cosine - p.x * sine; }
};

/// The direction of an angle in radians; of one that is not finite, NaN.
Direction DirectionOf(double angle) noexcept;

/// The power of two next below a size. To divide by it costs no digit, and leaves numbers of that
/// size whose squares neither overflow nor vanish. Of 0 it is 0, of infinity infinity.
double PowerOfTwoIn(double size) noexcept;

/// The direction of a vector of any length; none for the vector (0, 0).
std::optional<Direction> DirectionAlong(double dx, double dy) noexcept;

/// The line through a point along a direction, in normal form.
CNuvLine LineThrough(const CNuvPoint& p, Direction along);
