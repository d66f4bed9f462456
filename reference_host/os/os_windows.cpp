#include <windows.h>

#include "host/os.h"
#include "reference_host/os/error_text.h"

bool CNuvOs::FileExists(const char* path) noexcept {
  const DWORD attributes = GetFileAttributesA(path);
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

bool CNuvOs::FileCopy(const char* from, const char* to, bool fail_if_exists) noexcept {
  return CopyFileA(from, to, fail_if_exists ? TRUE : FALSE) != 0;
}

bool CNuvOs::FileMove(const char* from, const char* to) noexcept {
  return MoveFileA(from, to) != 0;
}

std::string ErrorText(std::uint32_t code) {
  char buffer[512];
  DWORD length = FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                code, 0, buffer, sizeof buffer, nullptr);
  while (length > 0 &&
         (buffer[length - 1] == '\n' || buffer[length - 1] == '\r' || buffer[length - 1] == ' ')) {
    --length;
  }
  return {buffer, length};
}
