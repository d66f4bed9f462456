// Values as a person reads them.
#pragma once

#include <optional>
#include <string>

#include "host/nuv_object.h"
#include "host/setting.h"

namespace nuvhost {

/// A number with so many decimals, or with round-trip digits.
std::string NumberText(double number, std::optional<int> decimals = std::nullopt);
/// A value for a person: yes and no, a text as it is, an array by its first elements and its
/// size, lines' angles in a unit.
std::string ValueText(const CNuvObject& value, std::optional<int> decimals = std::nullopt,
                      NuvAngleUnit unit = NuvAngleUnit::kRadians);

}  // namespace nuvhost
