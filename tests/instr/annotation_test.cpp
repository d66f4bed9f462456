// Annotation instructions, beyond what docs/instructions shows of them.

#include "tests/instr/table.h"

namespace {

/// What is drawn by a call, as the inside of a list; nothing fails.
struct AnnotationRow {
  const char* name;
  const char* inputs;
  const char* drawn;
};

TEST(Annotations, DrawTheirFigures) {
  const AnnotationRow rows[] = {
      {"Circle", "[[1 2], -0.0]", ""},
      {"CirclesFixedRadius", R"([[[1 2]], "NaN", "c", 7, true])",
       R"({"op": "circles", "points": [[1 2]], "radius": "NaN", "fill": true, "label": "c",
           "color": 7})"},
      // An angle in degrees has its own input: the preferred unit changes nothing.
      {"Rect", R"([[1 2], 3, 4, -7.3, "r", 5, true, false])",
       R"({"op": "rect", "center": [1 2], "width": 3, "height": 4, "angle": -0.12740903539558604,
           "fill": true, "label": "r", "color": 5})"},
      {"Rect", "[[1 2], 3, 4, 45]",
       R"({"op": "rect", "center": [1 2], "width": 3, "height": 4, "angle": 45, "fill": false,
           "label": "Rect label", "color": 0})"},
      {"Polyline", R"([[], "p", 0, true])", ""},
      // The closing segment alone takes the default colour from the settings.
      {"Polyline", R"([[[1 2], [3 4], [5 6]], "p", 0.5, true])",
       R"({"op": "polyline", "points": [[1 2], [3 4], [5 6]], "label": "p", "color": 0},
          {"op": "segment", "start": [1 2], "end": [5 6], "label": null, "color": 4660})"},
  };
  nuvhost::ExecSession session(BuiltCatalogue());
  for (const char* unit : {"degrees", "radians"}) {
    Exec(session, std::string(R"({"set":{"defaultColor":4660,"angleUnit":")") + unit + "\"}}");
    for (const AnnotationRow& row : rows) {
      const std::string call =
          std::string(R"({"instr":"_CAnnot)") + row.name + R"(_","in":)" + row.inputs + "}";
      nuvhost::Json wanted = {{"status", 0}, {"out", nuvhost::Json::array()}};
      if (*row.drawn != '\0') {
        wanted["annotations"] =
            nuvhost::Json::parse(WithFigures("[" + std::string(row.drawn) + "]"));
      }
      EXPECT_EQ(Exec(session, WithFigures(call)), wanted) << call;
    }
  }
  Exec(session, R"({"set":{"defaultColor":0}})");
}

TEST(Annotations, ColorsKeepTheirLowBits) {
  const std::pair<const char*, std::uint32_t> rows[] = {
      {"-0.9", 0},
      {"-1", 0xffffffffU},
      {"4294967295.5", 0xffffffffU},
      {"4294967301", 5},
      {"-4294967291", 5},
      {"9007199254740993", 0},
      {"9.3e18", 0},
      {"-1e300", 0},
      {"\"NaN\"", 0},
      {"\"Infinity\"", 0},
      {"2147483648", 0x80000000U},
  };
  nuvhost::ExecSession session(BuiltCatalogue());
  for (const auto& [color, passed] : rows) {
    const std::string call = R"({"instr":"_CAnnotPoint_","in":[[1 2],"",)";
    EXPECT_EQ(Exec(session, WithFigures(call + color + "]}"))["annotations"][0]["color"], passed)
        << color;
  }
}

}  // namespace
