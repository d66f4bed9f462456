// Comparisons of two numbers. Each is false where a number is NaN.

#include <cmath>
#include <limits>

#include "plugin/instruction.h"

namespace formula {
namespace {

/// How far two numbers may lie apart and still count as equal, whatever their size.
constexpr double kEpsilon = std::numeric_limits<double>::epsilon();

/// What tells a comparison from its sisters.
struct ComparisonRow {
  const char* name;
  const char* identifier;
  std::uint32_t help;
  const char* description;
  const char* result;
};

constexpr Definition Comparison(const ComparisonRow& row) {
  return {.category = "Numeric",
          .name = row.name,
          .identifier = row.identifier,
          .help = row.help,
          .description = row.description,
          .inputs = {Number("n1", 0.0), Number("n2", 0.0)},
          .results = {Boolean(row.result)}};
}

}  // namespace

struct CGreater final : Instruction<CGreater> {
  static constexpr Definition kDefinition = Comparison({
      .name = "Greater",
      .identifier = "_Nuv_Numeric_CGreater_",
      .help = 460124,
      .description = "Returns true if n1 > n2, false otherwise.",
      .result = "n1 > n2",
  });
  static Status Run(Call& call, double n1, double n2) { return call.Set(0, n1 > n2); }
};

struct CGreaterOrEqual final : Instruction<CGreaterOrEqual> {
  static constexpr Definition kDefinition = Comparison({
      .name = "GreaterOrEq",
      .identifier = "_Nuv_Numeric_CGreaterOrEqual_",
      .help = 460125,
      .description = "Returns true if n1 >= n2, false otherwise.",
      .result = "n1 >= n2",
  });
  static Status Run(Call& call, double n1, double n2) { return call.Set(0, n1 >= n2); }
};

struct CLess final : Instruction<CLess> {
  static constexpr Definition kDefinition = Comparison({
      .name = "Less",
      .identifier = "_Nuv_Numeric_CLess_",
      .help = 460126,
      .description = "Returns true if n1 < n2, false otherwise.",
      .result = "n1 < n2",
  });
  static Status Run(Call& call, double n1, double n2) { return call.Set(0, n1 < n2); }
};

struct CLessOrEqual final : Instruction<CLessOrEqual> {
  static constexpr Definition kDefinition = Comparison({
      .name = "LessOrEq",
      .identifier = "_Nuv_Numeric_CLessOrEqual_",
      .help = 460127,
      .description = "Returns true if n1 <= n2, false otherwise.",
      .result = "n1 <= n2",
  });
  static Status Run(Call& call, double n1, double n2) { return call.Set(0, n1 <= n2); }
};

/// Two infinities of one sign are not equal: their difference is NaN.
struct CEqual final : Instruction<CEqual> {
  static constexpr Definition kDefinition = Comparison({
      .name = "Eq",
      .identifier = "_Nuv_Numeric_CEqual_",
      .help = 460128,
      .description = "Returns true if n1 == n2, false otherwise.",
      .result = "n1 == n2",
  });
  static Status Run(Call& call, double n1, double n2) {
    return call.Set(0, std::fabs(n1 - n2) <= kEpsilon);
  }
};

/// Not the opposite of "Eq" where the difference is NaN: both are false then.
struct CNotEqual final : Instruction<CNotEqual> {
  static constexpr Definition kDefinition = Comparison({
      .name = "NotEq",
      .identifier = "_Nuv_Numeric_CNotEqual_",
      .help = 460129,
      .description = "Returns true if n1 != n2, false otherwise.",
      .result = "n1 != n2",
  });
  static Status Run(Call& call, double n1, double n2) {
    return call.Set(0, std::fabs(n1 - n2) > kEpsilon);
  }
};

template struct Instructions<CGreater, CGreaterOrEqual, CLess, CLessOrEqual, CEqual, CNotEqual>;

}  // namespace formula
