// CNuvGeometry: the host's geometry routines and constants.
//
// One convention everywhere. The line with angle a and distance d (CNuvLine) is the set of points
// (x, y) with -x sin(a) + y cos(a) = d, in image coordinates, where y grows downward. Angles are
// in radians; the normal form of a line has a in (-pi/2, pi/2]. The signed distance of a point
// from a line is -x sin(a) + y cos(a) - d.
#pragma once

#include <cstdint>

#include "host/export.h"
#include "host/values.h"
#include "host/vectors.h"

/// What goes in goes by const reference, what comes out by pointer and is always written. A
/// routine that answers with a boolean says whether there is an answer; without one it writes
/// default values.
class NUV_GEOMETRY_API CNuvGeometry {
 public:
  static const double Pi;
  static const double PiDiv2;
  static const double PiDiv4;

  /// Euclidean distance.
  static double Point2PointDist(const CNuvPoint& p1, const CNuvPoint& p2);
  /// Angle of the segment from p1 to p2 with the x axis, and its length as the distance: the pair
  /// is not the line through the points.
  static void Point2PointDistPitch(const CNuvPoint& p1, const CNuvPoint& p2, CNuvLine* line);
  /// Angle of the direction from p1 to p2, in [-pi, pi]: atan2 of the differences.
  static double Points2Angle(const CNuvPoint& p1, const CNuvPoint& p2);
  /// Folds an angle into (-pi/2, pi/2] by multiples of pi. Infinities and NaN become NaN.
  static void NormalizeAngleMinusPiBy2ToPiBy2(double* angle);
  /// The same line with its angle in (-pi/2, pi/2].
  static void NormalizeLine(CNuvLine* line);
  static void PointPointToLine(const CNuvPoint& p1, const CNuvPoint& p2, CNuvLine* line);
  static void MiddlePoint(const CNuvPoint& p1, const CNuvPoint& p2, CNuvPoint* middle);
  /// Turns a point around a centre, clockwise as seen on the screen.
  static void RotatePointClockwise(const double& angle, const CNuvPoint& center, CNuvPoint* point);
  /// The line through a point at right angles to lines of angle `a`.
  static void LinePerpendicular(const double& a, const CNuvPoint& p, CNuvLine* line);
  static void LinePerpendicular(const double& a, const double& x, const double& y, double* a2,
                                double* d2);
  /// The line through a point along lines of angle `a`.
  static void LineParallel(const double& a, const CNuvPoint& p, CNuvLine* line);
  /// False for parallel lines.
  static bool LineIntersection(const CNuvLine& l1, const CNuvLine& l2, CNuvPoint* point);
  /// Length of the segment of l3 between its intersections with l1 and l2.
  static bool Line2LineDist(const CNuvLine& l1, const CNuvLine& l2, const CNuvLine& l3,
                            double* distance);
  /// The bisector of the angle that two lines make; of parallel lines the line midway.
  static void LineBisect(const CNuvLine& l1, const CNuvLine& l2, CNuvLine* bisector);
  /// The bisector at p2 of the angle from p1 over p2 to p3.
  static bool AngleBisect(const CNuvPoint& p1, const CNuvPoint& p2, const CNuvPoint& p3,
                          CNuvLine* bisector);
  static bool CircleInTriangle(const CNuvPoint& p1, const CNuvPoint& p2, const CNuvPoint& p3,
                               double* diameter, CNuvPoint* center);
  /// Writes 0, 1 or 2 as the count, and that many of the two points.
  static void CircleLineIntersection(const CNuvPoint& center, const double& radius,
                                     const CNuvLine& line, CNuvPoint* points, int* count);
  /// The signed distance of each point, in the order of the points.
  static void PointArray2LineDist(const CNuvPoint* points, const std::uint32_t& count,
                                  const CNuvLine& line, double* distances);

  // The fits leave out floor(count * percent / 100) points as outliers, and return 0, or another
  // value where there is no answer: fewer points left than the figure needs, coincident points,
  // points on a line for a circle, a coordinate that is not finite, a percentage of 100 or more.
  // Outliers and points used come in input order; the same points give the same bits every time.

  /// The line of least squared distances at right angles.
  static std::uint32_t Points2BestLine(const CNuvPoint* points, const std::uint32_t& count,
                                       const std::uint32_t& percent, std::uint32_t* included,
                                       CNuvLine* line, CNuvPointVector* outliers,
                                       CNuvPointVector* used);
  /// The same line, with the most negative signed distance of the points used, the most positive
  /// one, and the first points that have them.
  static std::uint32_t Points2BestLineMaxOutliers(
      const CNuvPoint* points, const std::uint32_t& count, const std::uint32_t& percent,
      std::uint32_t* included, double* min_distance, double* max_distance, CNuvPoint* min_point,
      CNuvPoint* max_point, CNuvLine* line, CNuvPointVector* outliers);
  /// The circle of least squared distances along the radius. The fit error is the mean distance
  /// of the points used from the circle.
  static std::uint32_t Points2BestCircle(const CNuvPoint* points, const std::uint32_t& count,
                                         const std::uint32_t& percent, double* diameter,
                                         std::uint32_t* included, double* average_error,
                                         CNuvPoint* center, CNuvPointVector* outliers,
                                         CNuvPointVector* used);
};
