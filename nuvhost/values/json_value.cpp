#include "nuvhost/values/json_value.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "host/records.h"
#include "nuvhost/error.h"
#include "nuvhost/text/utf8.h"
#include "nuvhost/values/json_text.h"

namespace nuvhost {
namespace {

[[noreturn]] void Expected(const char* what, const Json& found) {
  throw ValueError("expected {}, found {}", what, DescribeKind(found));
}

double NumberFromJson(const Json& json, const char* what) {
  if (json.is_number()) return json.get<double>();
  if (json.is_string()) {
    const auto& text = json.get_ref<const std::string&>();
    if (text == "NaN") return std::numeric_limits<double>::quiet_NaN();
    if (text == "Infinity") return std::numeric_limits<double>::infinity();
    if (text == "-Infinity") return -std::numeric_limits<double>::infinity();
  }
  Expected(what, json);
}

bool BooleanFromJson(const Json& json) {
  if (!json.is_boolean()) Expected("true or false", json);
  return json.get<bool>();
}

std::string TextFromJson(const Json& json) {
  if (!json.is_string()) Expected("a text", json);
  return BytesFromUtf8(json.get_ref<const std::string&>());
}

/// The two numbers of {"x", "y"} or {"a", "d"}.
std::pair<double, double> PairFromJson(const Json& json, const char* first, const char* second,
                                       const char* what) {
  if (!json.is_object() || json.size() != 2 || !json.contains(first) || !json.contains(second)) {
    Expected(what, json);
  }
  return {NumberFromJson(json[first], "a number"), NumberFromJson(json[second], "a number")};
}

CNuvPoint PointFromJson(const Json& json) {
  const auto [x, y] = PairFromJson(json, "x", "y", "a point {\"x\", \"y\"}");
  return {x, y};
}

CNuvLine LineFromJson(const Json& json) {
  const auto [a, d] = PairFromJson(json, "a", "d", "a line {\"a\", \"d\"}");
  return CNuvLine(a, d);
}

template <class Vector, class ReadElement>
Vector ArrayFromJson(const Json& json, const char* what, ReadElement read) {
  if (!json.is_array()) Expected(what, json);
  Vector array;
  array.Resize(json.size());
  for (std::size_t i = 0; i < json.size(); ++i) {
    try {
      array[i] = read(json[i]);
    } catch (const ValueError& error) {
      throw ValueError("element {}: {}", i, error.what());
    }
  }
  return array;
}

template <class Vector, class ElementToJson>
Json ArrayToJson(const Vector& array, ElementToJson to_json) {
  Json list = Json::array();
  for (std::size_t i = 0; i < array.Size(); ++i) list.push_back(to_json(array[i]));
  return list;
}

Json PointToJson(const CNuvPoint& point) {
  return {{"x", NumberToJson(point.x)}, {"y", NumberToJson(point.y)}};
}

Json LineToJson(const CNuvLine& line) {
  return {{"a", NumberToJson(line.a)}, {"d", NumberToJson(line.d)}};
}

Json StringToJson(const CNuvString& text) {
  return Utf8FromBytes(static_cast<const char*>(text));
}

Json PointsToJson(const CNuvPointVector& points) {
  return ArrayToJson(points, PointToJson);
}

template <class Value>
const Value& As(const CNuvObject& object) {
  return static_cast<const Value&>(*object.Get());
}

/// Adds an annotation's operation and the members of its figure.
struct FigureToJson {
  Json& json;

