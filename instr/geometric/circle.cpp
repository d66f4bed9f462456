// Circles: in a triangle, in a box, and cut by a line.

#include "host/geometry.h"
#include "instr/geometric/family.h"
#include "plugin/instruction.h"

namespace formula {

/// Draws the circle, too; of a triangle that has none, the one of diameter 0 at (0, 0).
struct CCircInTriangle final : Instruction<CCircInTriangle> {
  static constexpr Definition kDefinition = Geometric(
      "CircleInTriangle", "_Nuv_Geometric_CircInTriangle_", 460098,
      "Finds the circle inscribed in a triangle",
      {Point("point1"), Point("point2"), Point("point3")}, {Point("center"), Number("diam")});
  static Status Run(Call& call) {
    double diameter = 0.0;
    CNuvPoint center;
    const bool found = CNuvGeometry::CircleInTriangle(call.Point(0), call.Point(1), call.Point(2),
                                                      &diameter, &center);
    call.Set(0, center);
    call.Set(1, diameter);
    call.Annotations().Circle(nullptr, CNuvCircle(center.x, center.y, diameter * 0.5), 0, false);
    return StatusOf(found);
  }
};

/// Kept: the diameter counts as the radius, so that the box has twice the size of the circle; saved
/// programs allow for it.
struct CCircBndBox final : Instruction<CCircBndBox> {
  static constexpr Definition kDefinition = Geometric(
      "CircleBoundingBox", "_Nuv_Geometric_CircBndBox_", 460099,
      "Calculates the bounding box for the circle", {Number("diam", 0.0), Point("center")},
      {Point("top left"), Point("top right"), Point("bottom left"), Point("bottom right")});
  static Status Run(Call& call) {
    const double h = call.Number(0);
    const CNuvPoint c = call.Point(1);
    call.Set(0, CNuvPoint(c.x - h, c.y - h));
    call.Set(1, CNuvPoint(c.x + h, c.y - h));
    call.Set(2, CNuvPoint(c.x - h, c.y + h));
    return call.Set(3, CNuvPoint(c.x + h, c.y + h));
  }
};

struct CCircleLineIntersect final : Instruction<CCircleLineIntersect> {
  static constexpr Definition kDefinition =
      Geometric("CircleLineIntersect", "_Nuv_Geometric_CircleLineIntersect_", 460246,
                "Calculates circle line intersection",
                {Point("center", 100.0, 200.0), Number("radius", 0.0), Line("ln")},
                {Number("intersection_count"), Point("intersection1"), Point("intersection2")});
  static Status Run(Call& call) {
    int count = 0;
    CNuvPoint points[2];
    CNuvGeometry::CircleLineIntersection(call.Point(0), call.Number(1), call.Line(2), points,
                                         &count);
    call.Set(0, count);
    call.Set(1, points[0]);
    return call.Set(2, points[1]);
  }
};

template IXInstrPlugin* NewInstruction<CCircInTriangle>() noexcept;
template IXInstrPlugin* NewInstruction<CCircBndBox>() noexcept;
template IXInstrPlugin* NewInstruction<CCircleLineIntersect>() noexcept;

}  // namespace formula
