// The environment of the host's process.

#include "platform/runtime.h"
#include "plugin/instruction.h"

namespace formula {
namespace {

/// Writes an array of texts; none leaves the result as it is.
Status SetTexts(Call& call, const std::vector<std::string>& texts) {
  if (texts.empty()) return Status::kSuccess;
  auto& result = call.ArrayResult<CNuvStringVector>(0);
  result.Resize(texts.size());
  for (std::size_t i = 0; i < texts.size(); ++i) result[i] = texts[i].c_str();
  return Status::kSuccess;
}

}  // namespace

struct CGetEnvVars final : Instruction<CGetEnvVars> {
  static constexpr Definition kDefinition{
      .category = "IO: System",
      .name = "GetEnvVars",
      .identifier = "_Nuv_System_CGetEnvVars_",
      .help = 460168,
      .description =
          "Returns an array of strings, each element containing a pair of the form "
          "ENV_VAR=string .",
      .results = {Texts("env vars")},
  };
  static Status Run(Call& call) { return SetTexts(call, platform::Environment()); }
};

/// An entry without a name before a "=" has the empty name.
struct CGetEnvNames final : Instruction<CGetEnvNames> {
  static constexpr Definition kDefinition{
      .category = "IO: System",
      .name = "GetEnvNames",
      .identifier = "_Nuv_System_CGetEnvNames_",
      .help = 460169,
      .description =
          "Returns an array of strings, each element containing the name of an environment "
          "variable.",
      .results = {Texts("env var names")},
  };
  static Status Run(Call& call) {
    std::vector<std::string> names = platform::Environment();
    for (std::string& name : names) {
      const std::size_t equals = name.find('=');
      name.resize(equals == std::string::npos ? 0 : equals);
    }
    return SetTexts(call, names);
  }
};

struct CGetEnv final : Instruction<CGetEnv> {
  static constexpr Definition kDefinition{
      .category = "IO: System",
      .name = "GetEnv",
      .identifier = "_Nuv_System_CGetEnv_",
      .help = 460170,
      .description = "Returns the value of the specified environment variable.",
      .inputs = {Text("env var name")},
      .results = {Text("env var value")},
  };
  static Status Run(Call& call, const char* name) {
    const std::optional<std::string> value = platform::FindVariable(name);
    return call.Set(0, value && !value->empty() ? *value : "Not found");
  }
};

/// An empty value removes the variable. A name that holds a "=" ends there.
struct CSetEnv final : Instruction<CSetEnv> {
  static constexpr Definition kDefinition{
      .category = "IO: System",
      .name = "SetEnv",
      .identifier = "_Nuv_System_CSetEnv_",
      .help = 460171,
      .description = "Sets the value of the specified environment variable.",
      .inputs = {Text("env var name"), Text("env var value")},
  };
  static Status Run(Call& /*call*/, std::string_view name, std::string_view value) {
    std::string assignment(name);
    assignment += '=';
    assignment += value;
    return platform::AssignVariable(assignment) ? Status::kSuccess : Status::kFailure;
  }
};

template struct Instructions<CGetEnvVars, CGetEnvNames, CGetEnv, CSetEnv>;

}  // namespace formula
