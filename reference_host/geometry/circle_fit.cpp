#include "reference_host/geometry/circle_fit.h"

#include <cmath>
#include <limits>
#include <memory>

#include "reference_host/geometry/circle_rays.h"
#include "reference_host/geometry/frame.h"
#include "reference_host/geometry/line_fit.h"
#include "reference_host/geometry/two.h"

namespace geometry {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

/// How far each point lies beyond the circle, and the sum of that. It may replace the points.
double Measure(const CircleFigure& circle, const double* px, const double* py, std::size_t count,
               double* out) {
  return WithCenter(circle, [=](const auto& center) {
    Two sum;
    std::size_t i = 0;
    for (; i + 1 < count; i += 2) {
      const Two beyond = center.Beyond(Two(px + i), Two(py + i));
      sum += beyond;
      Store(beyond, out + i);
    }
    if (i == count) return Sum(sum);
    out[i] = Low(center.Beyond(Two(px[i]), Two(py[i])));
    return Sum(sum) + out[i];
  });
}

/// Sums for Taubin's fit, of points about their mean, with z = x^2 + y^2.
struct AlgebraicSums {
  Two xx, xy, yy, xz, yz, zz;

  void Add(Two x, Two y) {
    const Two x2 = x * x;
    const Two y2 = y * y;
    const Two z = x2 + y2;
    xx += x2;
    xy += x * y;
    yy += y2;
    xz += x * z;
    yz += y * z;
    zz += z * z;
  }
};

/// The root of a0 + a1 v + a2 v^2 + a3 v^3 that Newton's method finds from 0: with the coefficients
/// of Taubin's fit, the smallest one that is not negative.
double SmallestRoot(double a0, double a1, double a2, double a3) {
  double root = 0.0;
  double value = a0;
  for (int step = 0; step < 50; ++step) {
    const double slope = a1 + root * (2.0 * a2 + root * 3.0 * a3);
    const double next = root - value / slope;
    if (next == root || !std::isfinite(next)) break;
    const double next_value = a0 + next * (a1 + next * (a2 + next * a3));
    if (!(std::fabs(next_value) < std::fabs(value))) break;
    root = next;
    value = next_value;
  }
  return root;
}

/// What no circle's mean squared distance is below, for those that are below `limit`, from the
/// least value `root` of Taubin's sum: of the mean of (d^2 - r^2)^2 over four times the mean of
/// d^2, where d are the distances of points from the centre. `z` is the mean square of those from
/// the mean of the points.
///
/// With r the mean of d, no d is farther from r than the largest distance e from the circle, so
/// that (d^2 - r^2)^2 is at most (d - r)^2 (2 r + e)^2, while the mean of d^2 is at least r^2. So
/// the mean of (d - r)^2 is at least `root` times (2 r / (2 r + e))^2, where n mean(d - r)^2 is at
/// least e^2; and r is at least sqrt(z) less the root of the mean of (d - r)^2.
double LeastSquares(std::size_t count, double z, double root, double limit) {
  const double error = std::sqrt(limit);
  const double diameter = 2.0 * (std::sqrt(z) - error);
  if (!(diameter > 0.0)) return 0.0;
  const double share = diameter / (diameter + error * std::sqrt(static_cast<double>(count)));
  return root * share * share;
}

/// Taubin's fit, refined, of points with that mean, and the mean squared distance.
bool FitFully(double mean_x, double mean_y, const double* px, const double* py, std::size_t count,
              CircleFigure* circle, double* squares) {
  double least = 0.0;
  if (!circle->FitAbout(mean_x, mean_y, px, py, count, kInfinity, &least)) return false;
  const CircleFigure algebraic = *circle;
  const bool is_fit = circle->Refine(px, py, count, squares);
  // How far the points' mean lies within the circle is how much they curve.
  const double dx = mean_x - algebraic.x;
  const double dy = mean_y - algebraic.y;
  const double depth = algebraic.radius - std::sqrt(dx * dx + dy * dy);
  if (is_fit && *squares < depth * depth / 4.0) return true;
  CircleFigure mirrored{mean_x + dx, mean_y + dy, algebraic.radius};
  double mirrored_squares = 0.0;
  if (mirrored.Refine(px, py, count, &mirrored_squares) &&
      (!is_fit || mirrored_squares < *squares)) {
    *circle = mirrored;
    *squares = mirrored_squares;
    return true;
  }
  return is_fit;
}

/// Whether the points lie on a line, to a root mean square distance of `resolution`.
bool LieOnLine(const double* px, const double* py, std::size_t count, double resolution) {
  LineFigure line;
  if (!line.Fit(px, py, count)) return true;
  double squares = 0.0;
  for (std::size_t i = 0; i < count; ++i) squares += line.SquaredDistance(px[i], py[i]);
  return squares <= static_cast<double>(count) * resolution * resolution;
}

}  // namespace

bool CircleFigure::Through(const double* px, const double* py, const std::size_t* positions) {
  const double x0 = px[positions[0]];
  const double y0 = py[positions[0]];
  const double x1 = px[positions[1]] - x0;
  const double y1 = py[positions[1]] - y0;
  const double x2 = px[positions[2]] - x0;
  const double y2 = py[positions[2]] - y0;
  const double z1 = x1 * x1 + y1 * y1;
  const double z2 = x2 * x2 + y2 * y2;
  const double area = 2.0 * (x1 * y2 - x2 * y1);
  const double dx = (z1 * y2 - z2 * y1) / area;
  const double dy = (z2 * x1 - z1 * x2) / area;
  radius = std::sqrt(dx * dx + dy * dy);
  x = x0 + dx;
  y = y0 + dy;
  return radius < kFarthestCenter;
}

