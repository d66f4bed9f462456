// Values as JSON, in one form for every command.
//
// Booleans are true and false; numbers have round-trip digits, with "NaN", "Infinity" and
// "-Infinity" as texts; a text has one character U+0000 to U+00FF for each byte; a point is
// {"x", "y"}, a line {"a", "d"}; arrays are lists; the empty value is null.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "host/nuv_object.h"
#include "reference_host/services/services.h"

namespace nuvhost {

/// Keeps members in the order they were written.
using Json = nlohmann::ordered_json;

/// Parses one JSON text; throws ValueError for broken JSON and for what exceeds a limit
/// (json_text.h).
Json ParseJson(std::string_view text);

/// One line; texts must be valid UTF-8, as all that this header makes are.
std::string Dump(const Json& json);

Json NumberToJson(double number);
Json TextToJson(const char* text);  ///< null for a null pointer
Json ToJson(const CNuvObject& value);
Json ToJson(const Annotation& annotation);

/// Reads a value by a parameter's declared type; throws ValueError for a value of another kind.
CNuvObject FromJson(const Json& json, std::uint32_t parameter_type);
/// An annotation as ToJson makes it.
Annotation AnnotationFromJson(const Json& json);
/// A whole number that fits 32 bits; throws ValueError.
std::int32_t IntegerFromJson(const Json& json);

/// "a number", "an array of points": a parameter's type for people.
const char* Describe(std::uint32_t parameter_type);
/// "a text", "a list": what a JSON value is, for people.
std::string DescribeKind(const Json& json);

}  // namespace nuvhost
