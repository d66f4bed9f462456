// The circle of least squared distances along the radius.
#pragma once

#include <cstddef>

#include "host/values.h"

namespace geometry {

/// A circle in coordinates of a frame.
struct CircleFigure {
  static constexpr std::size_t kPoints = 3;
  /// A centre so many times farther away than the points are spread is that of a line.
  static constexpr double kFarthestCenter = 1e9;

  double x = 0.0;
  double y = 0.0;
  double radius = 0.0;

  /// The circle through the points at three positions; false where they lie on a line.
  bool Through(const double* px, const double* py, const std::size_t* positions);
  /// An algebraic fit, free of iteration over the points and nearly unbiased (Taubin, "Estimation
  /// of planar curves, surfaces and nonplanar space curves defined by implicit equations", IEEE
  /// PAMI 13, 1991), in the formulation of Chernov, "Circular and linear regression", 2010. False
  /// where the points lie on a line.
  bool Fit(const double* px, const double* py, std::size_t count);
  /// The same with the mean of the points known; tells in `least` what no circle's mean squared
  /// distance is below, for those that are below `limit`.
  bool FitAbout(double mean_x, double mean_y, const double* px, const double* py, std::size_t count,
                double limit, double* least);
  /// From this circle to the nearest one whose sum of squared distances is least (the geometric
  /// fit of Gander, Golub and Strebel, "Least-squares fitting of circles and ellipses", BIT 34,
  /// 1994). The radius follows from the centre, so that Newton's method has two unknowns; where
  /// it does not descend, it is damped as Levenberg and Marquardt do. False where the centre runs
  /// away, as it does when a line is nearer than any circle.
  bool Refine(const double* px, const double* py, std::size_t count, double* squares);
  bool FitClosely(const double* px, const double* py, std::size_t count) {
    double squares = 0.0;
    return Refine(px, py, count, &squares);
  }
  /// Of each point.
  void SquaredDistances(const double* px, const double* py, std::size_t count, double* out) const;
};

/// A circle fitted to points, with their mean distance from it.
struct CircleFit {
  double x = 0.0;
  double y = 0.0;
  double diameter = 0.0;
  double mean_error = 0.0;
  double error = 0.0;  ///< the root of the mean squared distance
};

/// Taubin's fit, refined; where the points curve no more than they scatter, the better of that and
/// the one that curves the other way. False for fewer than three points, for points that lie on a
/// line as nearly as their coordinates can tell, and where a coordinate or a result is not finite.
bool FitCircle(const CNuvPoint* points, std::size_t count, CircleFit* fit);

}  // namespace geometry
