// Distances of points from a line.

#include <cfloat>
#include <charconv>
#include <cmath>
#include <vector>

#include "host/geometry.h"
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
  static Status Run(Call& call, CNuvPoint point, CNuvLine line) {
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
  static constexpr Definition kDefinition{
      .category = "Geometric",
      .name = "PtsToLnDist",
      .identifier = "_Nuv_Geometric_Pts2LnDistance_",
      .help = 460089,
      .description = "Calculates the distances between a point array and a line",
      .inputs = {Points("pts"), Line("ln")},
      .results = kDistanceResults,
  };
  static Status Run(Call& call, const CNuvPointVector& points, CNuvLine line) {
    return SetDistances(call, call.NumbersResult(0), points.GetStorage(), points.Size(), line);
  }
};

struct CPts2LnDistInf final : Instruction<CPts2LnDistInf> {
  static constexpr Definition kDefinition{
      .category = "Geometric",
      .name = "PtsToLnDistInf",
      .identifier = "_Nuv_Geometric_CPts2LnDistInf_",
      .help = 460106,
      .description =
          "Calculates the distances between a set of points and a line.The points are specified "
          "individually.",
      .repeatable = true,
      .inputs = {Line("ln"), Point("point")},
      .results = kDistanceResults,
  };
  static Status Run(Call& call, CNuvLine line, Repeated<CNuvPoint> given) {
    std::vector<CNuvPoint> points(static_cast<std::size_t>(given.Size()));
    for (std::int32_t i = 0; i < given.Size(); ++i) points[i] = given[i];
    return SetDistances(call, call.NumbersResult(0), points.data(), points.size(), line);
  }
};

template struct Instructions<CPt2LnDist, CPts2LnDist, CPts2LnDistInf>;

}  // namespace formula
