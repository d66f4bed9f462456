// ParameterPairs: which parameter of one list is which of another.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "nuvhost/values/json_value.h"

namespace nuvhost {

/// The name by which a program refers to a parameter of a catalogue's JSON: without blanks at its
/// end; a nameless constant goes by its group.
std::string NameInPrograms(const Json& parameter);

/// A parameter by its positions in the two lists; one that was added or removed has only one.
struct ParameterPair {
  std::optional<std::size_t> before;
  std::optional<std::size_t> after;
};

/// Pairs parameters that have one name, at the same position first, and then those that are left
/// at the same position. In the order of the first list; what was added comes last.
std::vector<ParameterPair> PairParameters(const Json& before, const Json& after);

}  // namespace nuvhost
