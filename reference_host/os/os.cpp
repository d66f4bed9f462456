#include "host/os.h"

#include <chrono>
#include <cstring>

#if defined(_WIN32)
#include <windows.h>
#else
#include <fcntl.h>
#include <sys/sendfile.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <string>
#endif

double CNuvOs::GetMSecTime() noexcept {
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  return std::chrono::duration<double, std::milli>(now).count();
}

void* CNuvOs::Memset(void* target, int value, std::size_t count) noexcept {
  return std::memset(target, value, count);
}

void* CNuvOs::Memcpy(void* target, const void* source, std::size_t count) noexcept {
  return std::memcpy(target, source, count);
}

#if defined(_WIN32)

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

void CNuvOsError::GetErrorMsg(std::uint32_t code, CStdStr& text) {
  char buffer[512];
  DWORD length = FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                code, 0, buffer, sizeof buffer, nullptr);
  while (length > 0 && (buffer[length - 1] == '\n' || buffer[length - 1] == '\r')) --length;
  text = std::string_view(buffer, length);
}

#else

namespace {

/// An open file that closes itself and leaves errno alone.
class File {
 public:
  File(const char* path, int flags, mode_t mode = 0) noexcept
      : descriptor_(open(path, flags, mode)) {}
  File(const File&) = delete;
  File& operator=(const File&) = delete;
  ~File() {
    const int error = errno;
    if (descriptor_ >= 0) close(descriptor_);
    errno = error;
  }
  bool IsOpen() const noexcept { return descriptor_ >= 0; }
  int Descriptor() const noexcept { return descriptor_; }

 private:
  int descriptor_;
};

bool CopyContent(const File& from, const File& to, off_t size) noexcept {
  while (size > 0) {
    const ssize_t sent =
        sendfile(to.Descriptor(), from.Descriptor(), nullptr, static_cast<std::size_t>(size));
    if (sent < 0) return false;
    if (sent == 0) break;
    size -= sent;
  }
  return true;
}

}  // namespace

bool CNuvOs::FileExists(const char* path) noexcept {
  struct stat status;
  return stat(path, &status) == 0 && !S_ISDIR(status.st_mode);
}

bool CNuvOs::FileCopy(const char* from, const char* to, bool fail_if_exists) noexcept {
  const File source(from, O_RDONLY | O_CLOEXEC);
  struct stat status;
  if (!source.IsOpen() || fstat(source.Descriptor(), &status) != 0) return false;
  if (S_ISDIR(status.st_mode)) {
    errno = EISDIR;
    return false;
  }
  struct stat existing;
  if (stat(to, &existing) == 0 && existing.st_dev == status.st_dev &&
      existing.st_ino == status.st_ino) {
    errno = EEXIST;  // truncating the target would empty the source
    return false;
  }
  const int creation = O_WRONLY | O_CREAT | O_CLOEXEC | (fail_if_exists ? O_EXCL : O_TRUNC);
  const File target(to, creation, status.st_mode & 0777);
  if (!target.IsOpen()) return false;
  if (CopyContent(source, target, status.st_size)) return true;
  const int error = errno;
  unlink(to);
  errno = error;
  return false;
}

bool CNuvOs::FileMove(const char* from, const char* to) noexcept {
  struct stat status;
  if (lstat(to, &status) == 0) {
    errno = EEXIST;
    return false;
  }
  if (std::rename(from, to) == 0) return true;
  if (errno != EXDEV || !FileCopy(from, to, true)) return false;
  return unlink(from) == 0;
}

void CNuvOsError::GetErrorMsg(std::uint32_t code, CStdStr& text) {
  text = "Error " + std::to_string(code);
}

#endif
