// Circles: in a triangle, in a box, and cut by a line.

#include "host/geometry.h"
#include "plugin/instruction.h"

namespace formula {

/// Draws the circle, too; of a triangle that has none, the one of diameter 0 at (0, 0).
struct CCircInTriangle final : Instruction<CCircInTriangle> {
  static constexpr Definition kDefinition{
      .category = "Geometric",
      .name = "CircleInTriangle",
      .identifier = "_Nuv_Geometric_CircInTriangle_",
      .help = 460098,
      .description = "Finds the circle inscribed in a triangle",
      .inputs = {Point("point1"), Point("point2"), Point("point3")},
      .results = {Point("center"), Number("diam")},
  };
  static Status Run(Call& call, CNuvPoint point1, CNuvPoint point2, CNuvPoint point3) {
    double diameter = 0.0;
    CNuvPoint center;
    const bool found = CNuvGeometry::CircleInTriangle(point1, point2, point3, &diameter, &center);
    call.Set(0, center);
    call.Set(1, diameter);
    call.Annotations().Circle(nullptr, CNuvCircle(center.x, center.y, diameter * 0.5), 0, false);
    return found ? Status::kSuccess : Status::kFailure;
  }
};

/// Kept: the diameter counts as the radius, so that the box has twice the size of the circle; saved
/// programs allow for it.
struct CCircBndBox final : Instruction<CCircBndBox> {
  static constexpr Definition kDefinition{
      .category = "Geometric",
      .name = "CircleBoundingBox",
      .identifier = "_Nuv_Geometric_CircBndBox_",
      .help = 460099,
      .description = "Calculates the bounding box for the circle",
      .inputs = {Number("diam", 0.0), Point("center")},
      .results = {Point("top left"), Point("top right"), Point("bottom left"),
                  Point("bottom right")},
  };
  static Status Run(Call& call, double diameter, CNuvPoint center) {
    call.Set(0, CNuvPoint(center.x - diameter, center.y - diameter));
    call.Set(1, CNuvPoint(center.x + diameter, center.y - diameter));
    call.Set(2, CNuvPoint(center.x - diameter, center.y + diameter));
    return call.Set(3, CNuvPoint(center.x + diameter, center.y + diameter));
  }
};

struct CCircleLineIntersect final : Instruction<CCircleLineIntersect> {
  static constexpr Definition kDefinition{
      .category = "Geometric",
      .name = "CircleLineIntersect",
      .identifier = "_Nuv_Geometric_CircleLineIntersect_",
      .help = 460246,
      .description = "Calculates circle line intersection",
      .inputs = {Point("center", 100.0, 200.0), Number("radius", 0.0), Line("ln")},
      .results = {Number("intersection_count"), Point("intersection1"), Point("intersection2")},
  };
  static Status Run(Call& call, CNuvPoint center, double radius, CNuvLine line) {
    int count = 0;
    CNuvPoint points[2];
    CNuvGeometry::CircleLineIntersection(center, radius, line, points, &count);
    call.Set(0, count);
    call.Set(1, points[0]);
    return call.Set(2, points[1]);
  }
};

template struct Instructions<CCircInTriangle, CCircBndBox, CCircleLineIntersect>;

}  // namespace formula
