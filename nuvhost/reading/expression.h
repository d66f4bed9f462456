// Expressions: "(rim.diameter - bore) * scale / 2" as the steps that compute it, one for each
// operator.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "nuvhost/error.h"
#include "nuvhost/reading/program.h"

namespace nuvhost {

/// What is wrong with an expression, and at which byte of it; an empty text where that is told
/// elsewhere.
struct ExpressionError : ValueError {
  ExpressionError(std::size_t place, const std::string& text) : ValueError(text), at(place) {}
  std::size_t at;
};

/// A part of an expression: a value, data or a step's result, and its parameter type.
struct Operand {
  Argument argument;
  std::uint32_t type = NUV_PARAM_NUMBER;
};

/// A name in an expression, and the one behind its dot.
struct ExpressionName {
  std::string name;
  std::string part;  ///< empty for none
  std::size_t at;
  std::size_t part_at;
};

/// What a name stands for; throws ExpressionError.
using ResolveName = std::function<Operand(const ExpressionName& name)>;

/// Reads an expression. The steps for its operators go to the end of `steps`, in the order in which
/// they run; each `generated` is a copy of the given one with the operator at the end of its
/// origin. Throws ExpressionError; `steps` is then of no use.
Operand ReadExpression(std::string_view text, const Catalogue& catalogue,
                       const ResolveName& resolve, const Generated& generated,
                       std::vector<Step>& steps);

/// A step that gives an operand, which is no step's result, as its own.
Step ValueStep(const Operand& operand, const Catalogue& catalogue, const Generated& generated);

}  // namespace nuvhost
