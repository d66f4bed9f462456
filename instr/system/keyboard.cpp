// Tests of the keys that are held down at this moment.

#include <algorithm>
#include <array>
#include <cstdio>
#include <limits>
#include <string_view>

#include "platform/desktop.h"
#include "plugin/instruction.h"

namespace formula {
namespace {

constexpr const char* kKeyCode =
    "A numeric virtual-key code between 1 and 255; mouse buttons not accepted";

/// The left, the right and the middle mouse button.
/// Kept: the extra mouse buttons, 5 and 6, are taken for keys, since saved programs test them.
bool IsMouseButton(std::int32_t key) {
  return key == 1 || key == 2 || key == 4;
}

/// The whole number at the start of a text as the C runtime's atoi reads it: behind blanks, with
/// or without a sign, 0 where there is none. What does not fit gives the nearest that does.
std::int32_t LeadingInteger(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(" \t\n\v\f\r"), text.size()));
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  using Limits = std::numeric_limits<std::int32_t>;
  std::int64_t value = 0;
  for (const char digit : text) {
    if (digit < '0' || digit > '9') break;
    value = value * 10 + (digit - '0');
    if (value > Limits::max()) return negative ? Limits::min() : Limits::max();
  }
  return static_cast<std::int32_t>(negative ? -value : value);
}

Status TestKey(Call& call, std::int32_t key) {
  if (key >= 1 && key <= 255 && !IsMouseButton(key)) {
    return call.Set(0, platform::Keyboard().IsDown(key));
  }
  std::array<char, 128> text;
  std::snprintf(
      text.data(), text.size(),
      "Invalid key value: %d. Must be between 1 and 255 and not a mouse button virtual-key", key);
  return call.Fail("Test one key", text.data());
}

}  // namespace

/// Whether the key of a code is down. A code that is out of range or a mouse button's is an error.
struct CNuvKbdTestOneKey final : Instruction<CNuvKbdTestOneKey> {
  static constexpr Definition kDefinition{
      .category = "IO: Keyboard",
      .name = "Test one key (number)",
      .identifier = "_Nuv_TestOneKey_",
      .help = 460199,
      .description = "Tests for a specific key press",
      .inputs = {Number("key code", 0.0, kKeyCode)},
      .results = {Boolean("pressed")},
  };
  static Status Run(Call& call, Truncated key) { return TestKey(call, key); }
};

/// The same for a code written at the start of a text.
struct CNuvKbdTestOneKeyStr final : Instruction<CNuvKbdTestOneKeyStr> {
  static constexpr Definition kDefinition{
      .category = "IO: Keyboard",
      .name = "Test one key (string)",
      .identifier = "_Nuv_TestOneKeyStr_",
      .help = 460201,
      .description = "Tests for a specific key press",
      .inputs = {Text("key code", kKeyCode, "0")},
      .results = {Boolean("pressed")},
  };
  static Status Run(Call& call, std::string_view text) {
    return TestKey(call, LeadingInteger(text));
  }
};

/// The lowest code of the keys that are down, mouse buttons left out.
struct CNuvKbdTestAnyKey final : Instruction<CNuvKbdTestAnyKey> {
  // Kept: the identifier says "Char", and the name of the code tells what belongs in its
  // description; saved programs know both.
  static constexpr Definition kDefinition{
      .category = "IO: Keyboard",
      .name = "Test any key",
      .identifier = "_Nuv_TestAnyChar_",
      .help = 460200,
      .description = "Tests for any key press",
      .results = {Boolean("pressed"), Number("virtual-key code; mouse buttons not accepted")},
  };
  static Status Run(Call& call) {
    const platform::Keyboard keyboard;
    std::int32_t key = 0;
    while (key <= 255 && !(keyboard.IsDown(key) && !IsMouseButton(key))) ++key;
    const bool pressed = key <= 255;
    call.Set(0, pressed);
    return call.Set(1, pressed ? static_cast<double>(key) : 0.0);
  }
};

template struct Instructions<CNuvKbdTestOneKey, CNuvKbdTestOneKeyStr, CNuvKbdTestAnyKey>;

}  // namespace formula
