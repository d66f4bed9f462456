// Win32 virtual-key codes for the keys of an X keyboard.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace platform {

/// What a key is called: its code, and its code while Num Lock is on. 0 for none.
struct KeyCodes {
  std::uint8_t code = 0;
  std::uint8_t num_lock_code = 0;
};

/// By the number that X gives to the key.
using KeyMap = std::array<KeyCodes, 256>;

/// Reads the keyboard mapping of an X server: for each key from `first` on a row of `columns`
/// symbols, level by level. A key goes by its symbols, so that A is where the user's layout has
/// it. One of the writing keys whose symbols have no code, such as a national letter, goes by its
/// place on a US keyboard, or as VK_OEM_8 where another key has that code.
KeyMap MakeKeyMap(std::span<const std::uint32_t> symbols, std::size_t columns, std::size_t first);

}  // namespace platform
