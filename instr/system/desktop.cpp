// Beeps, message boxes and events: what reaches the user or the controlling application.

#include "platform/desktop.h"

#include <limits>
#include <string>

#include "plugin/instruction.h"

namespace formula {
namespace {

constexpr std::uint32_t kSimpleBeep = 0xFFFFFFFF;

}  // namespace

/// The plain beep.
struct CSystemBeep final : Instruction<CSystemBeep> {
  static constexpr Definition kDefinition{
      .category = "IO: System",
      .name = "Beep",
      .identifier = "_Nuv_System_CSystemBeep_",
      .help = 460173,
      .description = "Beeps",
  };
  static Status Run(Call& /*call*/) {
    platform::Beep(kSimpleBeep);
    return Status::kSuccess;
  }
};

// Kept: the names of the next three end in a blank, by which saved programs know them.

/// Shows a message box and tells which button the user pressed, 0 where no box could be shown. The
/// keys of the choices are Win32's style bits.
struct CSystemMsgBox final : Instruction<CSystemMsgBox> {
  static constexpr Definition kDefinition{
      .category = "IO: System",
      .name = "Message Box ",
      .identifier = "_Nuv_System_CSystemMsgBox_",
      .help = 460213,
      .description =
          "Displays a message box and waits for the user to dismiss it pausing program execution "
          "in the meantime. The message box is application modal.\n"
          "Return values for the buttons are:\n"
          " 1 for OK\n"
          "2 for Cancel\n"
          "3 for Abort\n"
          "4 for Retry\n"
          "5 for Ignore\n"
          "6 for Yes\n"
          "7 for No",
      .constants =
          {{.type = NUV_PARAM_CHOICE,
            .group = "Message box",
            .name = "button(s)",
            .description = "The button(s) to be used with the message box",
            .choices = {{0, "OK"},
                        {1, "OK / Cancel"},
                        {5, "Retry / Cancel"},
                        {4, "Yes / No"},
                        {3, "Yes / No / Cancel"},
                        {2, "Abort / Retry / Ignore"}}},
           {.type = NUV_PARAM_CHOICE,
            .group = "Message box",
            .name = "icon",
            .description = "The icon to be used with the message box",
            .default_value = 64,
            .choices = {{64, "Information"}, {48, "Warning"}, {32, "Question"}, {16, "Error"}}},
           {.type = NUV_PARAM_CHOICE,
            .group = "Message box",
            .name = "default button",
            .description = "The default button",
            .choices = {{0, "Button 1"}, {256, "Button 2"}, {512, "Button 3"}}}},
      .inputs = {Text("title", "Message box's title", "Message Box instruction"),
                 Text("text", "Message box's text", "Press OK to continue")},
      .results = {Number("result")},
  };
  static Status Run(Call& call, std::string_view title, std::string_view text) {
    const std::int32_t style =
        call.ConstantInteger(0) | call.ConstantInteger(1) | call.ConstantInteger(2);
    const std::string caption = "Talvane - " + std::string(title);
    const std::string message(text);
    return call.Set(0, platform::ShowMessageBox(message.c_str(), caption.c_str(),
                                                static_cast<std::uint32_t>(style)));
  }
};

/// Starts one of the system's sounds. The keys are Win32's codes of them, but for the plain beep.
struct CSystemMsgBeep final : Instruction<CSystemMsgBeep> {
  static constexpr Definition kDefinition{
      .category = "IO: System",
      .name = "Message Beep ",
      .identifier = "_Nuv_System_CSystemMsgBeep_",
      .help = 460214,
      .description = "Generates the system sound for selected event.",
      .constants = {{.type = NUV_PARAM_CHOICE,
                     .group = "Message beep",
                     .name = "MB_OK",
                     .description = "The sound/beep type to be generated",
                     .choices = {{0, "System default"},
                                 {64, "System information"},
                                 {48, "System warning"},
                                 {32, "System question"},
                                 {16, "System error"},
                                 {128, "Simple beep"}}}},
  };
  static Status Run(Call& call) {
    const std::int32_t sound = call.ConstantInteger(0);
    platform::Beep(sound == 128 ? kSimpleBeep : static_cast<std::uint32_t>(sound));
    return Status::kSuccess;
  }
};

/// Calls the event handler of the application that controls the host.
struct CSystemGenerateProgramEvent final : Instruction<CSystemGenerateProgramEvent> {
  static constexpr Definition kDefinition{
      .category = "IO: System",
      .name = "Generate Engine Control Event ",
      .identifier = "_Nuv_System_CSystemGenerateProgramEvent_",
      .help = 460217,
      .description =
          "Generates an event call in Corvel Control (NuvEngCtrl.dll). This instruction will cause "
          "an event handler to be invoked in your VB/VC/C# program.",
      .constants = {{.name = "event id",
                     .has_range = true,
                     .minimum = std::numeric_limits<std::int32_t>::min(),
                     .maximum = std::numeric_limits<std::int32_t>::max()}},
  };
  static Status Run(Call& call) {
    constexpr std::int32_t kProgramEvent = 45;
    call.RaiseEvent(kProgramEvent, call.ConstantInteger(0));
    return Status::kSuccess;
  }
};

template struct Instructions<CSystemBeep, CSystemMsgBox, CSystemMsgBeep,
                             CSystemGenerateProgramEvent>;

}  // namespace formula
