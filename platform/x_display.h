// XDisplay: the X display that the environment names, as far as keys and the bell go.
#pragma once

#include <bitset>
#include <memory>
#include <mutex>

#include "platform/x_key_map.h"

struct xcb_connection_t;

namespace platform {

/// One connection for the process, made when it is first needed and again after a display has
/// died. Any thread may use it. It works by the XCB library, loaded at run time: unlike Xlib that
/// has no handlers for the whole process, and does not end the process when a display dies.
class XDisplay {
 public:
  static XDisplay& Inst();

  XDisplay(const XDisplay&) = delete;
  XDisplay& operator=(const XDisplay&) = delete;

  /// Whether there is a display.
  bool IsThere();
  /// The keys and mouse buttons that are down, by Win32's virtual-key codes; none without a
  /// display.
  std::bitset<256> KeysDown();
  void RingBell();

 private:
  struct Disconnect {
    void operator()(xcb_connection_t* connection) const;
  };

  XDisplay() = default;
  ~XDisplay() = default;
  /// Makes the connection where none lives, and brings the key map up to date.
  bool Connect();
  void Explore();
  void ReadKeyMap();

  std::mutex mutex_;
  std::unique_ptr<xcb_connection_t, Disconnect> connection_;
  std::uint32_t root_ = 0;         // the window that is the whole screen
  std::uint8_t input_opcode_ = 0;  // of the extension for input devices; 0 without it
  KeyMap key_map_{};
};

}  // namespace platform
