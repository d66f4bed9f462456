// Annotation instructions: what reaches the host's overlay.

#include "tests/instr/table.h"

namespace {

TEST(Annotations, EachDrawsItsFigure) {
  const TranscriptRow rows[] = {
      {R"({"instr": "_CAnnotText_", "in": [{"x": 1, "y": 2}, "t", 3, true, "Arial 12"]})",
       R"({"status": 0, "out": [], "annotations": [{"op": "text", "location": {"x": 1, "y": 2},
           "font": "Arial 12", "paintBackground": true, "label": "t", "color": 3}]})"},
      {R"({"instr": "_CAnnotPoint_", "in": [{"x": 1, "y": "NaN"}, "", 255.9]})",
       R"({"status": 0, "out": [], "annotations": [{"op": "point",
           "location": {"x": 1, "y": "NaN"}, "label": "", "color": 255}]})"},
      {R"({"instr": "_CAnnotSegment_", "in": [{"x": 1, "y": 2}, {"x": 3, "y": 4}]})",
       R"({"status": 0, "out": [], "annotations": [{"op": "segment", "start": {"x": 1, "y": 2},
           "end": {"x": 3, "y": 4}, "label": "Segment label", "color": 0}]})"},
      {R"({"instr": "_CAnnotLine_", "in": [{"a": 9, "d": -4}]})",
       R"({"status": 0, "out": [], "annotations": [{"op": "line", "line": {"a": 9, "d": -4},
           "label": "Line label", "color": 0}]})"},
      {R"({"instr": "_CAnnotCircle_", "in": [{"x": 1, "y": 2}, -1, "c", 7, true]})",
       R"({"status": 0, "out": [], "annotations": [{"op": "circle", "center": {"x": 1, "y": 2},
           "radius": -1, "fill": true, "label": "c", "color": 7}]})"},
      {R"({"instr": "_CAnnotCirclesFixedRadius_", "in": [[{"x": 1, "y": 2}], "NaN", "c", 7, true]})",
       R"({"status": 0, "out": [], "annotations": [{"op": "circles", "points": [{"x": 1, "y": 2}],
           "radius": "NaN", "fill": true, "label": "c", "color": 7}]})"},
      {R"({"instr": "_CAnnotRect_", "in": [{"x": 1, "y": 2}, 3, 4, 90, "r", 5, true, false]})",
       R"({"status": 0, "out": [], "annotations": [{"op": "rect", "center": {"x": 1, "y": 2},
           "width": 3, "height": 4, "angle": 1.5707963267948966, "fill": true, "label": "r",
           "color": 5}]})"},
      {R"({"instr": "_CAnnotPoints_", "in": [[]]})",
       R"({"status": 0, "out": [], "annotations": [{"op": "points", "points": [],
           "label": "Points label", "color": 0}]})"},
      {R"({"instr": "_CAnnotPixels_", "in": [[{"x": 1, "y": 2}, {"x": 3, "y": 4}], "p", 9]})",
       R"({"status": 0, "out": [], "annotations": [{"op": "pixels",
           "points": [{"x": 1, "y": 2}, {"x": 3, "y": 4}], "label": "p", "color": 9}]})"},
  };
  CheckTranscript(rows);
}

