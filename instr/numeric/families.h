// What the members of the numeric families share, once.
#pragma once

#include "plugin/instruction.h"

namespace formula {

/// What tells a function of one number from its sisters.
struct NumberFunctionRow {
  const char* category = "Numeric";
  const char* name;
  const char* identifier;
  std::uint32_t help;
  const char* description;
  const char* input = "number";
  const char* result;
};

constexpr Definition NumberFunction(const NumberFunctionRow& row) {
  return {.category = row.category,
          .name = row.name,
          .identifier = row.identifier,
          .help = row.help,
          .description = row.description,
          .inputs = {Number(row.input, 0.0)},
          .results = {Number(row.result)}};
}

}  // namespace formula
