// Setting, negating and combining booleans.

#include "plugin/instruction.h"

namespace formula {
namespace {

constexpr Definition Row(const char* name, const char* identifier, std::uint32_t help,
                         const char* description, bool repeatable, const char* result) {
  return {.category = "Boolean",
          .name = name,
          .identifier = identifier,
          .help = help,
          .description = description,
          .repeatable = repeatable,
          .inputs = {Boolean("bool", false)},
          .results = {Boolean(result)}};
}

}  // namespace

/// Copies the input value as it is, whatever its type.
struct CBooleanSet final : Instruction<CBooleanSet> {
  static constexpr Definition kDefinition =
      Row("SetBoolean", "_Nuv_Boolean_Set_", 460075, "Sets a boolean to the specified value", false,
          "output");
  static Status Run(Call& call) { return call.Set(0, call.Input(0)); }
};

struct CNot final : Instruction<CNot> {
  static constexpr Definition kDefinition =
      Row("NOT", "_Nuv_Boolean_Not_", 460076, "Boolean NOT", false, "negated input");
  static Status Run(Call& call) { return call.Set(0, !call.Boolean(0)); }
};

/// Inputs behind the first false one are not read.
struct CAnd final : Instruction<CAnd> {
  static constexpr Definition kDefinition =
      Row("AND", "_Nuv_Boolean_And_", 460077, "Boolean AND; true if all inputs are true", true,
          "and result");
  static Status Run(Call& call) {
    const std::int32_t count = call.Count();
    bool all = call.Boolean(0);
    for (std::int32_t i = 1; all && i < count; ++i) all = call.Boolean(i);
    return call.Set(0, all);
  }
};

/// Every input is read.
struct COr final : Instruction<COr> {
  static constexpr Definition kDefinition = Row(
      "OR", "_Nuv_Boolean_Or_", 460078, "Boolean OR; true if any input is true", true, "or result");
  static Status Run(Call& call) {
    const std::int32_t count = call.Count();
    bool any = call.Boolean(0);
    for (std::int32_t i = 1; i < count; ++i) any |= call.Boolean(i);
    return call.Set(0, any);
  }
};

/// Every input is read.
struct CXor final : Instruction<CXor> {
  static constexpr Definition kDefinition =
      Row("XOR", "_Nuv_Boolean_Xor_", 460079,
          "Boolean XOR; true if an odd number of inputs is true", true, "xor result");
  static Status Run(Call& call) {
    const std::int32_t count = call.Count();
    bool odd = call.Boolean(0);
    for (std::int32_t i = 1; i < count; ++i) odd ^= call.Boolean(i);
    return call.Set(0, odd);
  }
};

template IXInstrPlugin* NewInstruction<CBooleanSet>() noexcept;
template IXInstrPlugin* NewInstruction<CNot>() noexcept;
template IXInstrPlugin* NewInstruction<CAnd>() noexcept;
template IXInstrPlugin* NewInstruction<COr>() noexcept;
template IXInstrPlugin* NewInstruction<CXor>() noexcept;

}  // namespace formula
