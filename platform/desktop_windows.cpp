#include <windows.h>

#include <algorithm>

#include "platform/desktop.h"

namespace platform {

Keyboard::Keyboard() = default;

bool Keyboard::IsDown(std::int32_t key) const {
  return GetAsyncKeyState(key) < 0;
}

std::int32_t ShowMessageBox(const char* text, const char* caption, std::uint32_t style) {
  // A system without a desktop may also tell of failure by -1.
  return std::max(MessageBoxA(nullptr, text, caption, style), 0);
}

void Beep(std::uint32_t sound) {
  MessageBeep(sound);
}

}  // namespace platform
