#include <windows.h>
// windows.h comes first.
#include <shellapi.h>
#include <shlobj.h>

#include <cstring>

#include "platform/files.h"

namespace platform {

ErrorCode LastFileError(const char* /*from*/, const char* /*to*/) {
  return GetLastError();
}

ErrorCode RemoveFile(const char* name) {
  return DeleteFileA(name) != 0 ? 0 : GetLastError();
}

ErrorCode CreateFolders(const char* name) {
  return static_cast<ErrorCode>(SHCreateDirectoryExA(nullptr, name, nullptr));
}

bool RemoveFolder(const char* name) {
  const std::size_t length = std::strlen(name);
  if (length == 0 || length > kLongestFolderName) return false;
  // Wine's shell empties the current folder where a relative name makes too long a path.
  const DWORD full_length = GetFullPathNameA(name, 0, nullptr, nullptr);
  if (full_length == 0 || full_length > MAX_PATH) return false;
  char list[kLongestFolderName + 2] = {};  // a list of names, closed by an empty one
  std::memcpy(list, name, length);
  SHFILEOPSTRUCTA operation{};
  operation.wFunc = FO_DELETE;
  operation.pFrom = list;
  operation.fFlags = FOF_SILENT | FOF_NOCONFIRMATION | FOF_NOERRORUI;
  return SHFileOperationA(&operation) == 0;
}

std::optional<DiskSpace> FindDiskSpace(const char* path) noexcept {
  ULARGE_INTEGER free;
  ULARGE_INTEGER total;
  const char* asked = *path == '\0' ? nullptr : path;
  if (GetDiskFreeSpaceExA(asked, &free, &total, nullptr) == 0) return std::nullopt;
  return DiskSpace{.free = free.QuadPart, .total = total.QuadPart};
}

}  // namespace platform
