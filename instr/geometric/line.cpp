// Lines from points and lines, their intersections, bisectors and angles.

#include "host/geometry.h"
#include "instr/geometric/family.h"
#include "plugin/instruction.h"

namespace formula {

struct C2PtsToLn final : Instruction<C2PtsToLn> {
  static constexpr Definition kDefinition = Geometric(
      "TwoPtsToLn", "_Nuv_Geometric_TwoPtsToLn_", 460273,
      "Calculates the line defined by two points", {Point("pt1"), Point("pt2")}, {Line("ln")});
  static Status Run(Call& call) {
    CNuvLine line;
    CNuvGeometry::PointPointToLine(call.Point(0), call.Point(1), &line);
    return call.Set(0, line);
  }
};

struct CLnPerp final : Instruction<CLnPerp> {
  static constexpr Definition kDefinition =
      Geometric("LnPerpendicular", "_Nuv_Geometric_LnPerp_", 460094,
                "Calculates the perpendicular line to a given line trough a point",
                {Line("line"), Point("point")}, {Line("perpendicular")});
  static Status Run(Call& call) {
    CNuvLine line;
    CNuvGeometry::LinePerpendicular(call.Line(0).a, call.Point(1), &line);
    return call.Set(0, line);
  }
};

struct CLnPara final : Instruction<CLnPara> {
  static constexpr Definition kDefinition =
      Geometric("LnParallel", "_Nuv_Geometric_LnPara_", 460236,
                "Calculates the parallel line to a given line trough a point",
                {Line("line"), Point("point")}, {Line("parallel")});
  static Status Run(Call& call) {
    CNuvLine line;
    CNuvGeometry::LineParallel(call.Line(0).a, call.Point(1), &line);
    return call.Set(0, line);
  }
};

struct CLnNorm final : Instruction<CLnNorm> {
  static constexpr Definition kDefinition =
      Geometric("LnNormalize", "_Nuv_Geometric_LnNorm_", 460096, "Normalizes the line",
                {Line("line")}, {Line("normalized line")});
  static Status Run(Call& call) {
    CNuvLine line = call.Line(0);
    CNuvGeometry::NormalizeLine(&line);
    return call.Set(0, line);
  }
};

/// Fails for parallel lines; the point is (0, 0) then.
struct CLnInters final : Instruction<CLnInters> {
  static constexpr Definition kDefinition =
      Geometric("LnsIntersection", "_Nuv_Geometric_LnInters_", 460095,
                "Calculates the point of intersection between two lines",
                {Line("line1"), Line("line2")}, {Point("inters point")});
  static Status Run(Call& call) {
    CNuvPoint point;
    const bool found = CNuvGeometry::LineIntersection(call.Line(0), call.Line(1), &point);
    call.Set(0, point);
    return StatusOf(found);
  }
};

/// Fails where a side of the angle has no length; the line is the default one then.
struct CAngleBis final : Instruction<CAngleBis> {
  static constexpr Definition kDefinition = Geometric(
      "AngleBisect", "_Nuv_Geometric_AngleBis_", 460091,
      "Calculates the bisector of the angle between the lines intersecting in the 2nd point",
      {Point("pt1"), Point("pt2"), Point("pt3")}, {Line("bisector")});
  static Status Run(Call& call) {
    CNuvLine bisector;
    const bool found =
        CNuvGeometry::AngleBisect(call.Point(0), call.Point(1), call.Point(2), &bisector);
    call.Set(0, bisector);
    return StatusOf(found);
  }
};

struct CLnBis final : Instruction<CLnBis> {
  static constexpr Definition kDefinition =
      Geometric("LnsBisect", "_Nuv_Geometric_LnBis_", 460092,
                "Calculates the bisector of the angle made by two lines",
                {Line("ln1"), Line("ln2")}, {Line("bisector")});
  static Status Run(Call& call) {
    CNuvLine bisector;
    CNuvGeometry::LineBisect(call.Line(0), call.Line(1), &bisector);
    return call.Set(0, bisector);
  }
};

/// From the second line to the first.
struct CLnToLnAngle final : Instruction<CLnToLnAngle> {
  static constexpr Definition kDefinition = Geometric(
      "LnToLnAngle", "_Nuv_Geometric_LnToLnAngle_", 460196,
      "Calculates the angle between two lines (ln1.a - ln2.a). Angle is normalized to (-PI/2, "
      "PI/2] or (-180 to 180] depending on the uom application preferences.",
      {Line("ln1"), Line("ln2")}, {Number("angle")});
  static Status Run(Call& call) {
    double angle = call.Line(0).a - call.Line(1).a;
    CNuvGeometry::NormalizeAngleMinusPiBy2ToPiBy2(&angle);
    return call.SetAngle(0, angle);
  }
};

/// By half turns in either unit: in degrees into (-90, 90], whatever the description says.
struct CNormAngle final : Instruction<CNormAngle> {
  static constexpr Definition kDefinition =
      Geometric("AngleNormalize", "_Nuv_Geometric_NormAngle_", 460097,
                "Normalizes the angle: (-PI/2 to PI/2] or (-180 to 180] depending on the uom "
                "application preferences",
                {Number("angle", 0.0)}, {Number("normalized angle")});
  static Status Run(Call& call) {
    double angle = call.Angle(0);
    CNuvGeometry::NormalizeAngleMinusPiBy2ToPiBy2(&angle);
    return call.SetAngle(0, angle);
  }
};

template IXInstrPlugin* NewInstruction<C2PtsToLn>() noexcept;
template IXInstrPlugin* NewInstruction<CLnPerp>() noexcept;
template IXInstrPlugin* NewInstruction<CLnPara>() noexcept;
template IXInstrPlugin* NewInstruction<CLnNorm>() noexcept;
template IXInstrPlugin* NewInstruction<CLnInters>() noexcept;
template IXInstrPlugin* NewInstruction<CAngleBis>() noexcept;
template IXInstrPlugin* NewInstruction<CLnBis>() noexcept;
template IXInstrPlugin* NewInstruction<CLnToLnAngle>() noexcept;
template IXInstrPlugin* NewInstruction<CNormAngle>() noexcept;

}  // namespace formula
