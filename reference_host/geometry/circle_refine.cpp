// The geometric fit of a circle: from a circle near it to the one of least squared distances.

#include <algorithm>
#include <cmath>
#include <numbers>

#include "reference_host/geometry/circle_fit.h"
#include "reference_host/geometry/circle_rays.h"
#include "reference_host/geometry/direction.h"
#include "reference_host/geometry/two.h"

namespace geometry {
namespace {

/// What the mean squared distance from the best circle about a centre is, and how it changes with
/// the centre.
struct Landscape {
  double radius;
  double squares;
  double slope_x, slope_y;           ///< half the gradient
  double xx, xy, yy;                 ///< half the second derivatives: what the first ones of the
                                     ///< distances make of them, never negative definite,
  double bend_xx, bend_xy, bend_yy;  ///< and the rest
  double radius_x, radius_y;         ///< the gradient of the radius
};

struct LandscapeSums {
  Two r, rr, wx, wy, wxx, wxy, wyy, rwx, rwy, bxx, bxy, byy;

  void Add(const Ray& ray) {
    const Two bend = ray.beyond * ray.inverse_d;
    r += ray.beyond;
    rr += ray.beyond * ray.beyond;
    wx += ray.wx;
    wy += ray.wy;
    wxx += ray.wx * ray.wx;
    wxy += ray.wx * ray.wy;
    wyy += ray.wy * ray.wy;
    rwx += ray.beyond * ray.wx;
    rwy += ray.beyond * ray.wy;
    bxx += bend * (ray.uy * ray.uy);
    bxy += bend * (ray.ux * ray.uy);
    byy += bend * (ray.ux * ray.ux);
  }
};

template <class Center>
Landscape SurveyFrom(Center center, const double* px, const double* py, std::size_t count,
                     bool may_grow = true) {
  LandscapeSums pairs;
  LandscapeSums last;
  std::size_t i = 0;
  for (; i + 1 < count; i += 2) pairs.Add(center.To(Two(px + i), Two(py + i)));
  if (i < count) last.Add(center.To(Two(px[i]), Two(py[i])));
  const double share = 1.0 / static_cast<double>(count);
  const auto mean = [&](Two LandscapeSums::*sum) { return Total(pairs.*sum, last.*sum) * share; };
  const double r = mean(&LandscapeSums::r);
  const double rr = mean(&LandscapeSums::rr);
  if (may_grow && !(rr - r * r > 0.01 * rr)) {
    // The radius is so far off that the difference would lose digits.
    center.Grow(r);
    return SurveyFrom(center, px, py, count, false);
  }
  const double wx = mean(&LandscapeSums::wx);
  const double wy = mean(&LandscapeSums::wy);
  Landscape land;
  land.radius = center.center.radius + r;
  land.radius_x = -wx - center.same_x;
  land.radius_y = -wy - center.same_y;
  land.squares = std::max(rr - r * r, 0.0);
  land.slope_x = r * wx - mean(&LandscapeSums::rwx);
  land.slope_y = r * wy - mean(&LandscapeSums::rwy);
  land.xx = mean(&LandscapeSums::wxx) - wx * wx;
  land.xy = mean(&LandscapeSums::wxy) - wx * wy;
  land.yy = mean(&LandscapeSums::wyy) - wy * wy;
  // As if the circle had the best radius, which it all but has.
  land.bend_xx = mean(&LandscapeSums::bxx);
  land.bend_xy = -mean(&LandscapeSums::bxy);
  land.bend_yy = mean(&LandscapeSums::byy);
  return land;
}

Landscape Survey(const CircleFigure& circle, const double* px, const double* py,
                 std::size_t count) {
  return WithCenter(circle, [=](const auto& center) { return SurveyFrom(center, px, py, count); });
}

/// Solves (xx xy; xy yy) step = -slope, with `damping` on the diagonal; false where the matrix is
/// not positive definite.
bool Solve(const Landscape& land, double bend, double damping, double* step_x, double* step_y) {
  const double xx = land.xx + bend * land.bend_xx + damping;
  const double xy = land.xy + bend * land.bend_xy;
  const double yy = land.yy + bend * land.bend_yy + damping;
  const double determinant = xx * yy - xy * xy;
  if (!(xx + yy > 0.0 && determinant > 1e-14 * xx * yy)) return false;
  *step_x = (xy * land.slope_y - yy * land.slope_x) / determinant;
  *step_y = (xy * land.slope_x - xx * land.slope_y) / determinant;
  return true;
}

/// Whether one of few points is the circle's centre. Of many, one does not matter.
bool StandsOnPoint(const CircleFigure& circle, const double* px, const double* py,
                   std::size_t count) {
  constexpr std::size_t kFew = 64;
  const double near = 1e-9 * circle.radius;
  for (std::size_t i = 0; count <= kFew && i < count; ++i) {
    if (std::fabs(px[i] - circle.x) < near && std::fabs(py[i] - circle.y) < near) return true;
  }
  return false;
}

/// Moves the centre of a circle a little to where the sum of squares is least, if that is less than
/// where it is: off a saddle, or off a point that it lies on, where all slopes are 0 without being
/// those of a minimum.
bool LeaveSaddle(CircleFigure* circle, Landscape* land, const double* px, const double* py,
                 std::size_t count) {
  constexpr int kDirections = 16;
  constexpr double kStride = 0.01;  // of the radius
  constexpr double kGain = 1e-6;
  const CircleFigure from = *circle;
  double least = land->squares * (1.0 - kGain);
  bool is_left = false;
  for (int i = 0; i < kDirections; ++i) {
    const auto way = DirectionOf(2.0 * std::numbers::pi * i / kDirections);
    const CircleFigure next{from.x + kStride * from.radius * way.cosine,
                            from.y + kStride * from.radius * way.sine, from.radius};
    const Landscape there = Survey(next, px, py, count);
    if (!(there.squares < least)) continue;
    least = there.squares;
    *circle = next;
    *land = there;
    is_left = true;
  }
  return is_left;
}

}  // namespace

bool CircleFigure::Refine(const double* px, const double* py, std::size_t count, double* squares) {
  constexpr int kMostSteps = 200;
  // A Newton step below this share of the radius squares the error, to far below rounding.
  constexpr double kLastStep = 1e-10;
  Landscape land = Survey(*this, px, py, count);
  bool is_newton = true;  // or Gauss and Newton's step, without the bends
  double damping = 0.0;
  for (int i = 0; i < kMostSteps; ++i) {
    radius = land.radius;
    *squares = land.squares;
    if (!(radius < kFarthestCenter)) return false;
    const double size = land.xx + land.yy;
    double step_x = 0.0;
    double step_y = 0.0;
    bool is_better = false;
    if (Solve(land, is_newton ? 1.0 : 0.0, damping, &step_x, &step_y)) {
      if (step_x * step_x + step_y * step_y <= kLastStep * kLastStep * radius * radius) {
        if (is_newton && damping == 0.0) {
          x += step_x;
          y += step_y;
          radius += land.radius_x * step_x + land.radius_y * step_y;
        }
        const bool is_minimum = is_newton && !StandsOnPoint(*this, px, py, count);
        if (is_minimum || !LeaveSaddle(this, &land, px, py, count)) return true;
        is_newton = true;
        damping = 0.0;
        continue;
      }
      const CircleFigure next{x + step_x, y + step_y,
                              radius + land.radius_x * step_x + land.radius_y * step_y};
      const Landscape there = Survey(next, px, py, count);
      // Near the end the sums differ by their rounding alone.
      is_better = there.squares <= land.squares * (1.0 + 1e-13);
      if (is_better) {
        *this = next;
        land = there;
        damping = damping < 1e-12 * size ? 0.0 : damping * 0.01;
      }
    }
    // Two clusters that are small as seen from each other leave the matrix nearly singular: much
    // damping would take all steps from it.
    if (!is_better && !is_newton) damping = std::max(damping * 100.0, 1e-13 * size);
    is_newton = is_better;
  }
  return true;
}

}  // namespace geometry
