#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include "nuvhost/system/system_file.h"

namespace nuvhost {

namespace fs = std::filesystem;

namespace {

HANDLE Open(const fs::path& path, DWORD access) {
  return CreateFileW(path.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                     nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
}

/// Has the system delete an open file when it is closed, however the process ends; or keep it.
void SetDeletion(std::FILE* file, bool is_deleted) {
  FILE_DISPOSITION_INFO disposition{};
  disposition.DeleteFile = is_deleted ? TRUE : FALSE;
  const auto handle = reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(file)));
  SetFileInformationByHandle(handle, FileDispositionInfo, &disposition, sizeof disposition);
}

}  // namespace

std::error_code LastError() {
  return {static_cast<int>(GetLastError()), std::system_category()};
}

std::optional<Identity> IdentityOf(const fs::path& path) {
  const HANDLE file = Open(path, 0);
  if (file == INVALID_HANDLE_VALUE) return std::nullopt;
  BY_HANDLE_FILE_INFORMATION found;
  const bool is_known = GetFileInformationByHandle(file, &found) != 0;
  CloseHandle(file);
  if (!is_known) return std::nullopt;
  return Identity{found.dwVolumeSerialNumber,
                  std::uint64_t{found.nFileIndexHigh} << 32 | found.nFileIndexLow};
}

fs::path Resolved(fs::path path) {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) {
    return path;
  }
  const HANDLE file = Open(path, 0);
  if (file == INVALID_HANDLE_VALUE) return path;
  std::wstring name(32768, L'\0');
  name.resize(GetFinalPathNameByHandleW(file, name.data(), static_cast<DWORD>(name.size()), 0));
  CloseHandle(file);
  return name.empty() ? path : fs::path(name);
}

fs::path::string_type FoldedName(const fs::path& path) {
  std::wstring name = path.filename().native();
  CharLowerBuffW(name.data(), static_cast<DWORD>(name.size()));
  return name;
}

Existing Look(const fs::path& path) {
  Existing found;
  const DWORD attributes = GetFileAttributesW(path.c_str());
  found.exists = attributes != INVALID_FILE_ATTRIBUTES;
  if (!found.exists) return found;
  if ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
    found.refusal = "it is a folder";
  } else if ((attributes & FILE_ATTRIBUTE_READONLY) != 0) {
    found.refusal = "the file is read-only";
  } else if (const HANDLE file = Open(path, GENERIC_WRITE); file != INVALID_HANDLE_VALUE) {
    CloseHandle(file);
  } else {
    found.refusal = "the file there cannot be written; another program may have it open";
  }
  return found;
}

std::FILE* Create(const fs::path& path, const Existing& /*replaced*/) {
  const HANDLE handle = CreateFileW(path.c_str(), GENERIC_WRITE | DELETE, 0, nullptr, CREATE_NEW,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
  if (handle == INVALID_HANDLE_VALUE) return nullptr;
  const int descriptor = _open_osfhandle(reinterpret_cast<std::intptr_t>(handle), _O_BINARY);
  std::FILE* file = descriptor < 0 ? nullptr : _fdopen(descriptor, "wb");
  if (file == nullptr) {
    CloseHandle(handle);
    DeleteFileW(path.c_str());
    SetLastError(ERROR_TOO_MANY_OPEN_FILES);
  } else {
    SetDeletion(file, true);
  }
  return file;
}

std::FILE* Append(const fs::path& path) {
  return _wfopen(path.c_str(), L"abN");
}

bool ReachesDisk(std::FILE* file) {
  if (std::fflush(file) != 0 || _commit(_fileno(file)) != 0) return false;
  SetDeletion(file, false);
  return true;
}

// The first call keeps what the system knows of the file that was there, if there is one.
bool Replace(const fs::path& from, const fs::path& to) {
  return ReplaceFileW(to.c_str(), from.c_str(), nullptr, REPLACEFILE_IGNORE_MERGE_ERRORS, nullptr,
                      nullptr) != 0 ||
         MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING) != 0;
}

// The system sees to it, by SetDeletion.
void RemoveOnSignals() {}
void RemoveOnSignal(const fs::path* /*part*/) {}
void KeepOnSignal(const fs::path* /*part*/) {}

}  // namespace nuvhost
