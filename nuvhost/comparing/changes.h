// Changes: what is different between two catalogues of instructions, and which saved programs that
// breaks.
//
// A host stores of a program each step's instruction, by its identifier and its position in the
// catalogue, the values of its constants, and what its inputs and results are connected to, by
// position. It stores no names. A program of nuvhost names instructions, parameters and choices,
// or gives parameters by position, and leaves out what has its default.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "nuvhost/values/json_value.h"

namespace nuvhost {

/// A parameter by the list it is in, "inputs", and its position and name: the former ones, unless
/// it was added.
struct ParameterPlace {
  std::string list;
  std::size_t position;
  std::string name;
};

struct Change {
  enum class Class { kText, kCompatible, kBreaking };

  std::string identifier;  ///< of the instruction
  std::string name;        ///< its display name, the former one unless it was added
  std::optional<ParameterPlace> parameter = std::nullopt;  ///< else the instruction itself
  std::string field = {};     ///< a member of the catalogue's JSON, "position", or "choices[KEY]";
                              ///< empty where all of it was added or removed
  Json before = {};           ///< null where it was added
  Json after = {};            ///< null where it was removed
  bool breaks_hosts = false;  ///< programs that hosts saved
  bool breaks_programs = false;  ///< programs of nuvhost
  bool is_text = false;          ///< it is only shown to people, apart from what it breaks

  Class GetClass() const;
  bool IsAddition() const { return field.empty() && before.is_null(); }
  bool IsRemoval() const { return field.empty() && after.is_null(); }
};

/// All changes between two catalogues as ReadCatalogue gives them, in the former one's order with
/// the added instructions last. Instructions are the same that have the same identifier.
std::vector<Change> Compare(const Json& before, const Json& after);

}  // namespace nuvhost
