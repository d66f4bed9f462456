// The families of the numeric instructions: what their members share stands here, once.
#pragma once

#include "plugin/instruction.h"

namespace formula {

/// A function of one number. A member states its row and `Of`, which gives a double or a 32-bit
/// integer.
template <class I>
struct NumberFunction : Instruction<I> {
  static constexpr Definition Row(const char* name, const char* identifier, std::uint32_t help,
                                  const char* description, const char* result,
                                  const char* input = "number") {
    return {.category = "Numeric",
            .name = name,
            .identifier = identifier,
            .help = help,
            .description = description,
            .inputs = {Number(input, 0.0)},
            .results = {Number(result)}};
  }
  static Status Run(Call& call) { return call.Set(0, I::Of(call.Number(0))); }
};

/// A function of two numbers. A member states its Definition and `Of`.
template <class I>
struct TwoNumberFunction : Instruction<I> {
  static Status Run(Call& call) { return call.Set(0, I::Of(call.Number(0), call.Number(1))); }
};

/// A comparison of two numbers. A member states its row and `Of`.
template <class I>
struct Comparison : TwoNumberFunction<I> {
  static constexpr Definition Row(const char* name, const char* identifier, std::uint32_t help,
                                  const char* description, const char* result) {
    return {.category = "Numeric",
            .name = name,
            .identifier = identifier,
            .help = help,
            .description = description,
            .inputs = {Number("n1", 0.0), Number("n2", 0.0)},
            .results = {Boolean(result)}};
  }
};

}  // namespace formula
