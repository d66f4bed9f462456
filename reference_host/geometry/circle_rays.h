// Rays from a circle's centre to points: how far each point lies from the circle, and in which
// direction.
#pragma once

#include <cmath>

#include "reference_host/geometry/circle_fit.h"
#include "reference_host/geometry/two.h"

namespace geometry {

inline Two SquaredLength(Two x, Two y) {
  return x * x + y * y;
}

/// Never 0, since it divides.
inline Two SquaredDistance(Two dx, Two dy) {
  return Largest(SquaredLength(dx, dy), Two(1e-60));
}
inline Two Distance(Two dx, Two dy) {
  return Sqrt(SquaredDistance(dx, dy));
}

/// What there is to know of a point, or of two: how far it lies beyond the circle, the inverse of
/// its distance d from the centre, the direction u to it, and w, which is u less a vector that is
/// the same for all points.
struct Ray {
  Two beyond, inverse_d, ux, uy, wx, wy;
};

/// Rays from a centre among the points.
struct NearCenter {
  explicit NearCenter(const CircleFigure& circle) : center(circle) {}
  Two Beyond(Two px, Two py) const {
    return Distance(px - Two(center.x), py - Two(center.y)) - Two(center.radius);
  }
  Ray To(Two px, Two py) const {
    const Two dx = px - Two(center.x);
    const Two dy = py - Two(center.y);
    // The division need not wait for the root.
    const Two squared = SquaredDistance(dx, dy);
    const Two d = Sqrt(squared);
    const Two inverse_d = Two(1.0) / squared * d;
    const Two ux = dx * inverse_d;
    const Two uy = dy * inverse_d;
    return {d - Two(center.radius), inverse_d, ux, uy, ux, uy};
  }
  /// Makes the radius so much larger.
  void Grow(double length) { center.radius += length; }
  CircleFigure center;
  double same_x = 0.0;  ///< u less w
  double same_y = 0.0;
};

/// Rays from a centre far from the points, without the rounding of large radii: with rho the
/// centre's distance from the origin, d exceeds rho by (|p|^2 - 2 c p) / (d + rho), which is as
/// exact as the point; and u is nearly the same for all points.
struct FarCenter {
  explicit FarCenter(const CircleFigure& circle)
      : center(circle),
        rho(std::sqrt(circle.x * circle.x + circle.y * circle.y)),
        offset(circle.radius - rho),
        same_x(-circle.x / rho),
        same_y(-circle.y / rho) {}
  Two Beyond(Two px, Two py) const {
    const Two d = Distance(px - Two(center.x), py - Two(center.y));
    return BeyondRho(px, py) / (d + Two(rho)) - Two(offset);
  }
  Ray To(Two px, Two py) const {
    const Two dx = px - Two(center.x);
    const Two dy = py - Two(center.y);
    const Two d = Distance(dx, dy);
    const Two sum = d + Two(rho);
    const Two inverse = Two(1.0) / (d * sum);
    const Two inverse_d = sum * inverse;
    const Two beyond_rho = BeyondRho(px, py) * (d * inverse);
    return {beyond_rho - Two(offset),
            inverse_d,
            dx * inverse_d,
            dy * inverse_d,
            (px - Two(same_x) * beyond_rho) * inverse_d,
            (py - Two(same_y) * beyond_rho) * inverse_d};
  }
  /// How much further than rho, times d + rho.
  Two BeyondRho(Two px, Two py) const {
    const Two dot = px * Two(center.x) + py * Two(center.y);
    return SquaredLength(px, py) - (dot + dot);
  }
  /// Makes the radius so much larger, with digits that the radius itself does not have.
  void Grow(double length) {
    center.radius += length;
    offset += length;
  }
  CircleFigure center;
  double rho;
  double offset;  ///< the radius beyond rho
  double same_x;
  double same_y;
};

/// Calls task(center) with the kind of centre that suits the circle.
template <class Task>
auto WithCenter(const CircleFigure& circle, const Task& task) {
  const bool is_near = circle.x * circle.x + circle.y * circle.y < 16.0;
  return is_near ? task(NearCenter(circle)) : task(FarCenter(circle));
}

}  // namespace geometry
