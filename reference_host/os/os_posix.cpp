#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "host/os.h"
#include "reference_host/os/error_text.h"

namespace {

/// An open file that closes itself and leaves errno alone.
class File {
 public:
  File(const char* path, int flags, mode_t mode = 0) noexcept
      : File(open(path, flags | O_CLOEXEC | O_NONBLOCK, mode)) {}
  /// Takes an open descriptor over; a negative one is a file that could not be opened.
  explicit File(int descriptor) noexcept : descriptor_(descriptor) {}
  File(const File&) = delete;
  File& operator=(const File&) = delete;
  ~File() {
    const int error = errno;
    Close();
    errno = error;
  }

  bool IsOpen() const noexcept { return descriptor_ >= 0; }
  int Descriptor() const noexcept { return descriptor_; }
  /// A disk may tell only now that it is full.
  bool Close() noexcept {
    const int descriptor = descriptor_;
    descriptor_ = -1;
    return descriptor < 0 || close(descriptor) == 0;
  }

 private:
  int descriptor_;
};

/// Whether a file with content of its own is open: no folder, device or pipe.
bool IsPlainFile(const File& file, struct stat& status) noexcept {
  if (!file.IsOpen() || fstat(file.Descriptor(), &status) != 0) return false;
  if (S_ISREG(status.st_mode)) return true;
  errno = S_ISDIR(status.st_mode) ? EISDIR : EACCES;
  return false;
}

bool WriteAll(const File& file, const char* bytes, ssize_t count) noexcept {
  while (count > 0) {
    const ssize_t written = write(file.Descriptor(), bytes, static_cast<std::size_t>(count));
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return false;
    bytes += written;
    count -= written;
  }
  return true;
}

bool CopyContent(const File& from, const File& to) noexcept {
  std::array<char, 65536> block;
  while (true) {
    const ssize_t count = read(from.Descriptor(), block.data(), block.size());
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return count == 0;
    if (!WriteAll(to, block.data(), count)) return false;
  }
}

/// Deletes a file that came to nothing, and keeps the reason.
bool Abandon(const char* path) noexcept {
  const int error = errno;
  unlink(path);
  errno = error;
  return false;
}

/// Gives a file the content of another: it is copied beside and then takes the file's place, owner
/// and mode, so that a disk that gets full loses nothing. The path is absolute and leads through no
/// link.
bool Replace(const File& source, const char* path, const struct stat& status) noexcept {
  constexpr char kName[] = "nuv-copy-XXXXXX";
  std::array<char, PATH_MAX + sizeof kName> beside = {};
  const auto folder = static_cast<std::size_t>(std::strrchr(path, '/') + 1 - path);
  std::memcpy(beside.data(), path, folder);
  std::memcpy(beside.data() + folder, kName, sizeof kName);
  File copy(mkostemp(beside.data(), O_CLOEXEC));
  if (!copy.IsOpen()) return false;
  // Some file systems know neither owner nor mode.
  static_cast<void>(fchown(copy.Descriptor(), status.st_uid, status.st_gid) == 0);
  static_cast<void>(fchmod(copy.Descriptor(), status.st_mode & 07777) == 0);
  if (CopyContent(source, copy) && copy.Close() && std::rename(beside.data(), path) == 0) {
    return true;
  }
  return Abandon(beside.data());
}

}  // namespace

bool CNuvOs::FileExists(const char* path) noexcept {
  struct stat status;
  return stat(path, &status) == 0 && !S_ISDIR(status.st_mode);
}

bool CNuvOs::FileCopy(const char* from, const char* to, bool fail_if_exists) noexcept {
  const File source(from, O_RDONLY);
  struct stat status;
  if (!IsPlainFile(source, status)) return false;
  struct stat existing;
  const bool is_seen = stat(to, &existing) == 0;
  const bool is_new = !is_seen && errno == ENOENT;
  if (!fail_if_exists && is_seen && existing.st_dev == status.st_dev &&
      existing.st_ino == status.st_ino) {
    errno = EBUSY;  // there is nothing to copy
    return false;
  }
  File target(to, O_WRONLY | O_CREAT | (fail_if_exists ? O_EXCL : 0), status.st_mode & 0777);
  if (!target.IsOpen()) return false;
  if (fail_if_exists) {
    return (CopyContent(source, target) && target.Close()) || Abandon(to);
  }
  std::array<char, PATH_MAX> path;
  if (realpath(to, path.data()) == nullptr) return false;
  return (IsPlainFile(target, existing) && Replace(source, path.data(), existing)) ||
         (is_new && Abandon(path.data()));
}

bool CNuvOs::FileMove(const char* from, const char* to) noexcept {
  // A file may be moved to where it is.
  const unsigned flags = std::strcmp(from, to) == 0 ? 0 : RENAME_NOREPLACE;
  if (renameat2(AT_FDCWD, from, AT_FDCWD, to, flags) == 0) return true;
  if (errno == EINVAL || errno == ENOSYS) {  // the file system cannot rename so
    struct stat status;
    if (lstat(to, &status) == 0) {
      errno = EEXIST;
      return false;
    }
    if (std::rename(from, to) == 0) return true;
  }
  if (errno != EXDEV || !FileCopy(from, to, true)) return false;
  return unlink(from) == 0;
}

std::string ErrorText(std::uint32_t code) {
  switch (code) {
    case 2: return "There is no such file.";
    case 3: return "There is no such folder.";
    case 4: return "Too many files are open.";
    case 5: return "The access was refused.";
    case 8: return "There is not enough memory.";
    case 17: return "The two names lie on different disks.";
    case 19: return "The disk is write-protected.";
    case 31: return "A device does not work.";
    case 32: return "The file is in use.";
    case 80:
    case 183: return "A file or folder of this name exists.";
    case 87: return "The system takes no such name.";
    case 112: return "The disk is full.";
    case 123: return "The name is not valid.";
    case 145: return "The folder is not empty.";
    case 161: return "The path is not valid.";
    case 206: return "The name is too long.";
    case 223: return "The file is too large.";
    case 1117: return "The disk could not be read or written.";
    case 1142: return "The file has too many links.";
    case 1223: return "The user cancelled it.";
    case 1921: return "The name leads through too many links.";
    default: return {};
  }
}
