// The line through the points of a rake: those of the dominant straight run.

#include <cmath>
#include <span>
#include <vector>

#include "algorithm/cluster.h"
#include "host/integer.h"
#include "instr/geometric/fit_line.h"
#include "plugin/instruction.h"

namespace formula {
namespace {

using PointList = std::vector<CNuvPoint>;

PointList Pick(std::span<const CNuvPoint> points, const std::vector<std::size_t>& positions) {
  PointList picked;
  picked.reserve(positions.size());
  for (const std::size_t position : positions) picked.push_back(points[position]);
  return picked;
}

/// The points of the run that lie in one direction from its first point, the sign of the angle
/// apart: the largest cluster of the directions. The first point itself has that of the second.
PointList StraightPart(const PointList& run, double tolerance) {
  std::vector<double> directions(run.size());
  for (std::size_t i = 1; i < run.size(); ++i) {
    directions[i] = std::fabs(CNuvGeometry::Points2Angle(run[0], run[i]));
  }
  directions[0] = directions[1];
  return Pick(run, LargestCluster(directions, tolerance));
}

/// Reports what is wrong with an input.
/// Kept: under the name of another instruction, and the step goes on as if it had succeeded.
Status Reject(Call& call, const char* text) {
  call.Fail("PtsToBestLine", text);
  return Status::kSuccess;
}

}  // namespace

/// Line through ordered points, after two clusterings: of the gaps between neighbours; and of the
/// directions seen from the first point left and, going backward, from the last one. The larger
/// cluster of the two is fitted, the first point's if they are equal.
/// Kept: both clusterings always run, whatever the descriptions say, and a failed fit shows only
/// in a count of 0.
struct CRakePt2BestLn final : Instruction<CRakePt2BestLn> {
  static constexpr Definition kDefinition{
      .category = "Geometric",
      .name = "RakeLineFit",
      .identifier = "_Nuv_Geometric_RakePt2BestLn_",
      .help = 460229,
      .description =
          "Fits a line through an ordered set of points belonging to a rake - with all "
          "implications",
      .inputs = {Number("percent outliers", 0.0), Points("pts"),
                 Number("linear tolerance", 1.0,
                        "Clustering tolerance (step 1); used only if preprocessing is enabled"),
                 Number("angular tolerance", 1.0,
                        "Clustering tolerance (step 2); used only if preprocessing is enabled")},
      .results = kLineFitResults,
  };
  static Status Run(Call& call, double percent, const CNuvPointVector& given,
                    double linear_tolerance, Radians angular_tolerance) {
    call.Mark(2, kOutlierMark);
    const FitPoints points(given, {&LineFitResults::Outliers(call), &LineFitResults::Used(call)});
    LineFitResults results(call);
    results.SetNone();
    if (linear_tolerance < 0.0) {
      return Reject(call, "Negative linear tolerance is not a valid input.");
    }
    if (angular_tolerance < 0.0) {
      return Reject(call, "Negative angular tolerance is not a valid input.");
    }
    if (points.Count() == 0) return Status::kSuccess;

    const std::span all(points.Data(), points.Count());
    const PointList run = Pick(all, LargestCluster(NeighborGaps(all), linear_tolerance));
    if (run.size() < 3) {
      return Reject(call, "Not enough points in the biggest cluster; increase linear tolerance.");
    }
    const PointList back_run(run.rbegin(), run.rend());
    const PointList front = StraightPart(run, angular_tolerance);
    const PointList back = StraightPart(back_run, angular_tolerance);
    const PointList& straight = back.size() > front.size() ? back : front;
    results.Fit(straight.data(), straight.size(), NuvTruncateLow32(percent));
    return Status::kSuccess;
  }
};

template struct Instructions<CRakePt2BestLn>;

}  // namespace formula
