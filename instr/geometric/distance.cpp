// Distances between points, and between lines along a line.

#include <algorithm>

#include "host/geometry.h"
#include "instr/geometric/family.h"
#include "plugin/instruction.h"

namespace formula {
namespace {

/// The distances of pairs of points and their parts along the axes, as three arrays. Made before
/// the inputs are read, since a result may have to become an array first.
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
  static constexpr Definition kDefinition = Geometric(
      "PtToPtDist", "_Nuv_Geometric_Pt2PtDistance_", 460082,
      "Calculates the distance between two points and its projections on the X and Y axes",
      {Point("pt1"), Point("pt2")},
      {Number("distance"), Number("x distance"), Number("y distance")});
  static Status Run(Call& call) {
    const CNuvPoint from = call.Point(0);
    const CNuvPoint to = call.Point(1);
    call.Set(0, CNuvGeometry::Point2PointDist(from, to));
    call.Set(1, to.x - from.x);
    return call.Set(2, to.y - from.y);
  }
};

struct CPtToPtsDist final : Instruction<CPtToPtsDist> {
  static constexpr Definition kDefinition =
      Geometric("PtToPtsDist", "_Nuv_Geometric_PtToPtsDistance_", 460205,
                "Calculates the distance between point and point array",
                {Point("pt", 0.0, 0.0), Points("pts")},
                {Numbers("distance"), Numbers("x distance"), Numbers("y distance")});
  static Status Run(Call& call) {
    DistanceArrays results(call);
    const CNuvPoint point = call.Point(0);
    const auto& points = call.Array<CNuvPointVector>(1);
    results.Resize(points.Size());
    for (std::size_t i = 0; i < points.Size(); ++i) results.Set(i, point, points[i]);
    return Status::kSuccess;
  }
};

/// As many distances as the shorter array has points.
/// Kept: the differences run from the second set to the first, where its neighbours subtract the
/// first input from the second; saved programs count on the signs.
struct CPtsToPtsDist final : Instruction<CPtsToPtsDist> {
  static constexpr Definition kDefinition =
      Geometric("PtsToPtsDist", "_Nuv_Geometric_PtsToPtsDistance_", 460219,
                "Calculates the distance between point arrays", {Points("pts0"), Points("pts1")},
                {Numbers("distance"), Numbers("x distance"), Numbers("y distance")});
  static Status Run(Call& call) {
    DistanceArrays results(call);
    const auto& to = call.Array<CNuvPointVector>(0);
    const auto& from = call.Array<CNuvPointVector>(1);
    const std::size_t size = std::min(to.Size(), from.Size());
    results.Resize(size);
    for (std::size_t i = 0; i < size; ++i) results.Set(i, from[i], to[i]);
    return Status::kSuccess;
  }
};

struct CPt2PtDistPitch final : Instruction<CPt2PtDistPitch> {
  static constexpr Definition kDefinition =
      Geometric("PtToPtAngleDist", "_Nuv_Geometric_Pt2PtDistPitch_", 460083,
                "Calculates the distance between two points and the line's angle with the X axis",
                {Point("pt1"), Point("pt2")}, {Number("a"), Number("d")});
  static Status Run(Call& call) {
    CNuvLine pitch;
    CNuvGeometry::Point2PointDistPitch(call.Point(0), call.Point(1), &pitch);
    call.SetAngle(0, pitch.a);
    return call.Set(1, pitch.d);
  }
};

/// Fails where the third line does not meet both others; the distance is 0 then.
struct CLn2LnDist final : Instruction<CLn2LnDist> {
  static constexpr Definition kDefinition = Geometric(
      "LnToLnDist", "_Nuv_Geometric_Ln2LnDist_", 460093,
      "Calculates the distance between two lines along a third line. This is the length of the "
      "segment defined by the intersection of line 1 and line3 at one end, and of line 2 and line "
      "3 at the other.",
      {Line("ln1"), Line("ln2"), Line("ln3")}, {Number("distance")});
  static Status Run(Call& call) {
    double distance = 0.0;
    const bool found =
        CNuvGeometry::Line2LineDist(call.Line(0), call.Line(1), call.Line(2), &distance);
    call.Set(0, distance);
    return StatusOf(found);
  }
};

template IXInstrPlugin* NewInstruction<CPt2PtDist>() noexcept;
template IXInstrPlugin* NewInstruction<CPtToPtsDist>() noexcept;
template IXInstrPlugin* NewInstruction<CPtsToPtsDist>() noexcept;
template IXInstrPlugin* NewInstruction<CPt2PtDistPitch>() noexcept;
template IXInstrPlugin* NewInstruction<CLn2LnDist>() noexcept;

}  // namespace formula