  void operator()(const PointFigure& f) const {
    json["op"] = "point";
    json["location"] = PointToJson(f.location);
  }
  void operator()(const SegmentFigure& f) const {
    json["op"] = "segment";
    json["start"] = PointToJson(f.start);
    json["end"] = PointToJson(f.end);
  }
  void operator()(const LineFigure& f) const {
    json["op"] = "line";
    json["line"] = LineToJson(f.line);
  }
  void operator()(const CircleFigure& f) const {
    json["op"] = "circle";
    json["center"] = PointToJson({f.circle.x, f.circle.y});
    json["radius"] = NumberToJson(f.circle.radius);
    json["fill"] = f.fill;
  }
  void operator()(const CirclesFigure& f) const {
    json["op"] = "circles";
    json["points"] = PointsToJson(f.centers);
    json["radius"] = NumberToJson(f.radius);
    json["fill"] = f.fill;
  }
  void operator()(const RectFigure& f) const {
    json["op"] = "rect";
    json["center"] = PointToJson({f.rect.x, f.rect.y});
    json["width"] = NumberToJson(f.rect.width);
    json["height"] = NumberToJson(f.rect.height);
    json["angle"] = NumberToJson(f.rect.angle);
    json["fill"] = f.fill;
  }
  void operator()(const PointsFigure& f) const {
    json["op"] = "points";
    json["points"] = PointsToJson(f.points);
  }
  void operator()(const TextFigure& f) const {
    json["op"] = "text";
    json["location"] = PointToJson(f.location);
    json["font"] = Utf8FromBytes(f.font);
    json["paintBackground"] = f.paint_background;
  }
  void operator()(const PolylineFigure& f) const {
    json["op"] = "polyline";
    json["points"] = PointsToJson(f.points);
  }
  void operator()(const PixelsFigure& f) const {
    json["op"] = "pixels";
    json["points"] = PointsToJson(f.points);
  }
};

}  // namespace

Json ParseJson(std::string_view text) {
  const std::size_t zero = text.find('\0');
  if (zero != std::string_view::npos) {  // the parser would take it for the end
    const std::string_view before = text.substr(0, zero);
    throw ValueError("parse error at line {}, column {}: a zero byte",
                     std::ranges::count(before, '\n') + 1, zero - (before.rfind('\n') + 1) + 1);
  }
  if (const auto excess = FindExcess(text)) throw ValueError(excess->what);
  try {
    return Json::parse(text);
  } catch (const Json::exception& error) {
    // Without the library's own prefix, "[json.exception.parse_error.101] ".
    const std::string_view what = error.what();
    const std::size_t end = what.find("] ");
    throw ValueError(std::string(end == std::string_view::npos ? what : what.substr(end + 2)));
  }
}

std::string Dump(const Json& json) {
  return json.dump();
}

// A whole number is written without a fraction, but for the negative zero, which would lose its
// sign.
Json NumberToJson(double number) {
  if (std::isnan(number)) return "NaN";
  if (std::isinf(number)) return number > 0 ? "Infinity" : "-Infinity";
  constexpr double kExact = 9007199254740992.0;  // 2^53
  if (std::fabs(number) < kExact && number == std::trunc(number) &&
      !(number == 0.0 && std::signbit(number))) {
    return static_cast<std::int64_t>(number);
  }
  return number;
}

Json TextToJson(const char* text) {
  if (text == nullptr) return nullptr;
  return Utf8FromBytes(text);
}

Json ToJson(const CNuvObject& value) {
  switch (value.GetType()) {
    case NUV_OBJ_EMPTY: return nullptr;
    case NUV_OBJ_BOOL: return static_cast<bool>(value);
    case NUV_OBJ_DOUBLE: return NumberToJson(static_cast<double>(value));
    case NUV_OBJ_STRING: return StringToJson(As<CNuvString>(value));
    case NUV_OBJ_POINT: return PointToJson(As<CNuvPoint>(value));
    case NUV_OBJ_LINE: return LineToJson(As<CNuvLine>(value));
    case NUV_OBJ_CIRCLE: {
      const auto& circle = As<CNuvCircle>(value);
      return {{"x", NumberToJson(circle.x)},
              {"y", NumberToJson(circle.y)},
              {"radius", NumberToJson(circle.radius)}};
    }
    case NUV_OBJ_RECT: {
      const auto& rect = As<CNuvRect>(value);
      return {{"x", NumberToJson(rect.x)},
              {"y", NumberToJson(rect.y)},
              {"width", NumberToJson(rect.width)},
              {"height", NumberToJson(rect.height)},
              {"angle", NumberToJson(rect.angle)}};
    }
    case NUV_OBJ_BOOL_VECTOR:
      return ArrayToJson(As<CNuvBoolVector>(value), [](bool b) { return Json(b); });
    case NUV_OBJ_DOUBLE_VECTOR: return ArrayToJson(As<CNuvDoubleVector>(value), NumberToJson);
    case NUV_OBJ_STRING_VECTOR: return ArrayToJson(As<CNuvStringVector>(value), StringToJson);
    case NUV_OBJ_POINT_VECTOR: return PointsToJson(As<CNuvPointVector>(value));
    case NUV_OBJ_LINE_VECTOR: return ArrayToJson(As<CNuvLineVector>(value), LineToJson);
  }
  return nullptr;
}

Json ToJson(const Annotation& annotation) {
  Json json;
  std::visit(FigureToJson{json}, annotation.figure);
  json["label"] = annotation.label ? Json(Utf8FromBytes(*annotation.label)) : Json(nullptr);
  json["color"] = annotation.color;
  return json;
}

Annotation AnnotationFromJson(const Json& json) {
  const auto point = [&](const char* name) { return PointFromJson(json.at(name)); };
  const auto points = [&] {
    return ArrayFromJson<CNuvPointVector>(json.at("points"), "a list of points", PointFromJson);
  };
  const auto number = [&](const char* name) { return NumberFromJson(json.at(name), "a number"); };
  const auto fill = [&] { return json.at("fill").get<bool>(); };
  Annotation annotation;
  if (!json.at("label").is_null()) annotation.label = TextFromJson(json.at("label"));
  annotation.color = json.at("color").get<std::uint32_t>();
  const auto& op = json.at("op").get_ref<const std::string&>();
  if (op == "point") {
    annotation.figure = PointFigure{point("location")};
  } else if (op == "segment") {
    annotation.figure = SegmentFigure{point("start"), point("end")};
  } else if (op == "line") {
    annotation.figure = LineFigure{LineFromJson(json.at("line"))};
  } else if (op == "circle") {
    const CNuvPoint center = point("center");
    annotation.figure = CircleFigure{CNuvCircle(center.x, center.y, number("radius")), fill()};
  } else if (op == "circles") {
    annotation.figure = CirclesFigure{points(), number("radius"), fill()};
  } else if (op == "rect") {
    const CNuvPoint center = point("center");
    annotation.figure = RectFigure{
        CNuvRect(center.x, center.y, number("width"), number("height"), number("angle")), fill()};
  } else if (op == "points") {
    annotation.figure = PointsFigure{points()};
  } else if (op == "text") {
    annotation.figure = TextFigure{point("location"), TextFromJson(json.at("font")),
                                   json.at("paintBackground").get<bool>()};
  } else if (op == "polyline") {
    annotation.figure = PolylineFigure{points()};
  } else if (op == "pixels") {
    annotation.figure = PixelsFigure{points()};
  } else {
    throw ValueError("unknown annotation " + Dump(json.at("op")));
  }
  return annotation;
}

CNuvObject FromJson(const Json& json, std::uint32_t parameter_type) {
  CNuvObject value;
  switch (parameter_type) {
    case NUV_PARAM_BOOLEAN: value = BooleanFromJson(json); break;
    case NUV_PARAM_INTEGER:
    case NUV_PARAM_CHOICE: value = IntegerFromJson(json); break;
    case NUV_PARAM_NUMBER: value = NumberFromJson(json, "a number"); break;
    case NUV_PARAM_STRING: value = TextFromJson(json).c_str(); break;
    case NUV_PARAM_POINT: value = PointFromJson(json); break;
    case NUV_PARAM_LINE: value = LineFromJson(json); break;
    case NUV_PARAM_BOOLEAN_ARRAY:
      value = ArrayFromJson<CNuvBoolVector>(json, "a list of booleans", BooleanFromJson);
      break;
    case NUV_PARAM_NUMBER_ARRAY:
      value = ArrayFromJson<CNuvDoubleVector>(json, "a list of numbers", [](const Json& element) {
        return NumberFromJson(element, "a number");
      });
      break;
    case NUV_PARAM_STRING_ARRAY:
      value = ArrayFromJson<CNuvStringVector>(json, "a list of texts", TextFromJson);
      break;
    case NUV_PARAM_POINT_ARRAY:
      value = ArrayFromJson<CNuvPointVector>(json, "a list of points", PointFromJson);
      break;
    case NUV_PARAM_LINE_ARRAY:
      value = ArrayFromJson<CNuvLineVector>(json, "a list of lines", LineFromJson);
      break;
    default: throw ValueError("unknown parameter type " + std::to_string(parameter_type));
  }
  return value;
}

std::int32_t IntegerFromJson(const Json& json) {
  const double number = NumberFromJson(json, "a whole number");
  if (number != std::trunc(number)) Expected("a whole number", json);
  if (!(std::fabs(number) < 2147483648.0 || number == -2147483648.0)) {
    throw ValueError("expected a whole number of 32 bits, found " + Dump(json));
  }
  return static_cast<std::int32_t>(number);
}

const char* Describe(std::uint32_t parameter_type) {
  switch (parameter_type) {
    case NUV_PARAM_BOOLEAN: return "boolean";
    case NUV_PARAM_INTEGER: return "integer";
    case NUV_PARAM_NUMBER: return "number";
    case NUV_PARAM_STRING: return "text";
    case NUV_PARAM_POINT: return "point";
    case NUV_PARAM_LINE: return "line";
    case NUV_PARAM_CHOICE: return "choice";
    case NUV_PARAM_BOOLEAN_ARRAY: return "array of booleans";
    case NUV_PARAM_NUMBER_ARRAY: return "array of numbers";
    case NUV_PARAM_STRING_ARRAY: return "array of texts";
    case NUV_PARAM_POINT_ARRAY: return "array of points";
    case NUV_PARAM_LINE_ARRAY: return "array of lines";
    default: return "unknown type";
  }
}

std::string DescribeKind(const Json& json) {
  if (json.is_null()) return "null";
  if (json.is_boolean()) return "a boolean";
  if (json.is_number()) return "the number " + Dump(json);
  if (json.is_string()) return "a text";
  if (json.is_array()) return "a list";
  return "an object";
}

}  // namespace nuvhost
