// The desktop before the user: keys, message boxes and beeps.
//
// On Windows these are the functions of user32. Elsewhere they are the X display that the
// environment names, if there is one; the libraries that this takes are loaded when they are first
// needed, and where they or the display are missing nobody is there: no key is down, no box is
// answered, nothing beeps.
#pragma once

#include <bitset>
#include <cstdint>

namespace platform {

/// Which keys are down, by Win32 virtual-key codes: 1, 2, 4, 5 and 6 are the mouse's buttons.
class Keyboard {
 public:
  /// Asks the system for all keys at once, where it answers so.
  Keyboard();
  /// Whether a key from 0 to 255 is down.
  bool IsDown(std::int32_t key) const;

 private:
  std::bitset<256> down_;  // left empty where the system is asked key by key
};

/// Shows a message box and waits for the user's answer. The texts are 8-bit; `style` is made of
/// Win32's MB_ bits. Returns Win32's code of the button pressed: 1 OK, 2 Cancel, 3 Abort, 4 Retry,
/// 5 Ignore, 6 Yes, 7 No; 0 where no box could be shown. Escape and closing the window give
/// Cancel, or OK where that is the only button; other boxes can only be answered.
std::int32_t ShowMessageBox(const char* text, const char* caption, std::uint32_t style);

/// Starts the sound for one of Win32's MB_ICON codes, or the plain beep for 0xFFFFFFFF. A desktop
/// other than Windows has its bell for all of them.
void Beep(std::uint32_t sound);

}  // namespace platform
