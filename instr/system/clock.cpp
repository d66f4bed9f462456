// The clock: milliseconds, date and time as texts, and a pause.

#include "platform/clock.h"

#include "host/integer.h"
#include "host/os.h"
#include "plugin/instruction.h"

namespace formula {
namespace {

/// Formats the local time that it is now; a picture that the system rejects fails.
Status SetNow(Call& call, decltype(&platform::FormatDate) format, const char* picture) {
  const std::optional<std::string> text = format(picture, platform::Now());
  return text ? call.Set(0, *text) : Status::kFailure;
}

}  // namespace

/// Kept: the identifier lacks the family's prefix and spells "Mili"; saved programs find the
/// instruction by it.
struct CGetMiliSecCount final : Instruction<CGetMiliSecCount> {
  static constexpr Definition kDefinition{
      .category = "IO: System",
      .name = "GetMilliSecCount",
      .identifier = "_GetMiliSecCount_",
      .help = 460160,
      .description = "Get system millisecond count",
      .results = {Number("count")},
  };
  static Status Run(Call& call) { return call.Set(0, CNuvOs::GetMSecTime()); }
};

struct CGetTimeDiff final : Instruction<CGetTimeDiff> {
  static constexpr Definition kDefinition{
      .category = "IO: System",
      .name = "GetTimeDiff",
      .identifier = "_Nuv_System_CGetTimeDiff_",
      .help = 460161,
      .description =
          "Returns the difference between the current time and a specified time - all in "
          "milliseconds.",
      .inputs = {Number("time in ms", 0.0)},
      .results = {Number("time difference")},
  };
  static Status Run(Call& call, double time) { return call.Set(0, CNuvOs::GetMSecTime() - time); }
};

struct CGetDate final : Instruction<CGetDate> {
  static constexpr Definition kDefinition{
      .category = "IO: System",
      .name = "GetDate",
      .identifier = "_Nuv_System_CGetDate_",
      .help = 460163,
      .description = "Returns the local date as a string in the format dd/mm/yy.",
      .results = {Text("date")},
  };
  static Status Run(Call& call) { return SetNow(call, platform::FormatDate, "dd/MM/yy"); }
};

struct CGetTime final : Instruction<CGetTime> {
  static constexpr Definition kDefinition{
      .category = "IO: System",
      .name = "GetTime",
      .identifier = "_Nuv_System_CGetTime_",
      .help = 460164,
      .description =
          "Returns the local time as a string in the format hh:mm:ss.Uses the 24 hour clock.",
      .results = {Text("time")},
  };
  static Status Run(Call& call) { return SetNow(call, platform::FormatTime, "HH:mm:ss"); }
};

struct CGetDateFormat final : Instruction<CGetDateFormat> {
  static constexpr Definition kDefinition{
      .category = "IO: System",
      .name = "GetDateFormat",
      .identifier = "_Nuv_System_CGetDateFormat_",
      .help = 460165,
      .description =
          "Returns the local date as a string in the format specified. See the help for more info.",
      .inputs = {Text("date format")},
      .results = {Text("formatted date")},
  };
  static Status Run(Call& call, const char* format) {
    return SetNow(call, platform::FormatDate, format);
  }
};

struct CGetTimeFormat final : Instruction<CGetTimeFormat> {
  static constexpr Definition kDefinition{
      .category = "IO: System",
      .name = "GetTimeFormat",
      .identifier = "_Nuv_System_CGetTimeFormat_",
      .help = 460166,
      .description =
          "Returns the local time as a string in the specified format. See the help for more info.",
      .inputs = {Text("time format")},
      .results = {Text("formatted time")},
  };
  static Status Run(Call& call, const char* format) {
    return SetNow(call, platform::FormatTime, format);
  }
};

/// Kept: only the low 32 bits of the count matter, so that -1 waits for ever; saved programs may
/// stop so.
struct CSleep final : Instruction<CSleep> {
  static constexpr Definition kDefinition{
      .category = "IO: System",
      .name = "Sleep",
      .identifier = "_Nuv_System_CSleep_",
      .help = 460167,
      .description = "Suspends execution for a given number of milliseconds.",
      .inputs = {Number("milliseconds", 0.0)},
  };
  static Status Run(Call& /*call*/, double milliseconds) {
    platform::Pause(NuvTruncateLow32(milliseconds));
    return Status::kSuccess;
  }
};

template struct Instructions<CGetMiliSecCount, CGetTimeDiff, CGetDate, CGetTime, CGetDateFormat,
                             CGetTimeFormat, CSleep>;

}  // namespace formula
