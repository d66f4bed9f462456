// Distances between points, and between lines along a line.

#include <algorithm>

#include "host/geometry.h"
#include "plugin/instruction.h"

namespace formula {
namespace {

/// The distances of pairs of points and their parts along the axes, as three arrays.
class DistanceArrays {
 public:
  explicit DistanceArrays(Call& call)
      : distance_(call.NumbersResult(0)), x_(call.NumbersResult(1)), y_(call.NumbersResult(2)) {}

  void Resize(std::size_t size) {
    distance_.Resize(size);
    x_.Resize(size);
    y_.Resize(size);
  }
  void Set(std::size_t index, const CNuvPoint& from, const CNuvPoint& to) {
    distance_[index] = CNuvGeometry::Point2PointDist(from, to);
    x_[index] = to.x - from.x;
    y_[index] = to.y - from.y;
  }

 private:
  CNuvDoubleVector& distance_;
  CNuvDoubleVector& x_;
  CNuvDoubleVector& y_;
};

}  // namespace

struct CPt2PtDist final : Instruction<CPt2PtDist> {
  static constexpr Definition kDefinition{
      .category = "Geometric",
      .name = "PtToPtDist",
      .identifier = "_Nuv_Geometric_Pt2PtDistance_",
      .help = 460082,
      .description =
          "Calculates the distance between two points and its projections on the X and Y axes",
      .inputs = {Point("pt1"), Point("pt2")},
      .results = {Number("distance"), Number("x distance"), Number("y distance")},
  };
  static Status Run(Call& call, CNuvPoint from, CNuvPoint to) {
    call.Set(0, CNuvGeometry::Point2PointDist(from, to));
    call.Set(1, to.x - from.x);
    return call.Set(2, to.y - from.y);
  }
};

struct CPtToPtsDist final : Instruction<CPtToPtsDist> {
  static constexpr Definition kDefinition{
      .category = "Geometric",
      .name = "PtToPtsDist",
      .identifier = "_Nuv_Geometric_PtToPtsDistance_",
      .help = 460205,
      .description = "Calculates the distance between point and point array",
      .inputs = {Point("pt", 0.0, 0.0), Points("pts")},
      .results = {Numbers("distance"), Numbers("x distance"), Numbers("y distance")},
  };
  static Status Run(Call& call, CNuvPoint point, const CNuvPointVector& points) {
    DistanceArrays results(call);
    results.Resize(points.Size());
    for (std::size_t i = 0; i < points.Size(); ++i) results.Set(i, point, points[i]);
    return Status::kSuccess;
  }
};

/// As many distances as the shorter array has points.
/// Kept: the differences run from the second set to the first, where its neighbours subtract the
/// first input from the second; saved programs count on the signs.
struct CPtsToPtsDist final : Instruction<CPtsToPtsDist> {
  static constexpr Definition kDefinition{
      .category = "Geometric",
      .name = "PtsToPtsDist",
      .identifier = "_Nuv_Geometric_PtsToPtsDistance_",
      .help = 460219,
      .description = "Calculates the distance between point arrays",
      .inputs = {Points("pts0"), Points("pts1")},
      .results = {Numbers("distance"), Numbers("x distance"), Numbers("y distance")},
  };
  static Status Run(Call& call, const CNuvPointVector& to, const CNuvPointVector& from) {
    DistanceArrays results(call);
    const std::size_t size = std::min(to.Size(), from.Size());
    results.Resize(size);
    for (std::size_t i = 0; i < size; ++i) results.Set(i, from[i], to[i]);
    return Status::kSuccess;
  }
};

struct CPt2PtDistPitch final : Instruction<CPt2PtDistPitch> {
  static constexpr Definition kDefinition{
      .category = "Geometric",
      .name = "PtToPtAngleDist",
      .identifier = "_Nuv_Geometric_Pt2PtDistPitch_",
      .help = 460083,
      .description =
          "Calculates the distance between two points and the line's angle with the X axis",
      .inputs = {Point("pt1"), Point("pt2")},
      .results = {Number("a"), Number("d")},
  };
  static Status Run(Call& call, CNuvPoint from, CNuvPoint to) {
    CNuvLine pitch;
    CNuvGeometry::Point2PointDistPitch(from, to, &pitch);
    call.SetAngle(0, pitch.a);
    return call.Set(1, pitch.d);
  }
};

/// Fails where the third line does not meet both others; the distance is 0 then.
struct CLn2LnDist final : Instruction<CLn2LnDist> {
  static constexpr Definition kDefinition{
      .category = "Geometric",
      .name = "LnToLnDist",
      .identifier = "_Nuv_Geometric_Ln2LnDist_",
      .help = 460093,
      .description =
          "Calculates the distance between two lines along a third line. This is the length of the "
          "segment defined by the intersection of line 1 and line3 at one end, and of line 2 and "
          "line 3 at the other.",
      .inputs = {Line("ln1"), Line("ln2"), Line("ln3")},
      .results = {Number("distance")},
  };
  static Status Run(Call& call, CNuvLine ln1, CNuvLine ln2, CNuvLine ln3) {
    double distance = 0.0;
    const bool found = CNuvGeometry::Line2LineDist(ln1, ln2, ln3, &distance);
    call.Set(0, distance);
    return found ? Status::kSuccess : Status::kFailure;
  }
};

template struct Instructions<CPt2PtDist, CPtToPtsDist, CPtsToPtsDist, CPt2PtDistPitch, CLn2LnDist>;

}  // namespace formula
