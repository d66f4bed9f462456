#include <dlfcn.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string>
#include <string_view>

#include "platform/desktop.h"
#include "platform/x_display.h"

namespace platform {
namespace {

/// Whether a text is UTF-8: no byte out of place, no character written longer than it need be.
bool IsUtf8(std::string_view text) {
  for (std::size_t i = 0; i < text.size();) {
    const auto byte = [&](std::size_t at) {
      return at < text.size() ? static_cast<unsigned char>(text[at]) : 0U;
    };
    const unsigned lead = byte(i);
    const unsigned length = lead < 0x80   ? 1
                            : lead < 0xC2 ? 0
                            : lead < 0xE0 ? 2
                            : lead < 0xF0 ? 3
                            : lead < 0xF5 ? 4
                                          : 0;
    if (length == 0) return false;
    for (unsigned k = 1; k < length; ++k) {
      if ((byte(i + k) & 0xC0U) != 0x80) return false;
    }
    const unsigned second = byte(i + 1);
    if ((lead == 0xE0 && second < 0xA0) || (lead == 0xED && second >= 0xA0) ||
        (lead == 0xF0 && second < 0x90) || (lead == 0xF4 && second >= 0x90)) {
      return false;
    }
    i += length;
  }
  return true;
}

/// The characters of Windows-1252 from 0x80 to 0x9F; above, it is Latin-1.
constexpr std::array<std::uint16_t, 32> kWindows1252 = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

/// A text of 8-bit characters as UTF-8, which it may be already.
std::string ToUtf8(std::string_view text) {
  if (IsUtf8(text)) return std::string(text);
  std::string utf8;
  for (const char character : text) {
    const auto byte = static_cast<unsigned char>(character);
    const unsigned code = byte >= 0x80 && byte < 0xA0 ? kWindows1252[byte - 0x80] : byte;
    if (code < 0x80) {
      utf8 += character;
      continue;
    }
    if (code < 0x800) {
      utf8 += static_cast<char>(0xC0 | code >> 6);
    } else {
      utf8 += static_cast<char>(0xE0 | code >> 12);
      utf8 += static_cast<char>(0x80 | (code >> 6 & 0x3FU));
    }
    utf8 += static_cast<char>(0x80 | (code & 0x3FU));
  }
  return utf8;
}

// What is used of SDL 2.

struct SdlButton {
  std::uint32_t flags;
  int id;
  const char* text;
};
constexpr std::uint32_t kEnterPresses = 1, kEscapePresses = 2;

struct SdlMessageBox {
  std::uint32_t flags;
  void* window;
  const char* title;
  const char* message;
  int button_count;
  const SdlButton* buttons;
  const void* colors;
};
constexpr std::uint32_t kError = 0x10, kWarning = 0x20, kInformation = 0x40, kLeftToRight = 0x80;

/// Shows a box and waits; 0 for success, with the button's id, -1 where the box was closed.
using SdlShow = int (*)(const SdlMessageBox* box, int* id);

/// Null where SDL is not installed.
SdlShow FindSdlShow() {
  // It keeps data for each thread, which outlive this library: it must stay.
  static void* library = dlopen("libSDL2-2.0.so.0", RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
  return library == nullptr ? nullptr
                            : reinterpret_cast<SdlShow>(dlsym(library, "SDL_ShowMessageBox"));
}

struct Button {
  const char* label;
  int code;
};
constexpr Button kOk{"OK", 1}, kCancel{"Cancel", 2}, kAbort{"Abort", 3}, kRetry{"Retry", 4},
    kIgnore{"Ignore", 5}, kYes{"Yes", 6}, kNo{"No", 7};

/// The buttons of a style, and the code for Escape; 0 for none.
struct ButtonSet {
  std::size_t count;
  std::array<Button, 3> buttons;
  int escape;
};
constexpr ButtonSet kButtonSets[] = {
    {1, {kOk}, 1},
    {2, {kOk, kCancel}, 2},
    {3, {kAbort, kRetry, kIgnore}, 0},
    {3, {kYes, kNo, kCancel}, 2},
    {2, {kYes, kNo}, 0},
    {2, {kRetry, kCancel}, 2},
};

std::uint32_t Icon(std::uint32_t style) {
  switch (style & 0xF0U) {
    case 0x10: return kError;
    case 0x30: return kWarning;
    default: return kInformation;  // SDL has none for a question
  }
}

}  // namespace

Keyboard::Keyboard() : down_(XDisplay::Inst().KeysDown()) {}

bool Keyboard::IsDown(std::int32_t key) const {
  return down_.test(static_cast<std::size_t>(key));
}

std::int32_t ShowMessageBox(const char* text, const char* caption, std::uint32_t style) {
  const std::size_t kind = style & 0xFU;
  if (kind >= std::size(kButtonSets) || !XDisplay::Inst().IsThere()) return 0;
  const SdlShow show = FindSdlShow();
  if (show == nullptr) return 0;

  const ButtonSet& set = kButtonSets[kind];
  const std::size_t wanted = style >> 8 & 0xFU;
  const std::size_t enter = wanted < set.count ? wanted : 0;
  std::array<SdlButton, 3> buttons{};
  for (std::size_t i = 0; i < set.count; ++i) {
    const Button& button = set.buttons[i];
    buttons[i] = {
        (i == enter ? kEnterPresses : 0) | (button.code == set.escape ? kEscapePresses : 0),
        button.code, button.label};
  }
  const std::string title = ToUtf8(caption);
  const std::string message = ToUtf8(text);
  const SdlMessageBox box{
      Icon(style) | kLeftToRight,  nullptr,        title.c_str(), message.c_str(),
      static_cast<int>(set.count), buttons.data(), nullptr};
  do {
    int pressed = 0;
    if (show(&box, &pressed) != 0) return 0;
    if (pressed > 0) return pressed;
    // Closed by its window's button. Where that is no answer, the box comes back.
  } while (set.escape == 0 && XDisplay::Inst().IsThere());
  return set.escape;
}

void Beep(std::uint32_t) {
  XDisplay::Inst().RingBell();
}

}  // namespace platform
