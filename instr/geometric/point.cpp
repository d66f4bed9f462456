// Points from points: turned, in the middle, on average, on either side.

#include "host/geometry.h"
#include "platform/math.h"
#include "plugin/instruction.h"

namespace formula {
namespace {

/// The mean of points, summed in their order.
template <class Points>
CNuvPoint Mean(const Points& points) {
  CNuvPoint sum;
  for (decltype(points.Size()) i = 0; i < points.Size(); ++i) {
    const CNuvPoint& point = points[i];
    sum.x += point.x;
    sum.y += point.y;
  }
  const auto count = static_cast<double>(points.Size());
  return CNuvPoint(sum.x / count, sum.y / count);
}

}  // namespace

/// Clockwise on the screen.
struct CPtRotate final : Instruction<CPtRotate> {
  static constexpr Definition kDefinition{
      .category = "Geometric",
      .name = "PtRotate",
      .identifier = "_Nuv_Geometric_PtRotate_",
      .help = 460090,
      .description = "Rotates a point around another(center) with angle",
      .inputs = {Point("point"), Number("angle", 0.0), Point("center")},
      .results = {Point("rotated point")},
  };
  static Status Run(Call& call, CNuvPoint point, Radians angle, CNuvPoint center) {
    CNuvGeometry::RotatePointClockwise(angle, center, &point);
    return call.Set(0, point);
  }
};

struct CMiddlePt final : Instruction<CMiddlePt> {
  static constexpr Definition kDefinition{
      .category = "Geometric",
      .name = "PtMiddle",
      .identifier = "_Nuv_Geometric_MiddlePt_",
      .help = 460188,
      .description = "Calculates the middle (point) of the line defined by two points",
      .inputs = {Point("pt1"), Point("pt2")},
      .results = {Point("middle pt")},
  };
  static Status Run(Call& call, CNuvPoint pt1, CNuvPoint pt2) {
    CNuvPoint middle;
    CNuvGeometry::MiddlePoint(pt1, pt2, &middle);
    return call.Set(0, middle);
  }
};

struct CPtAvg final : Instruction<CPtAvg> {
  static constexpr Definition kDefinition{
      .category = "Geometric",
      .name = "PtAverage",
      .identifier = "_Nuv_Geometric_MeanPt_",
      .help = 460186,
      .description = "Calculates the average (mean) point",
      .inputs = {Points("pts")},
      .results = {Point("mean pt")},
  };
  static Status Run(Call& call, const CNuvPointVector& points) {
    if (points.Size() == 0) return call.Fail("MeanPt", "Algorithm needs at least one point.");
    return call.Set(0, Mean(points));
  }
};

/// Not a number without points.
struct CPtAvgInf final : Instruction<CPtAvgInf> {
  static constexpr Definition kDefinition{
      .category = "Geometric",
      .name = "PtAverageInf",
      .identifier = "_Nuv_Geometric_MeanPtInf_",
      .help = 460187,
      .description = "Calculates the average (mean) point",
      .repeatable = true,
      .inputs = {Point("pt", 0.0, 0.0)},
      .results = {Point("mean pt")},
  };
  static Status Run(Call& call, Repeated<CNuvPoint> points) { return call.Set(0, Mean(points)); }
};

/// The two points at a distance from a point, along an angle and against it.
struct CMakeAnchor final : Instruction<CMakeAnchor> {
  static constexpr Definition kDefinition{
      .category = "Geometric",
      .name = "MakeAnchor",
      .identifier = "_Nuv_Geometric_CMakeAnchor_",
      .help = 460107,
      .description = "Creates an anchor for the landmarking.",
      .inputs = {Point("point", 0.0, 0.0), Number("angle", 0.0), Number("distance", 50.0)},
      .results = {Point("point0"), Point("point1")},
  };
  static Status Run(Call& call, CNuvPoint point, Radians angle, double distance) {
    const double dx = platform::Cos(angle) * distance;
    const double dy = platform::Sin(angle) * distance;
    call.Set(0, CNuvPoint(point.x + dx, point.y + dy));
    return call.Set(1, CNuvPoint(point.x - dx, point.y - dy));
  }
};

template struct Instructions<CPtRotate, CMiddlePt, CPtAvg, CPtAvgInf, CMakeAnchor>;

}  // namespace formula