void CircleFigure::SquaredDistances(const double* px, const double* py, std::size_t count,
                                    double* out) const {
  WithCenter(*this, [=](const auto& center) {
    std::size_t i = 0;
    for (; i + 1 < count; i += 2) {
      const Two beyond = center.Beyond(Two(px + i), Two(py + i));
      Store(beyond * beyond, out + i);
    }
    if (i == count) return;
    const double beyond = Low(center.Beyond(Two(px[i]), Two(py[i])));
    out[i] = beyond * beyond;
  });
}

bool CircleFigure::Fit(const double* px, const double* py, std::size_t count) {
  const auto n = static_cast<double>(count);
  double least = 0.0;
  return FitAbout(SumOf(px, count) / n, SumOf(py, count) / n, px, py, count, kInfinity, &least);
}

bool CircleFigure::FitAbout(double mean_x, double mean_y, const double* px, const double* py,
                            std::size_t count, double limit, double* least) {
  AlgebraicSums pairs;
  AlgebraicSums last;
  std::size_t i = 0;
  for (; i + 1 < count; i += 2) pairs.Add(Two(px + i) - Two(mean_x), Two(py + i) - Two(mean_y));
  if (i < count) last.Add(Two(px[i] - mean_x), Two(py[i] - mean_y));
  const double share = 1.0 / static_cast<double>(count);
  const auto mean = [&](Two AlgebraicSums::*sum) { return Total(pairs.*sum, last.*sum) * share; };
  const double xx = mean(&AlgebraicSums::xx);
  const double xy = mean(&AlgebraicSums::xy);
  const double yy = mean(&AlgebraicSums::yy);
  const double xz = mean(&AlgebraicSums::xz);
  const double yz = mean(&AlgebraicSums::yz);
  const double zz = mean(&AlgebraicSums::zz);
  const double z = xx + yy;
  const double spread = xx * yy - xy * xy;
  const double variance = zz - z * z;
  const double slope = variance * z + 4.0 * spread * z - xz * xz - yz * yz;
  const double root =
      SmallestRoot(xz * (xz * yy - yz * xy) + yz * (yz * xx - xz * xy) - variance * spread, slope,
                   -3.0 * z * z - zz, 4.0 * z);
  *least = LeastSquares(count, z, root - 1e-14 * z * z * z * zz / slope, limit);
  const double determinant = root * (root - z) + spread;
  const double dx = (xz * (yy - root) - yz * xy) / determinant * 0.5;
  const double dy = (yz * (xx - root) - xz * xy) / determinant * 0.5;
  x = mean_x + dx;
  y = mean_y + dy;
  radius = std::sqrt(dx * dx + dy * dy + z);
  return radius < kFarthestCenter;
}

bool FitCircle(const CNuvPoint* points, std::size_t count, CircleFit* fit) {
  if (count < CircleFigure::kPoints) return false;
  const Box box = BoundingBox(points, count);
  if (!box.IsFinite()) return false;
  const Frame frame = Frame::Around(box);
  const auto coordinates = std::make_unique_for_overwrite<double[]>(2 * count);
  double* const x = coordinates.get();
  double* const y = x + count;
  Two sums_x;
  Two sums_y;
  std::size_t i = 0;
  for (; i + 1 < count; i += 2) {
    const Two pair_x = frame.X(Two(points[i].x, points[i + 1].x));
    const Two pair_y = frame.Y(Two(points[i].y, points[i + 1].y));
    sums_x += pair_x;
    sums_y += pair_y;
    Store(pair_x, x + i);
    Store(pair_y, y + i);
  }
  double sum_x = Sum(sums_x);
  double sum_y = Sum(sums_y);
  if (i < count) {
    sum_x += x[i] = frame.X(points[i].x);
    sum_y += y[i] = frame.Y(points[i].y);
  }
  const auto n = static_cast<double>(count);
  CircleFigure circle;
  double squares = 0.0;
  if (!FitFully(sum_x / n, sum_y / n, x, y, count, &circle, &squares)) return false;
  // Only a circle much larger than the spread of its points may be a line.
  if (circle.radius > 10.0 && LieOnLine(x, y, count, 4.0 * frame.Resolution(box.Magnitude()))) {
    return false;
  }
  double* const beyond = x;
  const double middle = Measure(circle, x, y, count, beyond) / n;
  const double error = SumOf(beyond, count, [=](Two r) { return Absolute(r - Two(middle)); }) / n;
  circle.radius += middle;
  fit->x = frame.BackX(circle.x);
  fit->y = frame.BackY(circle.y);
  fit->diameter = frame.BackLength(2.0 * circle.radius);
  fit->mean_error = frame.BackLength(error);
  fit->error = frame.BackLength(std::sqrt(squares));
  return std::isfinite(fit->x) && std::isfinite(fit->y) && std::isfinite(fit->diameter) &&
         std::isfinite(fit->mean_error);
}

}  // namespace geometry
