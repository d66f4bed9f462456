#include "nuvhost/reading/literals.h"

#include <numbers>

#include "nuvhost/error.h"
#include "nuvhost/values/json_value.h"

namespace nuvhost {
namespace {

bool IsReference(const Json& json) {
  return json.is_object() && (json.contains("step") || json.contains("data") ||
                              json.contains("expr") || json.contains("value"));
}

/// Instructions take a line's angle in radians, whatever the unit of other angles.
void TakeRadians(CNuvObject& value, NuvAngleUnit unit) {
  if (unit == NuvAngleUnit::kRadians) return;
  const auto turn = [](CNuvLine& line) { line.a = line.a * std::numbers::pi / 180.0; };
  if (value.GetType() == NUV_OBJ_LINE) turn(static_cast<CNuvLine&>(value));
  if (value.GetType() != NUV_OBJ_LINE_VECTOR) return;
  auto& lines = static_cast<CNuvLineVector&>(value);
  for (std::size_t i = 0; i < lines.Size(); ++i) turn(lines[i]);
}

}  // namespace

bool IsArray(std::uint32_t parameter_type) {
  return parameter_type >= NUV_PARAM_BOOLEAN_ARRAY;
}

std::uint32_t ArrayType(std::uint32_t scalar_type) {
  return scalar_type - NUV_PARAM_BOOLEAN + NUV_PARAM_BOOLEAN_ARRAY;
}

std::uint32_t ElementType(std::uint32_t array_type) {
  return array_type - NUV_PARAM_BOOLEAN_ARRAY + NUV_PARAM_BOOLEAN;
}

std::string WithArticle(std::uint32_t parameter_type) {
  const std::string text = Describe(parameter_type);
  return (std::string_view("aeiou").find(text[0]) == std::string_view::npos ? "a " : "an ") + text;
}

bool IsWrapped(const Json& json) {
  return json.is_object() && (json.contains("value") || json.contains("allowEmpty"));
}

CNuvObject ReadLiteral(Checker& checker, const Settings& settings, const Located& json,
                       std::uint32_t type, const std::string& what, bool allow_empty) {
  if (IsWrapped(*json)) {
    checker.IsObject(json, "a value", {"value", "allowEmpty"}, {"value"});
    const bool allows = checker.Boolean(json, "allowEmpty").value_or(allow_empty);
    const std::optional<Located> value = json.Find("value");
    if (!value) return CNuvObject();
    if (!IsWrapped(**value)) return ReadLiteral(checker, settings, *value, type, what, allows);
    checker.Complain(*value, "a value within a value");
    return CNuvObject();
  }
  const std::size_t limit = settings.max_array_elements;
  if (IsArray(type) && json->is_array() && limit != 0 && json->size() > limit) {
    checker.Complain(json, "{}: {} elements; \"maxArrayElements\" is {}", what, json->size(),
                     limit);
    return CNuvObject();
  }
  if (IsArray(type) && json->is_array() && json->empty() && !allow_empty) {
    checker.Complain(
        json, R"({}: no elements; where that is meant, write {{"value": [], "allowEmpty": true}})",
        what);
    return CNuvObject();
  }
  try {
    CNuvObject value = FromJson(*json, type);
    TakeRadians(value, settings.angle_unit);
    return value;
  } catch (const ValueError& error) {
    if (!IsArray(type) || !json->is_array()) checker.Complain(json, what + ": " + error.what());
  }
  for (const Located& element : json.Elements()) {
    try {
      FromJson(*element, ElementType(type));
    } catch (const ValueError& error) {
      checker.Complain(element, what + ": " +
                                    (IsReference(*element) ? "a list holds values, no references"
                                                           : error.what()));
    }
  }
  return CNuvObject();
}

}  // namespace nuvhost
