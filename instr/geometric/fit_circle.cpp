// The circle through a set of points: fit, roundness, and its picture.

#include <algorithm>
#include <cmath>

#include "host/geometry.h"
#include "host/integer.h"
#include "instr/geometric/fit_points.h"
#include "plugin/instruction.h"

namespace formula {
namespace {

constexpr Parameter kPercent =
    Number("percent outliers", 0.0, "Percent of points to be discarded as outliers");
constexpr Parameter kPreprocess =
    Boolean("preprocess", false, "Use clustering for input points preprocessing");
constexpr Parameter kTolerance =
    Number("tolerance", 1.0, "Clustering tolerance; used only if preprocessing is enabled");
constexpr Parameter kColor =
    Number("annotation color", 65535.0, "-1:Don't draw; 0:Use default color; Else use this color");

constexpr ConstantList<Parameter, 16> kResults = {
    Number("diameter", "Diameter of fit circle"),
    Number("points included", "Number of points used in the circle fit"),
    Number("avg fit error", "Average distance between the data points and the fit circle points"),
    Point("center", "Center of fit circle"),
    Point("top left", "Top,Left point of circle's bounding box"),
    Point("top right", "Top,Right point of circle's bounding box"),
    Point("bottom right", "Bottom,Right point of circle's bounding box"),
    Point("bottom left", "Bottom,Left point of circle's bounding box"),
    Points("outliers", "Array of points that were discarded as outliers"),
    Points("points used", "Array of points used (not discarded) in the fit"),
    Number("min diameter", "Minimum diameter estimated from points used in the circle fit"),
    Number("max diameter", "Maximum diameter estimated from points used in the circle fit"),
    Number("circularity", "Circularity of input points, from 0% (a line) to 100% (ideal circle)"),
    Number("ovality",
           "How oval the input points are. 0% is a circle, 100% is a line - an extreme oval"),
    Number("std deviation",
           "Standard deviation of distances between input points and fit circle center"),
};

constexpr std::int32_t kOutliers = 8;
constexpr std::int32_t kUsed = 9;

struct Found {
  double diameter = 0.0;
  std::uint32_t included = 0;
  double error = 0.0;
  CNuvPoint center;
};

/// Writes centre and bounding box, top left first and clockwise.
void SetCircle(Call& call, const Found& found) {
  const double r = found.diameter * 0.5;
  const CNuvPoint& center = found.center;
  call.Set(0, found.diameter);
  call.Set(1, static_cast<double>(found.included));
  call.Set(2, found.error);
  call.Set(3, center);
  call.Set(4, CNuvPoint(center.x - r, center.y - r));
  call.Set(5, CNuvPoint(center.x + r, center.y - r));
  call.Set(6, CNuvPoint(center.x + r, center.y + r));
  call.Set(7, CNuvPoint(center.x - r, center.y + r));
}

/// How far from round the points used are, by their distances from the centre.
/// Kept: the smallest distance is sought below the diameter, not below infinity; and where all
/// points lie on the centre, the quotients are those of zeros.
void SetRoundness(Call& call, const Found& found, const CNuvPointVector& used) {
  double least = 2.0 * found.diameter;
  double most = 0.0;
  double sum = 0.0;
  double squares = 0.0;
  for (std::uint32_t i = 0; i < found.included; ++i) {
    const double distance = CNuvGeometry::Point2PointDist(found.center, used[i]);
    least = std::min(least, distance);
    most = std::max(most, distance);
    sum += distance;
    squares += distance * distance;
  }
  const double n = found.included;
  const double deviation = n * squares - sum * sum;
  call.Set(10, 2.0 * least);
  call.Set(11, 2.0 * most);
  call.Set(12, least / most * 100.0);
  call.Set(13, (most - least) * 100.0 / (most + least));
  // Neither below 0 nor, where squares overflow, not a number.
  call.Set(14, deviation >= 0.0 ? std::sqrt(deviation / (n * n)) : 0.0);
}

/// The whole of an instruction, once it has its points.
Status FitCircle(Call& call, const char* title, FitPoints& points, double percent, bool preprocess,
                 double tolerance, HostInteger color) {
  SetCircle(call, Found());
  for (std::int32_t result = 10; result <= 14; ++result) call.Set(result, 0.0);
  if (points.Count() < 3) return Status::kSuccess;

  std::vector<CNuvPoint> removed;
  if (preprocess) {
    if (tolerance < 0.0) return call.Fail(title, "Negative tolerance is not a valid input.");
    removed = points.KeepLargestCluster(tolerance);
  }
  auto& outliers = call.ArrayResult<CNuvPointVector>(kOutliers);
  auto& used = call.ArrayResult<CNuvPointVector>(kUsed);
  Found found;
  const bool fitted = CNuvGeometry::Points2BestCircle(
                          points.Data(), points.Count(), NuvTruncateLow32(percent), &found.diameter,
                          &found.included, &found.error, &found.center, &outliers, &used) == 0;
  SetCircle(call, found);
  if (fitted && found.included > 0) SetRoundness(call, found, used);
  const std::size_t rejected = outliers.Size();
  outliers.Resize(rejected + removed.size());
  std::copy(removed.begin(), removed.end(), outliers.GetStorage() + rejected);
  // Kept: a failed fit is drawn as well.
  if (color >= 0) {
    call.Annotations().Circle(nullptr,
                              CNuvCircle(found.center.x, found.center.y, found.diameter * 0.5),
                              static_cast<std::uint32_t>(color.value), false);
  }
  return fitted ? Status::kSuccess : Status::kFailure;
}

}  // namespace

/// Circle through the points of an array. Fewer than three are no error and leave the arrays as
/// they were.
struct CPt2BestCircle final : Instruction<CPt2BestCircle> {
  static constexpr Definition kDefinition{
      .category = "Geometric",
      .name = "PtsToBestCircle",
      .identifier = "_Nuv_Geometric_Pt2BestCircle_",
      .help = 460084,
      .description = "Fits a circle through a set of points",
      .inputs = {kPercent, Points("points", "Array of points to use in circle fit"), kPreprocess,
                 kTolerance, kColor},
      .results = kResults,
  };
  static Status Run(Call& call, double percent, const CNuvPointVector& given, bool preprocess,
                    double tolerance, HostInteger color) {
    FitPoints points(given, {&call.ArrayResult<CNuvPointVector>(kOutliers),
                             &call.ArrayResult<CNuvPointVector>(kUsed)});
    return FitCircle(call, "PtsToBestCircle", points, percent, preprocess, tolerance, color);
  }
};

/// Circle through points given one by one.
struct CPt2BestCircleInf final : Instruction<CPt2BestCircleInf> {
  static constexpr Definition kDefinition{
      .category = "Geometric",
      .name = "PtsToBestCircleInf",
      .identifier = "_Nuv_Geometric_CPt2BestCircleInf_",
      .help = 460104,
      .description = "Fits a circle through a set of points taken as individual point inputs.",
      .repeatable = true,
      .inputs = {kPercent, kPreprocess, kTolerance, kColor,
                 Point("point", "Point (infinite input) to use in circle fit")},
      .results = kResults,
  };
  static Status Run(Call& call, double percent, bool preprocess, double tolerance,
                    HostInteger color, Repeated<CNuvPoint> given) {
    FitPoints points(given);
    return FitCircle(call, "PtsToBestCircleInf", points, percent, preprocess, tolerance, color);
  }
};

template struct Instructions<CPt2BestCircle, CPt2BestCircleInf>;

}  // namespace formula
