// The line through a set of points, and the direction of the line through two.

#include "instr/geometric/fit_line.h"

#include "host/integer.h"
#include "plugin/instruction.h"

namespace formula {
namespace {

constexpr Parameter kPercent = Number("percent outliers", 0.0);
constexpr Parameter kPreprocess =
    Boolean("preprocess", false, "Use clustering for input points preprocessing");
constexpr Parameter kTolerance =
    Number("tolerance", 1.0, "Clustering tolerance; used only if preprocessing is enabled");

/// The whole of an instruction, once it has its points.
/// Kept: the points that preprocessing removes are reported nowhere; those of a circle are.
Status FitLine(Call& call, const char* title, FitPoints& points, double percent, bool preprocess,
               double tolerance) {
  LineFitResults results(call);
  if (preprocess && tolerance < 0.0) {
    results.SetNone();
    return call.Fail(title, "Negative tolerance is not a valid input.");
  }
  if (points.Count() == 0) {
    results.SetNone();
    return Status::kSuccess;
  }
  if (preprocess) points.KeepLargestCluster(tolerance);
  const bool fitted = results.Fit(points.Data(), points.Count(), NuvTruncateLow32(percent));
  return fitted ? Status::kSuccess : Status::kFailure;
}

}  // namespace

/// The angle of the line through two points, upward positive: the image's y grows downward, so
/// the sign is turned.
struct CPt2BestAngle final : Instruction<CPt2BestAngle> {
  static constexpr Definition kDefinition{
      .category = "Geometric",
      .name = "PtsToBestAngle",
      .identifier = "_Nuv_Geometric_Pt2BestAngle_",
      .help = 460085,
      .description = "Calculates the angle between the x-axis and the line defined by the 2 points",
      .inputs = {Point("pt1"), Point("pt2")},
      .results = {Number("angle")},
  };
  static Status Run(Call& call, CNuvPoint pt1, CNuvPoint pt2) {
    double angle = -CNuvGeometry::Points2Angle(pt1, pt2);
    CNuvGeometry::NormalizeAngleMinusPiBy2ToPiBy2(&angle);
    return call.SetAngle(0, angle);
  }
};

/// Line through the points of an array. None is no error.
struct CPt2BestLn final : Instruction<CPt2BestLn> {
  static constexpr Definition kDefinition{
      .category = "Geometric",
      .name = "PtsToBestLine",
      .identifier = "_Nuv_Geometric_Pt2BestLn_",
      .help = 460086,
      .description = "Fits a line through a set of points",
      .inputs = {kPercent, Points("pts"), kPreprocess, kTolerance},
      .results = kLineFitResults,
  };
  static Status Run(Call& call, double percent, const CNuvPointVector& given, bool preprocess,
                    double tolerance) {
    call.Mark(2, kOutlierMark);
    FitPoints points(given, {&LineFitResults::Outliers(call), &LineFitResults::Used(call)});
    return FitLine(call, "PtsToBestLine", points, percent, preprocess, tolerance);
  }
};

/// Line through points given one by one.
struct CPt2BestLnInf final : Instruction<CPt2BestLnInf> {
  static constexpr Definition kDefinition{
      .category = "Geometric",
      .name = "PtsToBestLnInf",
      .identifier = "_Nuv_Geometric_CPt2BestLnInf_",
      .help = 460105,
      .description = "Fits a line through a set of points specified as individual inputs",
      .repeatable = true,
      .inputs = {kPercent, kPreprocess, kTolerance, Point("point")},
      .results = kLineFitResults,
  };
  static Status Run(Call& call, double percent, bool preprocess, double tolerance,
                    Repeated<CNuvPoint> given) {
    call.Mark(2, kOutlierMark);
    FitPoints points(given);
    return FitLine(call, "PtsToBestLnInf", points, percent, preprocess, tolerance);
  }
};

/// Line through points, with the farthest ones on either side.
/// Kept: unlike the other fits it fails without points.
struct CPt2BestLnMaxOut final : Instruction<CPt2BestLnMaxOut> {
  static constexpr Definition kDefinition{
      .category = "Geometric",
      .name = "PtsToBestLnMaxOut",
      .identifier = "_Nuv_Geometric_Pt2BestLnMaxOut_",
      .help = 460087,
      .description =
          "Fits a line through a set of points; calculates furthest points above and "
          "below the line and distances to them",
      .inputs = {Points("pts"), kPercent},
      .results = {Number("pts included"), Number("min dist"), Number("max dist"),
                  Point("min point"), Point("max point"), Line("ln"), Points("outliers")},
  };
  static Status Run(Call& call, const CNuvPointVector& given, double percent) {
    constexpr std::int32_t kOutliers = 6;
    call.Mark(kOutliers, kOutlierMark);
    auto& outliers = call.ArrayResult<CNuvPointVector>(kOutliers);
    const FitPoints points(given, {&outliers});
    std::uint32_t included = 0;
    double min_distance = 0.0;
    double max_distance = 0.0;
    CNuvPoint min_point;
    CNuvPoint max_point;
    CNuvLine line;
    const bool fitted =
        CNuvGeometry::Points2BestLineMaxOutliers(
            points.Data(), points.Count(), NuvTruncateLow32(percent), &included, &min_distance,
            &max_distance, &min_point, &max_point, &line, &outliers) == 0;
    call.Set(0, static_cast<double>(included));
    call.Set(1, min_distance);
    call.Set(2, max_distance);
    call.Set(3, min_point);
    call.Set(4, max_point);
    call.Set(5, line);
    return fitted ? Status::kSuccess : Status::kFailure;
  }
};

template struct Instructions<CPt2BestAngle, CPt2BestLn, CPt2BestLnInf, CPt2BestLnMaxOut>;

}  // namespace formula
