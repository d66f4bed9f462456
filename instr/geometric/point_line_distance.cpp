// Distances of points from a line.

#include <cfloat>
#include <charconv>
#include <cmath>
#include <vector>

#include "host/geometry.h"
#include "instr/geometric/family.h"
#include "plugin/instruction.h"

namespace formula {
namespace {

constexpr ConstantList<Parameter, 16> kDistanceResults = {
    Numbers("distances"), Number("min distance"), Number("max distance"),
    Number("min distance array index"), Number("max distance array index")};

/// Writes the distances of points from a line, the least and the greatest of them, and the first
/// indices that have these. A NaN is neither.
Status SetDistances(Call& call, CNuvDoubleVector& distances, const CNuvPoint* points,
                    std::size_t size, const CNuvLine& line) {
  distances.Resize(size);
  CNuvGeometry::PointArray2LineDist(points, static_cast<std::uint32_t>(size), line,
                                    distances.GetStorage());
  double min = DBL_MAX;
  double max = -DBL_MAX;
  int min_index = -1;
  int max_index = -1;
  for (std::size_t i = 0; i < size; ++i) {
    const double distance = std::abs(distances[i]);
    distances[i] = distance;
    if (distance < min) {
      min = distance;
      min_index = static_cast<int>(i);
    }
    if (distance > max) {
      max = distance;
      max_index = static_cast<int>(i);
    }
  }
  call.Set(1, min);
  call.Set(2, max);
  call.Set(3, min_index);
  return call.Set(4, max_index);
}

/// Draws a segment with its length as the label, to three decimals.
void DrawDistance(Call& call, double distance, const CNuvPoint& from, const CNuvPoint& to) {
  char label[DBL_MAX_10_EXP + 8];
  *std::to_chars(label, label + sizeof label - 1, distance, std::chars_format::fixed, 3).ptr = '\0';
  call.Annotations().Segment(label, from, to, 0);
}

}  // namespace

/// The distance from a point to the foot of the perpendicular; 0 where there is no foot.
struct CPt2LnDist final : Instruction<CPt2LnDist> {
  static constexpr Definition kDefinition{
      .category = "Geometric",
      .name = "PtToLnDist",
      .identifier = "_Nuv_Geometric_Pt2LnDistance_",
      .help = 460088,
      .description = "Calculates the distance between a point and a line",
      .constants = {{.type = NUV_PARAM_BOOLEAN, .group = "Parameters", .name = "display distance"}},
      .inputs = {Point("pt"), Line("ln")},
      .results = {Number("distance"), Point("measurement point"), Line("measurement line")}};
  static Status Run(Call& call) {
    const CNuvPoint point = call.Point(0);
    const CNuvLine line = call.Line(1);
    CNuvLine perpendicular;
    CNuvGeometry::LinePerpendicular(line.a, point.x, point.y, &perpendicular.a, &perpendicular.d);
    CNuvPoint foot;
    const bool meet = CNuvGeometry::LineIntersection(line, perpendicular, &foot);
    const double distance = meet ? std::abs(CNuvGeometry::Point2PointDist(point, foot)) : 0.0;
    call.Set(0, distance);
    call.Set(1, foot);
    call.Set(2, perpendicular);
    if (call.ConstantBoolean(0)) DrawDistance(call, distance, point, foot);
    return Status::kSuccess;
  }
};

struct CPts2LnDist final : Instruction<CPts2LnDist> {
  static constexpr Definition kDefinition =
      Geometric("PtsToLnDist", "_Nuv_Geometric_Pts2LnDistance_", 460089,
                "Calculates the distances between a point array and a line",
                {Points("pts"), Line("ln")}, kDistanceResults);
  static Status Run(Call& call) {
    CNuvDoubleVector& distances = call.NumbersResult(0);
    const auto& points = call.Array<CNuvPointVector>(0);
    return SetDistances(call, distances, points.GetStorage(), points.Size(), call.Line(1));
  }
};

struct CPts2LnDistInf final : Instruction<CPts2LnDistInf> {
  static constexpr Definition kDefinition = GeometricRepeated(
      "PtsToLnDistInf", "_Nuv_Geometric_CPts2LnDistInf_", 460106,
      "Calculates the distances between a set of points and a line.The points are specified "
      "individually.",
      {Line("ln"), Point("point")}, kDistanceResults);
  static Status Run(Call& call) {
    std::vector<CNuvPoint> points;
    for (std::int32_t i = 1; i < call.Count(); ++i) points.push_back(call.Point(i));
    return SetDistances(call, call.NumbersResult(0), points.data(), points.size(), call.Line(0));
  }
};

template IXInstrPlugin* NewInstruction<CPt2LnDist>() noexcept;
template IXInstrPlugin* NewInstruction<CPts2LnDist>() noexcept;
template IXInstrPlugin* NewInstruction<CPts2LnDistInf>() noexcept;

}  // namespace formula