TEST(Annotations, SomeDrawNothing) {
  const InstructionRow rows[] = {
      {"_CAnnotCircle_", R"([{"x": 1, "y": 2}, 0])", "[]"},
      {"_CAnnotCircle_", R"([{"x": 1, "y": 2}, -0.0])", "[]"},
      {"_CAnnotCirclesFixedRadius_", R"([[{"x": 1, "y": 2}], 0])", "[]"},
      {"_CAnnotCirclesFixedRadius_", "[[], 3]", "[]"},
      {"_CAnnotPolyline_", R"([[{"x": 1, "y": 2}], "p", 0, true])", "[]"},
      {"_CAnnotPolyline_", R"([[], "p", 0, true])", "[]"},
  };
  nuvhost::ExecSession session(BuiltCatalogue());
  for (const InstructionRow& row : rows) {
    const std::string request =
        std::string(R"({"instr":")") + row.identifier + R"(","in":)" + row.inputs + "}";
    EXPECT_EQ(Exec(session, request).dump(), R"({"status":0,"out":[]})") << request;
  }
}

// An angle in degrees has its own input here: the preferred unit changes nothing.
TEST(Annotations, TheUnitOfARectangleIsItsInputs) {
  nuvhost::ExecSession session(BuiltCatalogue());
  for (const char* unit : {"degrees", "radians"}) {
    Exec(session, std::string(R"({"set":{"angleUnit":")") + unit + R"("}})");
    const auto angle = [&](const char* inputs) {
      const nuvhost::Json answer = Exec(
          session, std::string(R"({"instr":"_CAnnotRect_","in":[{"x":0,"y":0},1,1,)") + inputs);
      return answer["annotations"][0]["angle"].dump();
    };
    EXPECT_EQ(angle("45]}"), "45");
    EXPECT_EQ(angle(R"(-7.3,"r",0,false,false]})"), "-0.12740903539558604");
  }
}

TEST(Annotations, ColorsKeepTheirLowBits) {
  const struct {
    const char* color;
    std::uint32_t passed;
  } rows[] = {
      {"-0.9", 0U},
      {"-1", 0xffffffffU},
      {"4294967295.5", 0xffffffffU},
      {"4294967301", 5U},
      {"-4294967291", 5U},
      {"9007199254740993", 0U},
      {"9.3e18", 0U},
      {"-1e300", 0U},
      {"\"NaN\"", 0U},
      {"\"Infinity\"", 0U},
      {"2147483648", 0x80000000U},
  };
  nuvhost::ExecSession session(BuiltCatalogue());
  for (const auto& row : rows) {
    const nuvhost::Json answer =
        Exec(session,
             std::string(R"({"instr":"_CAnnotPoint_","in":[{"x":1,"y":2},"",)") + row.color + "]}");
    EXPECT_EQ(answer["annotations"][0]["color"], row.passed) << row.color;
  }
}

// The closing segment alone takes the default colour from the settings.
TEST(Annotations, PolylinesClose) {
  const TranscriptRow rows[] = {
      {R"({"set": {"defaultColor": 4660}})", "{}"},
      {R"({"instr": "_CAnnotPolyline_", "in": [[{"x": 1, "y": 2}, {"x": 3, "y": 4}]]})",
       R"({"status": 0, "out": [], "annotations": [
           {"op": "polyline", "points": [{"x": 1, "y": 2}, {"x": 3, "y": 4}],
            "label": "Polyline label", "color": 0}]})"},
      {R"({"instr": "_CAnnotPolyline_",
           "in": [[{"x": 1, "y": 2}, {"x": 3, "y": 4}, {"x": 5, "y": 6}], "p", 0.5, true]})",
       R"({"status": 0, "out": [], "annotations": [
           {"op": "polyline", "points": [{"x": 1, "y": 2}, {"x": 3, "y": 4}, {"x": 5, "y": 6}],
            "label": "p", "color": 0},
           {"op": "segment", "start": {"x": 1, "y": 2}, "end": {"x": 5, "y": 6}, "label": null,
            "color": 4660}]})"},
      {R"({"instr": "_CAnnotPolyline_",
           "in": [[{"x": 1, "y": 2}, {"x": 3, "y": 4}], "p", 7, true]})",
       R"({"status": 0, "out": [], "annotations": [
           {"op": "polyline", "points": [{"x": 1, "y": 2}, {"x": 3, "y": 4}], "label": "p",
            "color": 7},
           {"op": "segment", "start": {"x": 1, "y": 2}, "end": {"x": 3, "y": 4}, "label": null,
            "color": 7}]})"},
      {R"({"set": {"defaultColor": 0}})", "{}"},
  };
  CheckTranscript(rows);
}

}  // namespace
