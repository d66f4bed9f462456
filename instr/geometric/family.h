// What the geometric instructions have in common.
#pragma once

#include <cstdint>

#include "plugin/definition.h"
#include "host/instr_plugin.h"

namespace formula {

constexpr Definition Geometric(const char* name, const char* identifier, std::uint32_t help,
                               const char* description, ConstantList<Parameter, 8> inputs,
                               ConstantList<Parameter, 16> results) {
  return {.category = "Geometric",
          .name = name,
          .identifier = identifier,
          .help = help,
          .description = description,
          .inputs = inputs,
          .results = results};
}

/// The same with a last input that may be given any number of times.
constexpr Definition GeometricRepeated(const char* name, const char* identifier, std::uint32_t help,
                                       const char* description, ConstantList<Parameter, 8> inputs,
                                       ConstantList<Parameter, 16> results) {
  Definition row = Geometric(name, identifier, help, description, inputs, results);
  row.repeatable = true;
  return row;
}

/// The status for what a geometry routine says: whether there is an answer.
constexpr Status StatusOf(bool answered) {
  return answered ? Status::kSuccess : Status::kFailure;
}

}  // namespace formula
