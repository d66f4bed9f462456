// Setting, negating and combining booleans.

#include "plugin/instruction.h"

namespace formula {
namespace {

/// What tells a function of booleans from its sisters.
struct BooleanRow {
  const char* name;
  const char* identifier;
  std::uint32_t help;
  const char* description;
  bool repeatable = false;
  const char* result;
};

constexpr Definition BooleanFunction(const BooleanRow& row) {
  return {.category = "Boolean",
          .name = row.name,
          .identifier = row.identifier,
          .help = row.help,
          .description = row.description,
          .repeatable = row.repeatable,
          .inputs = {Boolean("bool", false)},
          .results = {Boolean(row.result)}};
}

}  // namespace

/// Copies the input value as it is, whatever its type.
struct CBooleanSet final : Instruction<CBooleanSet> {
  static constexpr Definition kDefinition = BooleanFunction({
      .name = "SetBoolean",
      .identifier = "_Nuv_Boolean_Set_",
      .help = 460075,
      .description = "Sets a boolean to the specified value",
      .result = "output",
  });
  static Status Run(Call& call, const CNuvObject& value) { return call.Set(0, value); }
};

struct CNot final : Instruction<CNot> {
  static constexpr Definition kDefinition = BooleanFunction({
      .name = "NOT",
      .identifier = "_Nuv_Boolean_Not_",
      .help = 460076,
      .description = "Boolean NOT",
      .result = "negated input",
  });
  static Status Run(Call& call, bool value) { return call.Set(0, !value); }
};

/// Inputs behind the first false one are not read.
struct CAnd final : Instruction<CAnd> {
  static constexpr Definition kDefinition = BooleanFunction({
      .name = "AND",
      .identifier = "_Nuv_Boolean_And_",
      .help = 460077,
      .description = "Boolean AND; true if all inputs are true",
      .repeatable = true,
      .result = "and result",
  });
  static Status Run(Call& call, Repeated<bool> values) {
    bool all = values[0];
    for (std::int32_t i = 1; all && i < values.Size(); ++i) all = values[i];
    return call.Set(0, all);
  }
};

/// Every input is read.
struct COr final : Instruction<COr> {
  static constexpr Definition kDefinition = BooleanFunction({
      .name = "OR",
      .identifier = "_Nuv_Boolean_Or_",
      .help = 460078,
      .description = "Boolean OR; true if any input is true",
      .repeatable = true,
      .result = "or result",
  });
  static Status Run(Call& call, Repeated<bool> values) {
    bool any = values[0];
    for (std::int32_t i = 1; i < values.Size(); ++i) any |= values[i];
    return call.Set(0, any);
  }
};

/// Every input is read.
struct CXor final : Instruction<CXor> {
  static constexpr Definition kDefinition = BooleanFunction({
      .name = "XOR",
      .identifier = "_Nuv_Boolean_Xor_",
      .help = 460079,
      .description = "Boolean XOR; true if an odd number of inputs is true",
      .repeatable = true,
      .result = "xor result",
  });
  static Status Run(Call& call, Repeated<bool> values) {
    bool odd = values[0];
    for (std::int32_t i = 1; i < values.Size(); ++i) odd ^= values[i];
    return call.Set(0, odd);
  }
};

template struct Instructions<CBooleanSet, CNot, CAnd, COr, CXor>;

}  // namespace formula
