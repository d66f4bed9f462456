// Values written in JSON, checked at their places.
#pragma once

#include "nuvhost/reading/checker.h"
#include "nuvhost/reading/program.h"

namespace nuvhost {

bool IsArray(std::uint32_t parameter_type);
/// A scalar type's array type, and the other way round.
std::uint32_t ArrayType(std::uint32_t scalar_type);
std::uint32_t ElementType(std::uint32_t array_type);
/// "a number", "an array of points".
std::string WithArticle(std::uint32_t parameter_type);

/// Whether an object is {"value": ..., "allowEmpty": ...}, a value of which more is said.
bool IsWrapped(const Json& json);

/// Reads a value of a type, for what `what` names, under the program's settings: a line's angle is
/// in their unit. A list without elements is a mistake unless `allow_empty` or the value says that
/// it is meant. After a mistake the value is of no use.
CNuvObject ReadLiteral(Checker& checker, const Settings& settings, const Located& json,
                       std::uint32_t type, const std::string& what, bool allow_empty = false);

}  // namespace nuvhost
