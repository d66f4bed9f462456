// Lines from points and lines, their intersections, bisectors and angles.

#include "host/geometry.h"
#include "plugin/instruction.h"

namespace formula {

struct C2PtsToLn final : Instruction<C2PtsToLn> {
  static constexpr Definition kDefinition{
      .category = "Geometric",
      .name = "TwoPtsToLn",
      .identifier = "_Nuv_Geometric_TwoPtsToLn_",
      .help = 460273,
      .description = "Calculates the line defined by two points",
      .inputs = {Point("pt1"), Point("pt2")},
      .results = {Line("ln")},
  };
  static Status Run(Call& call, CNuvPoint pt1, CNuvPoint pt2) {
    CNuvLine line;
    CNuvGeometry::PointPointToLine(pt1, pt2, &line);
    return call.Set(0, line);
  }
};

struct CLnPerp final : Instruction<CLnPerp> {
  static constexpr Definition kDefinition{
      .category = "Geometric",
      .name = "LnPerpendicular",
      .identifier = "_Nuv_Geometric_LnPerp_",
      .help = 460094,
      .description = "Calculates the perpendicular line to a given line trough a point",
      .inputs = {Line("line"), Point("point")},
      .results = {Line("perpendicular")},
  };
  static Status Run(Call& call, CNuvLine line, CNuvPoint point) {
    CNuvLine perpendicular;
    CNuvGeometry::LinePerpendicular(line.a, point, &perpendicular);
    return call.Set(0, perpendicular);
  }
};

struct CLnPara final : Instruction<CLnPara> {
  static constexpr Definition kDefinition{
      .category = "Geometric",
      .name = "LnParallel",
      .identifier = "_Nuv_Geometric_LnPara_",
      .help = 460236,
      .description = "Calculates the parallel line to a given line trough a point",
      .inputs = {Line("line"), Point("point")},
      .results = {Line("parallel")},
  };
  static Status Run(Call& call, CNuvLine line, CNuvPoint point) {
    CNuvLine parallel;
    CNuvGeometry::LineParallel(line.a, point, &parallel);
    return call.Set(0, parallel);
  }
};

struct CLnNorm final : Instruction<CLnNorm> {
  static constexpr Definition kDefinition{
      .category = "Geometric",
      .name = "LnNormalize",
      .identifier = "_Nuv_Geometric_LnNorm_",
      .help = 460096,
      .description = "Normalizes the line",
      .inputs = {Line("line")},
      .results = {Line("normalized line")},
  };
  static Status Run(Call& call, CNuvLine line) {
    CNuvGeometry::NormalizeLine(&line);
    return call.Set(0, line);
  }
};

/// Fails for parallel lines; the point is (0, 0) then.
struct CLnInters final : Instruction<CLnInters> {
  static constexpr Definition kDefinition{
      .category = "Geometric",
      .name = "LnsIntersection",
      .identifier = "_Nuv_Geometric_LnInters_",
      .help = 460095,
      .description = "Calculates the point of intersection between two lines",
      .inputs = {Line("line1"), Line("line2")},
      .results = {Point("inters point")},
  };
  static Status Run(Call& call, CNuvLine line1, CNuvLine line2) {
    CNuvPoint point;
    const bool found = CNuvGeometry::LineIntersection(line1, line2, &point);
    call.Set(0, point);
    return found ? Status::kSuccess : Status::kFailure;
  }
};

/// Fails where a side of the angle has no length; the line is the default one then.
struct CAngleBis final : Instruction<CAngleBis> {
  static constexpr Definition kDefinition{
      .category = "Geometric",
      .name = "AngleBisect",
      .identifier = "_Nuv_Geometric_AngleBis_",
      .help = 460091,
      .description =
          "Calculates the bisector of the angle between the lines intersecting in the 2nd point",
      .inputs = {Point("pt1"), Point("pt2"), Point("pt3")},
      .results = {Line("bisector")},
  };
  static Status Run(Call& call, CNuvPoint pt1, CNuvPoint pt2, CNuvPoint pt3) {
    CNuvLine bisector;
    const bool found = CNuvGeometry::AngleBisect(pt1, pt2, pt3, &bisector);
    call.Set(0, bisector);
    return found ? Status::kSuccess : Status::kFailure;
  }
};

struct CLnBis final : Instruction<CLnBis> {
  static constexpr Definition kDefinition{
      .category = "Geometric",
      .name = "LnsBisect",
      .identifier = "_Nuv_Geometric_LnBis_",
      .help = 460092,
      .description = "Calculates the bisector of the angle made by two lines",
      .inputs = {Line("ln1"), Line("ln2")},
      .results = {Line("bisector")},
  };
  static Status Run(Call& call, CNuvLine ln1, CNuvLine ln2) {
    CNuvLine bisector;
    CNuvGeometry::LineBisect(ln1, ln2, &bisector);
    return call.Set(0, bisector);
  }
};

/// From the second line to the first.
struct CLnToLnAngle final : Instruction<CLnToLnAngle> {
  static constexpr Definition kDefinition{
      .category = "Geometric",
      .name = "LnToLnAngle",
      .identifier = "_Nuv_Geometric_LnToLnAngle_",
      .help = 460196,
      .description =
          "Calculates the angle between two lines (ln1.a - ln2.a). Angle is normalized to (-PI/2, "
          "PI/2] or (-180 to 180] depending on the uom application preferences.",
      .inputs = {Line("ln1"), Line("ln2")},
      .results = {Number("angle")},
  };
  static Status Run(Call& call, CNuvLine ln1, CNuvLine ln2) {
    double angle = ln1.a - ln2.a;
    CNuvGeometry::NormalizeAngleMinusPiBy2ToPiBy2(&angle);
    return call.SetAngle(0, angle);
  }
};

/// By half turns in either unit: in degrees into (-90, 90], whatever the description says.
struct CNormAngle final : Instruction<CNormAngle> {
  static constexpr Definition kDefinition{
      .category = "Geometric",
      .name = "AngleNormalize",
      .identifier = "_Nuv_Geometric_NormAngle_",
      .help = 460097,
      .description =
          "Normalizes the angle: (-PI/2 to PI/2] or (-180 to 180] depending on the uom "
          "application preferences",
      .inputs = {Number("angle", 0.0)},
      .results = {Number("normalized angle")},
  };
  static Status Run(Call& call, Radians angle) {
    CNuvGeometry::NormalizeAngleMinusPiBy2ToPiBy2(&angle.value);
    return call.SetAngle(0, angle);
  }
};

template struct Instructions<C2PtsToLn, CLnPerp, CLnPara, CLnNorm, CLnInters, CAngleBis, CLnBis,
                             CLnToLnAngle, CNormAngle>;

}  // namespace formula
