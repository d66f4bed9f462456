// CNuvOs and CNuvOsError: the host's operating-system helpers.
#pragma once

#include <cstddef>
#include <cstdint>

#include "host/export.h"
#include "host/std_str.h"

/// Helpers around files, memory and the clock. A file helper that returns false leaves the
/// reason where the system keeps it: the last error on Windows, errno elsewhere.
class NUV_OS_API CNuvOs {
 public:
  /// Whether a file, not a folder, stands at the path.
  static bool FileExists(const char* path) noexcept;
  static bool FileCopy(const char* from, const char* to, bool fail_if_exists) noexcept;
  /// Fails where something else stands at `to`.
  static bool FileMove(const char* from, const char* to) noexcept;
  /// Milliseconds since an arbitrary start, never going back.
  static double GetMSecTime() noexcept;
  static void* Memset(void* target, int value, std::size_t count) noexcept;
  static void* Memcpy(void* target, const void* source, std::size_t count) noexcept;
};

class NUV_OS_API CNuvOsError {
 public:
  /// Writes the system's message for a Win32 error code, without a line break at its end; for a
  /// code that has none, "Error" and the code.
  static void GetErrorMsg(std::uint32_t code, CStdStr& text);
};
