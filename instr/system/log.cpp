// The application log.

#include "host/log.h"

#include "plugin/instruction.h"

namespace formula {

struct CLog final : Instruction<CLog> {
  static constexpr Definition kDefinition{
      .category = "IO: System",
      .name = "Log ",
      .identifier = "_Nuv_System_CLog_",
      .help = 460235,
      .description = "Logs a message in the application log",
      .constants = {{.type = NUV_PARAM_CHOICE,
                     .group = "Log level",
                     .description = "The level of severity: INFO or DEBUG",
                     .default_value = LEVEL_INFORMATION,
                     .choices = {{LEVEL_INFORMATION, "Information"}, {LEVEL_DEBUG, "Debug"}}}},
      .inputs = {Text("message", "The message to be logged")},
  };
  static Status Run(Call& call, const char* message) {
    const auto level = static_cast<LEVEL>(call.ConstantInteger(0));
    CNuvLog::Instance().Log(level, message);
    return Status::kSuccess;
  }
};

template struct Instructions<CLog>;

}  // namespace formula
