#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <cerrno>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/files.h"

namespace platform {
namespace {

/// An open folder, which closes itself.
class Folder {
 public:
  /// Takes an open descriptor over; a negative one is a folder that could not be opened.
  explicit Folder(int descriptor) noexcept
      : stream_(descriptor < 0 ? nullptr : fdopendir(descriptor)) {
    if (descriptor >= 0 && stream_ == nullptr) close(descriptor);
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;
  ~Folder() {
    if (stream_ != nullptr) closedir(stream_);
  }

  bool IsOpen() const noexcept { return stream_ != nullptr; }
  int Descriptor() const noexcept { return dirfd(stream_); }
  /// Adds the names of all that it holds; false where they cannot be read.
  bool ReadNames(std::vector<std::string>& names) const {
    while (true) {
      errno = 0;
      const dirent* entry = readdir(stream_);
      if (entry == nullptr) return errno == 0;
      const std::string_view name = entry->d_name;
      if (name != "." && name != "..") names.emplace_back(name);
    }
  }

 private:
  DIR* stream_;
};

/// A name without the slashes at its end, the root's own aside.
std::string_view Trimmed(std::string_view name) {
  while (name.size() > 1 && name.back() == '/') name.remove_suffix(1);
  return name;
}

/// The folder of what a trimmed name names; empty where that is the current one.
std::string_view FolderOf(std::string_view name) {
  const std::size_t slash = name.rfind('/');
  return slash == std::string_view::npos ? std::string_view() : Trimmed(name.substr(0, slash + 1));
}

/// Whether it is the folder that is missing, where the file is; an empty name has none.
bool FolderIsMissing(std::string_view name) {
  if (name.empty()) return true;
  const std::string folder(FolderOf(Trimmed(name)));
  struct stat status;
  return !folder.empty() && stat(folder.c_str(), &status) != 0;
}

ErrorCode CodeOf(int error) {
  switch (error) {
    case 0: return 0;
    case ENOENT: return kFileNotFound;
    case ENOTDIR: return kPathNotFound;
    case EMFILE:
    case ENFILE: return 4;
    case EACCES:
    case EPERM:
    case EISDIR: return 5;
    case ENOMEM: return 8;
    case EXDEV: return 17;
    case EROFS: return 19;
    case EBUSY:
    case ETXTBSY: return 32;
    case EEXIST: return kFileExists;
    case EINVAL: return 87;
    case ENOSPC:
    case EDQUOT: return 112;
    case EILSEQ: return 123;
    case ENOTEMPTY: return 145;
    case ENAMETOOLONG: return kNameTooLong;
    case EFBIG: return 223;
    case EIO: return 1117;
    case EMLINK: return 1142;
    case ELOOP: return 1921;
    default: return 31;  // a device that does not work
  }
}

/// Makes a folder and its missing parents, and gives errno's number.
int MakeFolder(std::string_view name) {
  const std::string path(name);
  if (mkdir(path.c_str(), 0777) == 0) return 0;
  const int error = errno;
  const std::string_view parent = FolderOf(name);
  if (error != ENOENT || parent.empty() || parent == name) return error;
  const int parent_error = MakeFolder(parent);
  if (parent_error != 0 && parent_error != EEXIST) return parent_error;
  return mkdir(path.c_str(), 0777) == 0 ? 0 : errno;
}

/// What a folder is, whatever it is called.
struct Identity {
  dev_t device;
  ino_t number;
  bool operator==(const Identity&) const = default;
};

std::optional<Identity> IdentityOf(const Folder& folder) {
  struct stat status;
  if (fstat(folder.Descriptor(), &status) != 0) return std::nullopt;
  return Identity{status.st_dev, status.st_ino};
}

bool IsRoot(const Identity& folder) {
  struct stat root;
  return stat("/", &root) != 0 || folder == Identity{root.st_dev, root.st_ino};
}

/// Opens a folder within another, by a descriptor that no link leads to.
std::unique_ptr<Folder> OpenWithin(int folder, const char* name) {
  return std::make_unique<Folder>(
      openat(folder, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
}

/// A folder on the way down, and what is still to be deleted in it.
struct Level {
  Identity identity;
  std::vector<std::string> names;
};

/// Deletes all that a folder holds. It goes down and up the tree by names and "..", with two
/// folders open at a time, so that neither depth nor descriptors run out; and it goes up only into
/// the folder that it came from.
bool Empty(std::unique_ptr<Folder> folder) {
  std::unique_ptr<Folder>
      above;  // the folder that this one was entered from, as long as it is open
  std::vector<Level> way;
  const auto enter = [&] {
    const auto identity = folder->IsOpen() ? IdentityOf(*folder) : std::nullopt;
    if (!identity || IsRoot(*identity)) return false;
    way.push_back({*identity, {}});
    return folder->ReadNames(way.back().names);  // all of them, before one is deleted
  };
  if (!enter()) return false;
  while (true) {
    std::vector<std::string>& names = way.back().names;
    if (names.empty()) {
      way.pop_back();
      if (way.empty()) return true;
      folder =
          above != nullptr ? std::exchange(above, nullptr) : OpenWithin(folder->Descriptor(), "..");
      if (!folder->IsOpen() || IdentityOf(*folder) != way.back().identity) return false;
      if (unlinkat(folder->Descriptor(), way.back().names.back().c_str(), AT_REMOVEDIR) != 0) {
        return false;
      }
      way.back().names.pop_back();
    } else if (unlinkat(folder->Descriptor(), names.back().c_str(), 0) == 0) {
      names.pop_back();
    } else {
      if (errno != EISDIR && errno != EPERM) return false;
      above = std::move(folder);
      folder = OpenWithin(above->Descriptor(), names.back().c_str());
      if (!enter()) return false;
    }
  }
}

}  // namespace

ErrorCode LastFileError(const char* from, const char* to) {
  const int error = errno;
  if (error != ENOENT) return CodeOf(error);
  struct stat status;
  const char* const missing = lstat(from, &status) == 0 ? to : from;
  return FolderIsMissing(missing) ? kPathNotFound : kFileNotFound;
}

ErrorCode RemoveFile(const char* name) {
  if (unlink(name) == 0) return 0;
  return LastFileError(name, name);
}

ErrorCode CreateFolders(const char* name) {
  if (*name != '/') return kBadPathName;
  switch (const int error = MakeFolder(Trimmed(name))) {
    case EEXIST: return kAlreadyExists;
    case ENOENT: return kPathNotFound;
    default: return CodeOf(error);
  }
}

bool RemoveFolder(const char* name) {
  // With a slash at the end, a link would be followed.
  const std::string path(Trimmed(name));
  const std::string_view last = std::string_view(path).substr(path.rfind('/') + 1);
  if (last.empty() || last == "." || last == "..") return false;
  if (unlink(path.c_str()) == 0) return true;
  if (errno != EISDIR && errno != EPERM) return false;
  return Empty(OpenWithin(AT_FDCWD, path.c_str())) && rmdir(path.c_str()) == 0;
}

std::optional<DiskSpace> FindDiskSpace(const char* path) noexcept {
  struct statvfs disk;
  if (statvfs(*path == '\0' ? "." : path, &disk) != 0) return std::nullopt;
  if (disk.f_blocks == 0) return std::nullopt;  // a view of the system, not a disk
  return DiskSpace{.free = std::uint64_t{disk.f_bavail} * disk.f_frsize,
                   .total = std::uint64_t{disk.f_blocks} * disk.f_frsize};
}

}  // namespace platform
