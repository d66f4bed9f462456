// Points from points: turned, in the middle, on average, on either side.

#include "host/geometry.h"
#include "instr/geometric/family.h"
#include "platform/math.h"
#include "plugin/instruction.h"

namespace formula {
namespace {

/// The mean of points, summed in their order.
template <class PointAt>
CNuvPoint Mean(std::size_t count, PointAt point_at) {
  CNuvPoint sum;
  for (std::size_t i = 0; i < count; ++i) {
    const CNuvPoint& point = point_at(i);
    sum.x += point.x;
    sum.y += point.y;
  }
  return CNuvPoint(sum.x / static_cast<double>(count), sum.y / static_cast<double>(count));
}

}  // namespace

/// Clockwise on the screen.
struct CPtRotate final : Instruction<CPtRotate> {
  static constexpr Definition kDefinition =
      Geometric("PtRotate", "_Nuv_Geometric_PtRotate_", 460090,
                "Rotates a point around another(center) with angle",
                {Point("point"), Number("angle", 0.0), Point("center")}, {Point("rotated point")});
  static Status Run(Call& call) {
    CNuvPoint point = call.Point(0);
    CNuvGeometry::RotatePointClockwise(call.Angle(1), call.Point(2), &point);
    return call.Set(0, point);
  }
};

struct CMiddlePt final : Instruction<CMiddlePt> {
  static constexpr Definition kDefinition =
      Geometric("PtMiddle", "_Nuv_Geometric_MiddlePt_", 460188,
                "Calculates the middle (point) of the line defined by two points",
                {Point("pt1"), Point("pt2")}, {Point("middle pt")});
  static Status Run(Call& call) {
    CNuvPoint middle;
    CNuvGeometry::MiddlePoint(call.Point(0), call.Point(1), &middle);
    return call.Set(0, middle);
  }
};

struct CPtAvg final : Instruction<CPtAvg> {
  static constexpr Definition kDefinition =
      Geometric("PtAverage", "_Nuv_Geometric_MeanPt_", 460186,
                "Calculates the average (mean) point", {Points("pts")}, {Point("mean pt")});
  static Status Run(Call& call) {
    const auto& points = call.Array<CNuvPointVector>(0);
    if (points.Size() == 0) return call.Fail("MeanPt", "Algorithm needs at least one point.");
    return call.Set(
        0, Mean(points.Size(), [&](std::size_t i) -> const CNuvPoint& { return points[i]; }));
  }
};

/// Fails without points, and says nothing.
struct CPtAvgInf final : Instruction<CPtAvgInf> {
  static constexpr Definition kDefinition = GeometricRepeated(
      "PtAverageInf", "_Nuv_Geometric_MeanPtInf_", 460187, "Calculates the average (mean) point",
      {Point("pt", 0.0, 0.0)}, {Point("mean pt")});
  static Status Run(Call& call) {
    if (call.Count() < 1) return Status::kFailure;
    return call.Set(
        0, Mean(static_cast<std::size_t>(call.Count()), [&](std::size_t i) -> const CNuvPoint& {
          return call.Point(static_cast<std::int32_t>(i));
        }));
  }
};

/// The two points at a distance from a point, along an angle and against it.
struct CMakeAnchor final : Instruction<CMakeAnchor> {
  static constexpr Definition kDefinition = Geometric(
      "MakeAnchor", "_Nuv_Geometric_CMakeAnchor_", 460107, "Creates an anchor for the landmarking.",
      {Point("point", 0.0, 0.0), Number("angle", 0.0), Number("distance", 50.0)},
      {Point("point0"), Point("point1")});
  static Status Run(Call& call) {
    const CNuvPoint point = call.Point(0);
    const double angle = call.Angle(1);
    const double distance = call.Number(2);
    const double dx = platform::Cos(angle) * distance;
    const double dy = platform::Sin(angle) * distance;
    call.Set(0, CNuvPoint(point.x + dx, point.y + dy));
    return call.Set(1, CNuvPoint(point.x - dx, point.y - dy));
  }
};

template IXInstrPlugin* NewInstruction<CPtRotate>() noexcept;
template IXInstrPlugin* NewInstruction<CMiddlePt>() noexcept;
template IXInstrPlugin* NewInstruction<CPtAvg>() noexcept;
template IXInstrPlugin* NewInstruction<CPtAvgInf>() noexcept;
template IXInstrPlugin* NewInstruction<CMakeAnchor>() noexcept;

}  // namespace formula
