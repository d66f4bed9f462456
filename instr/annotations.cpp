// Overlay graphics: one text or figure, or many points.

#include "host/geometry.h"
#include "host/setting.h"
#include "plugin/instruction.h"

namespace formula {

/// Kept, here and in all annotations: the identifier is the bare class name; saved programs bear
/// it.
struct CAnnotText final : Instruction<CAnnotText> {
  static constexpr Definition kDefinition{
      .category = "IO: Annotations",
      .name = "Text",
      .identifier = "_CAnnotText_",
      .help = 460000,
      .description = "Add text annotation",
      .inputs = {Point("location", "x,y starting location of text"),
                 Text("label", "Text to display", "Text label"),
                 Number("color", 0.0, "Text color. 0 = Use default color"),
                 Boolean("paint background", false, "If true, color the text's background"),
                 Text("font", "String to select a font family and point size", "")},
  };
  static Status Run(Call& call, CNuvPoint location, const char* label, Color color,
                    bool paint_background, const char* font) {
    call.Annotations().Text(location, label, font, color, paint_background);
    return Status::kSuccess;
  }
};

struct CAnnotPoint final : Instruction<CAnnotPoint> {
  static constexpr Definition kDefinition{
      .category = "IO: Annotations",
      .name = "Point",
      .identifier = "_CAnnotPoint_",
      .help = 460001,
      .description = "Add point annotation",
      .inputs = {Point("location", "x,y location of point"),
                 Text("label", "Label for point", "Point label"),
                 Number("color", 0.0, "Point color.  0 = Use default color")},
  };
  static Status Run(Call& call, CNuvPoint location, const char* label, Color color) {
    call.Annotations().Point(label, location, color);
    return Status::kSuccess;
  }
};

struct CAnnotSegment final : Instruction<CAnnotSegment> {
  static constexpr Definition kDefinition{
      .category = "IO: Annotations",
      .name = "Line Segment",
      .identifier = "_CAnnotSegment_",
      .help = 460002,
      .description = "Add line segment annotation",
      .inputs = {Point("start", "Starting point of line"), Point("end", "Ending point of line"),
                 Text("label", "Line segment label", "Segment label"),
                 Number("color", 0.0, "Line segment color. 0 for default color")},
  };
  static Status Run(Call& call, CNuvPoint start, CNuvPoint end, const char* label, Color color) {
    call.Annotations().Segment(label, start, end, color);
    return Status::kSuccess;
  }
};

struct CAnnotLine final : Instruction<CAnnotLine> {
  static constexpr Definition kDefinition{
      .category = "IO: Annotations",
      .name = "Line",
      .identifier = "_CAnnotLine_",
      .help = 460003,
      .description = "Add line annotation",
      .inputs = {Line("line", "Line angle, distance"), Text("label", nullptr, "Line label"),
                 Number("color", 0.0, "Line color. 0 for default color")},
  };
  static Status Run(Call& call, CNuvLine line, const char* label, Color color) {
    call.Annotations().Line(label, line, color);
    return Status::kSuccess;
  }
};

/// Nothing for a radius of exactly zero; any other, a negative one included, goes to the host.
struct CAnnotCircle final : Instruction<CAnnotCircle> {
  static constexpr Definition kDefinition{
      .category = "IO: Annotations",
      .name = "Circle",
      .identifier = "_CAnnotCircle_",
      .help = 460004,
      .description = "Add circle annotation",
      .inputs = {Point("center", "Center point of circle annotation"),
                 Number("radius", 1.0, "Radius of circle annotation"),
                 Text("label", "Circle's label", "Circle label"),
                 Number("color", 0.0, "Circle color. 0 for default color"),
                 Boolean("fill", false, "If True, fill circle with 'color'")},
  };
  static Status Run(Call& call, CNuvPoint center, double radius, const char* label, Color color,
                    bool fill) {
    if (radius == 0.0) return Status::kSuccess;
    call.Annotations().Circle(label, CNuvCircle(center.x, center.y, radius), color, fill);
    return Status::kSuccess;
  }
};

struct CAnnotRect final : Instruction<CAnnotRect> {
  static constexpr Definition kDefinition{
      .category = "IO: Annotations",
      .name = "Rectangle",
      .identifier = "_CAnnotRect_",
      .help = 460005,
      .description = "Add rectangle annotation",
      .inputs = {Point("center", "Center point of rectangle"),
                 Number("width", 0.0, "Width of rectangle"),
                 Number("height", 0.0, "Height of rectangle"),
                 Number("angle", 0.0, "Angle of rectangle, rotated around center"),
                 Text("label", "Label for rectangle", "Rect label"),
                 Number("color", 0.0, "Rectangle color. 0 = Use default color"),
                 Boolean("fill", false, "If True, fill rectangle with 'color'"),
                 Boolean("in radians", true, "If true, angle is in radians. If false, in degrees")},
  };
  /// The input says which unit the angle has, whatever the preferred one.
  static Status Run(Call& call, CNuvPoint center, double width, double height, double angle,
                    const char* label, Color color, bool fill, bool in_radians) {
    const double radians = in_radians ? angle : angle * CNuvGeometry::Pi / 180.0;
    call.Annotations().Rect(label, CNuvRect(center.x, center.y, width, height, radians), color,
                            fill);
    return Status::kSuccess;
  }
};

struct CAnnotCirclesFixedRadius final : Instruction<CAnnotCirclesFixedRadius> {
  static constexpr Definition kDefinition{
      .category = "IO: Annotations",
      .name = "Circles",
      .identifier = "_CAnnotCirclesFixedRadius_",
      .help = 460274,
      .description = "Add array of constant-radius circle annotations",
      .inputs = {Points("center points", "Array of circle center points"),
                 Number("radius", 1.0, "Circles' radius"),
                 Text("label", "Circles' label", "Circles label"),
                 Number("color", 0.0, "Circles' color. 0 for default color"),
                 Boolean("fill", false, "If True, fill circles with 'color'")},
  };
  static Status Run(Call& call, const CNuvPointVector& centers, double radius, const char* label,
                    Color color, bool fill) {
    if (radius == 0.0 || centers.Size() == 0) return Status::kSuccess;
    call.Annotations().Circles(label, centers, radius, color, fill);
    return Status::kSuccess;
  }
};

struct CAnnotPoints final : Instruction<CAnnotPoints> {
  static constexpr Definition kDefinition{
      .category = "IO: Annotations",
      .name = "Points",
      .identifier = "_CAnnotPoints_",
      .help = 460006,
      .description = "Add points annotation",
      .inputs = {Points("points", "Array of points (+ marks) to draw"),
                 Text("label", "Label for point array", "Points label"),
                 Number("color", 0.0, "Color of points. 0 = Use default color")},
  };
  static Status Run(Call& call, const CNuvPointVector& points, const char* label, Color color) {
    call.Annotations().Points(label, points, color);
    return Status::kSuccess;
  }
};

struct CAnnotPixels final : Instruction<CAnnotPixels> {
  static constexpr Definition kDefinition{
      .category = "IO: Annotations",
      .name = "Pixels",
      .identifier = "_CAnnotPixels_",
      .help = 460007,
      .description = "Add pixels annotation",
      .inputs = {Points("pixels", "Input array of pixels"),
                 Text("label", "Label for pixels", "Pixels label"),
                 Number("color", 0.0, "Pixel color. 0 = Use default color")},
  };
  static Status Run(Call& call, const CNuvPointVector& pixels, const char* label, Color color) {
    call.Annotations().Pixels(label, pixels, color);
    return Status::kSuccess;
  }
};

/// Nothing for fewer than two points.
/// Kept: the closing segment names the default colour itself, where the polyline leaves it to the
/// host; programs that change the default between runs show the difference.
struct CAnnotPolyline final : Instruction<CAnnotPolyline> {
  static constexpr Definition kDefinition{
      .category = "IO: Annotations",
      .name = "Polyline",
      .identifier = "_CAnnotPolyline_",
      .help = 460008,
      .description = "Add polyline annotation",
      .inputs = {Points("polyline", "Point array to connect with lines"),
                 Text("label", "Polyline label", "Polyline label"),
                 Number("color", 0.0, "Polyline color. 0 = use default color"),
                 Boolean("close", false, "Close polyline if true")},
  };
  static Status Run(Call& call, const CNuvPointVector& points, const char* label, Color color,
                    bool close) {
    if (points.Size() < 2) return Status::kSuccess;
    Overlay overlay = call.Annotations();
    overlay.Polyline(label, points, color);
    if (close) {
      const std::uint32_t closing =
          color != 0 ? color : CNuvSetting::Inst().GetDefaultAnnotationColor();
      overlay.Segment(nullptr, points[0], points[points.Size() - 1], closing);
    }
    return Status::kSuccess;
  }
};

template struct Instructions<CAnnotText, CAnnotPoint, CAnnotSegment, CAnnotLine, CAnnotCircle,
                             CAnnotRect, CAnnotCirclesFixedRadius, CAnnotPoints, CAnnotPixels,
                             CAnnotPolyline>;

}  // namespace formula
