// CNuvLog: the application log.
#pragma once

#include "host/export.h"

/// How important a log entry is.
enum LEVEL : int {
  LEVEL_DEBUG = 1,
  LEVEL_INFORMATION = 2,
};

/// The log of the application, one for the process.
class NUV_LOG_API CNuvLog {
 public:
  /// Receives every entry in place of the standard error stream; must not throw.
  using Sink = void (*)(void* owner, LEVEL level, const char* text);

  static CNuvLog& Instance() noexcept;

  /// Appends one entry, a line in which line breaks of the text are shown as "\n" and "\r": to
  /// the file that the settings name (CNuvSetting), to standard error where they name none or
  /// that file cannot be written. A sink has the entry as it is, and the file has it too.
  void Log(LEVEL level, const char* text) noexcept;
  /// A null sink brings standard error back.
  void SetSink(Sink sink, void* owner) noexcept;

 private:
  Sink sink_ = nullptr;
  void* owner_ = nullptr;
};
