#include "nuvhost/values/value_text.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <numbers>

#include "nuvhost/text/utf8.h"
#include "nuvhost/values/json_value.h"

namespace nuvhost {
namespace {

constexpr std::size_t kShownElements = 4;

/// A text as it is, unless that would spoil the lines around it or not be seen.
std::string PlainText(std::string_view bytes) {
  const std::string text = Utf8FromBytes(bytes);
  const bool has_control = std::ranges::any_of(
      bytes, [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; });
  return text.empty() || has_control ? Dump(Json(text)) : text;
}

/// An angle in degrees, to 15 digits: the next ones are those of pi's own error, and 30 degrees
/// shall read 30.
double Degrees(double radians) {
  const double degrees = radians * 180.0 / std::numbers::pi;
  return std::strtod(fmt::format("{:.15g}", degrees).c_str(), nullptr);
}

template <class Vector, class ElementText>
std::string ArrayText(const CNuvObject& value, ElementText element_text) {
  const auto& array = static_cast<const Vector&>(*value.Get());
  std::string text = "[";
  for (std::size_t i = 0; i < std::min(array.Size(), kShownElements); ++i) {
    text += (i == 0 ? "" : ", ") + element_text(array[i]);
  }
  if (array.Size() <= kShownElements) return text + "]";
  return fmt::format("{}, ...] {} elements", text, array.Size());
}

}  // namespace

std::string NumberText(double number, std::optional<int> decimals) {
  const Json json = NumberToJson(number);
  if (json.is_string()) return json.get<std::string>();
  if (!decimals) return Dump(json);
  char digits[400];  // the largest number has 309 digits before the point
  const auto [end, error] = std::to_chars(std::begin(digits), std::end(digits), number,
                                          std::chars_format::fixed, *decimals);
  return {std::begin(digits), end};
}

std::string ValueText(const CNuvObject& value, std::optional<int> decimals, NuvAngleUnit unit) {
  const auto number = [&](double n) { return NumberText(n, decimals); };
  const auto point = [&](const CNuvPoint& p) {
    return "(" + number(p.x) + ", " + number(p.y) + ")";
  };
  const auto line = [&](const CNuvLine& l) {
    return "a " + number(unit == NuvAngleUnit::kDegrees ? Degrees(l.a) : l.a) + ", d " +
           number(l.d);
  };
  const auto boolean = [](bool b) { return std::string(b ? "yes" : "no"); };
  switch (value.GetType()) {
    case NUV_OBJ_BOOL: return boolean(static_cast<bool>(value));
    case NUV_OBJ_DOUBLE: return number(static_cast<double>(value));
    case NUV_OBJ_STRING: return PlainText(static_cast<const char*>(value));
    case NUV_OBJ_POINT: return point(static_cast<const CNuvPoint&>(*value.Get()));
    case NUV_OBJ_LINE: return line(static_cast<const CNuvLine&>(*value.Get()));
    case NUV_OBJ_BOOL_VECTOR: return ArrayText<CNuvBoolVector>(value, boolean);
    case NUV_OBJ_DOUBLE_VECTOR: return ArrayText<CNuvDoubleVector>(value, number);
    case NUV_OBJ_STRING_VECTOR:
      return ArrayText<CNuvStringVector>(
          value, [](const char* s) { return Dump(Json(Utf8FromBytes(s))); });
    case NUV_OBJ_POINT_VECTOR: return ArrayText<CNuvPointVector>(value, point);
    case NUV_OBJ_LINE_VECTOR:
      return ArrayText<CNuvLineVector>(value,
                                       [&](const CNuvLine& l) { return "(" + line(l) + ")"; });
    default: return Dump(ToJson(value));
  }
}

}  // namespace nuvhost
