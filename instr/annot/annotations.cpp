// Overlay graphics: one text or figure, or many points.

#include "host/geometry.h"
#include "host/setting.h"
#include "plugin/instruction.h"

namespace formula {
namespace {

constexpr Definition Row(const char* name, const char* identifier, std::uint32_t help,
                         const char* description, ConstantList<Parameter, 8> inputs) {
  return {.category = "IO: Annotations",
          .name = name,
          .identifier = identifier,
          .help = help,
          .description = description,
          .inputs = inputs};
}

const CNuvPointVector& PointsOf(const Call& call) {
  return call.Array<CNuvPointVector>(0);
}

}  // namespace

/// Kept, here and in all annotations: the identifier is the bare class name; saved programs bear
/// it.
struct CAnnotText final : Instruction<CAnnotText> {
  static constexpr Definition kDefinition =
      Row("Text", "_CAnnotText_", 460000, "Add text annotation",
          {Point("location", "x,y starting location of text"),
           Text("label", "Text to display", "Text label"),
           Number("color", 0.0, "Text color. 0 = Use default color"),
           Boolean("paint background", false, "If true, color the text's background"),
           Text("font", "String to select a font family and point size", "")});
  static Status Run(Call& call) {
    call.Annotations().Text(call.Point(0), call.CString(1), call.CString(4), call.Color(2),
                            call.Boolean(3));
    return Status::kSuccess;
  }
};

struct CAnnotPoint final : Instruction<CAnnotPoint> {
  static constexpr Definition kDefinition = Row(
      "Point", "_CAnnotPoint_", 460001, "Add point annotation",
      {Point("location", "x,y location of point"), Text("label", "Label for point", "Point label"),
       Number("color", 0.0, "Point color.  0 = Use default color")});
  static Status Run(Call& call) {
    call.Annotations().Point(call.CString(1), call.Point(0), call.Color(2));
    return Status::kSuccess;
  }
};

struct CAnnotSegment final : Instruction<CAnnotSegment> {
  static constexpr Definition kDefinition =
      Row("Line Segment", "_CAnnotSegment_", 460002, "Add line segment annotation",
          {Point("start", "Starting point of line"), Point("end", "Ending point of line"),
           Text("label", "Line segment label", "Segment label"),
           Number("color", 0.0, "Line segment color. 0 for default color")});
  static Status Run(Call& call) {
    call.Annotations().Segment(call.CString(2), call.Point(0), call.Point(1), call.Color(3));
    return Status::kSuccess;
  }
};

struct CAnnotLine final : Instruction<CAnnotLine> {
  static constexpr Definition kDefinition =
      Row("Line", "_CAnnotLine_", 460003, "Add line annotation",
          {Line("line", "Line angle, distance"), Text("label", nullptr, "Line label"),
           Number("color", 0.0, "Line color. 0 for default color")});
  static Status Run(Call& call) {
    call.Annotations().Line(call.CString(1), call.Line(0), call.Color(2));
    return Status::kSuccess;
  }
};

/// Nothing for a radius of exactly zero; any other, a negative one included, goes to the host.
struct CAnnotCircle final : Instruction<CAnnotCircle> {
  static constexpr Definition kDefinition =
      Row("Circle", "_CAnnotCircle_", 460004, "Add circle annotation",
          {Point("center", "Center point of circle annotation"),
           Number("radius", 1.0, "Radius of circle annotation"),
           Text("label", "Circle's label", "Circle label"),
           Number("color", 0.0, "Circle color. 0 for default color"),
           Boolean("fill", false, "If True, fill circle with 'color'")});
  static Status Run(Call& call) {
    const double radius = call.Number(1);
    if (radius == 0.0) return Status::kSuccess;
    const CNuvPoint& center = call.Point(0);
    call.Annotations().Circle(call.CString(2), CNuvCircle(center.x, center.y, radius),
                              call.Color(3), call.Boolean(4));
    return Status::kSuccess;
  }
};

struct CAnnotRect final : Instruction<CAnnotRect> {
  static constexpr Definition kDefinition =
      Row("Rectangle", "_CAnnotRect_", 460005, "Add rectangle annotation",
          {Point("center", "Center point of rectangle"), Number("width", 0.0, "Width of rectangle"),
           Number("height", 0.0, "Height of rectangle"),
           Number("angle", 0.0, "Angle of rectangle, rotated around center"),
           Text("label", "Label for rectangle", "Rect label"),
           Number("color", 0.0, "Rectangle color. 0 = Use default color"),
           Boolean("fill", false, "If True, fill rectangle with 'color'"),
           Boolean("in radians", true, "If true, angle is in radians. If false, in degrees")});
  /// The input says which unit the angle has, whatever the preferred one.
  static Status Run(Call& call) {
    const CNuvPoint& center = call.Point(0);
    const double given = call.Number(3);
    const double angle = call.Boolean(7) ? given : given * CNuvGeometry::Pi / 180.0;
    call.Annotations().Rect(call.CString(4),
                            CNuvRect(center.x, center.y, call.Number(1), call.Number(2), angle),
                            call.Color(5), call.Boolean(6));
    return Status::kSuccess;
  }
};

struct CAnnotCirclesFixedRadius final : Instruction<CAnnotCirclesFixedRadius> {
  static constexpr Definition kDefinition = Row(
      "Circles", "_CAnnotCirclesFixedRadius_", 460274,
      "Add array of constant-radius circle annotations",
      {Points("center points", "Array of circle center points"),
       Number("radius", 1.0, "Circles' radius"), Text("label", "Circles' label", "Circles label"),
       Number("color", 0.0, "Circles' color. 0 for default color"),
       Boolean("fill", false, "If True, fill circles with 'color'")});
  static Status Run(Call& call) {
    const CNuvPointVector& centers = PointsOf(call);
    const double radius = call.Number(1);
    if (radius == 0.0 || centers.Size() == 0) return Status::kSuccess;
    call.Annotations().Circles(call.CString(2), centers, radius, call.Color(3), call.Boolean(4));
    return Status::kSuccess;
  }
};

struct CAnnotPoints final : Instruction<CAnnotPoints> {
  static constexpr Definition kDefinition =
      Row("Points", "_CAnnotPoints_", 460006, "Add points annotation",
          {Points("points", "Array of points (+ marks) to draw"),
           Text("label", "Label for point array", "Points label"),
           Number("color", 0.0, "Color of points. 0 = Use default color")});
  static Status Run(Call& call) {
    call.Annotations().Points(call.CString(1), PointsOf(call), call.Color(2));
    return Status::kSuccess;
  }
};

struct CAnnotPixels final : Instruction<CAnnotPixels> {
  static constexpr Definition kDefinition = Row(
      "Pixels", "_CAnnotPixels_", 460007, "Add pixels annotation",
      {Points("pixels", "Input array of pixels"), Text("label", "Label for pixels", "Pixels label"),
       Number("color", 0.0, "Pixel color. 0 = Use default color")});
  static Status Run(Call& call) {
    call.Annotations().Pixels(call.CString(1), PointsOf(call), call.Color(2));
    return Status::kSuccess;
  }
};

/// Nothing for fewer than two points.
/// Kept: the closing segment names the default colour itself, where the polyline leaves it to the
/// host; programs that change the default between runs show the difference.
struct CAnnotPolyline final : Instruction<CAnnotPolyline> {
  static constexpr Definition kDefinition =
      Row("Polyline", "_CAnnotPolyline_", 460008, "Add polyline annotation",
          {Points("polyline", "Point array to connect with lines"),
           Text("label", "Polyline label", "Polyline label"),
           Number("color", 0.0, "Polyline color. 0 = use default color"),
           Boolean("close", false, "Close polyline if true")});
  static Status Run(Call& call) {
    const CNuvPointVector& points = PointsOf(call);
    if (points.Size() < 2) return Status::kSuccess;
    const std::uint32_t color = call.Color(2);
    Overlay overlay = call.Annotations();
    overlay.Polyline(call.CString(1), points, color);
    if (call.Boolean(3)) {
      const std::uint32_t closing =
          color != 0 ? color : CNuvSetting::Inst().GetDefaultAnnotationColor();
      overlay.Segment(nullptr, points[0], points[points.Size() - 1], closing);
    }
    return Status::kSuccess;
  }
};

template IXInstrPlugin* NewInstruction<CAnnotText>() noexcept;
template IXInstrPlugin* NewInstruction<CAnnotPoint>() noexcept;
template IXInstrPlugin* NewInstruction<CAnnotSegment>() noexcept;
template IXInstrPlugin* NewInstruction<CAnnotLine>() noexcept;
template IXInstrPlugin* NewInstruction<CAnnotCircle>() noexcept;
template IXInstrPlugin* NewInstruction<CAnnotRect>() noexcept;
template IXInstrPlugin* NewInstruction<CAnnotCirclesFixedRadius>() noexcept;
template IXInstrPlugin* NewInstruction<CAnnotPoints>() noexcept;
template IXInstrPlugin* NewInstruction<CAnnotPixels>() noexcept;
template IXInstrPlugin* NewInstruction<CAnnotPolyline>() noexcept;

}  // namespace formula
