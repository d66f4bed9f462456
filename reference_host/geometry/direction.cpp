#include "reference_host/geometry/direction.h"

#include <algorithm>
#include <cmath>

#include "host/geometry.h"

namespace {

// The power series of (r - sin r) / r^3 and (1 - cos r) / r^2 in r^2, as far as they count for
// angles up to an eighth of a turn.
constexpr double kSineSeries[] = {
    1.0 / 6,        -1.0 / 120,        1.0 / 5040,          -1.0 / 362880,
    1.0 / 39916800, -1.0 / 6227020800, 1.0 / 1307674368000, -1.0 / 355687428096000};
constexpr double kCosineSeries[] = {
    1.0 / 2,       -1.0 / 24,        1.0 / 720,         -1.0 / 40320,
    1.0 / 3628800, -1.0 / 479001600, 1.0 / 87178291200, -1.0 / 20922789888000};

template <std::size_t Terms>
double Sum(const double (&series)[Terms], double square) {
  double sum = 0.0;
  for (std::size_t i = Terms; i > 0; --i) sum = sum * square + series[i - 1];
  return sum;
}

}  // namespace

Direction DirectionOf(double angle) noexcept {
  int quarters = 0;
  const double rest = std::remquo(angle, CNuvGeometry::PiDiv2, &quarters);
  const double square = rest * rest;
  const double sine = rest - rest * square * Sum(kSineSeries, square);
  const double cosine = 1.0 - square * Sum(kCosineSeries, square);
  // A difference from 0 is no negative zero, which would show in the distances of lines.
  switch (static_cast<unsigned>(quarters) % 4) {
    case 0: return {cosine, sine};
    case 1: return {0.0 - sine, cosine};
    case 2: return {-cosine, 0.0 - sine};
    default: return {sine, -cosine};
  }
}

double PowerOfTwoIn(double size) noexcept {
  return std::ldexp(1.0, std::ilogb(size));
}

std::optional<Direction> DirectionAlong(double dx, double dy) noexcept {
  if (dx == 0.0 && dy == 0.0) return std::nullopt;
  const double scale = PowerOfTwoIn(std::max(std::abs(dx), std::abs(dy)));
  const double x = dx / scale;
  const double y = dy / scale;
  const double length = std::sqrt(x * x + y * y);
  return Direction{x / length, y / length};
}

CNuvLine LineThrough(const CNuvPoint& p, Direction along) {
  if (along.cosine < 0.0) along = {-along.cosine, 0.0 - along.sine};
  CNuvLine line(std::atan2(along.sine, along.cosine), along.OffsetOf(p));
  CNuvGeometry::NormalizeLine(&line);
  return line;
}
