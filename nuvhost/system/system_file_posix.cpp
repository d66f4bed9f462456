#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>

#include "nuvhost/system/system_file.h"

namespace nuvhost {

namespace fs = std::filesystem;

namespace {

/// The names of unfinished files, which a signal that ends the process removes.
std::array<std::atomic<const fs::path*>, 4> unfinished;
static_assert(std::atomic<const fs::path*>::is_always_lock_free);

void RemoveUnfinished(int signal) {
  for (const auto& part : unfinished) {
    if (const fs::path* path = part.load()) unlink(path->c_str());
  }
  raise(signal);  // which now does what it does to others
}

/// Signals that are ignored or handled already stay so.
void HandleSignals() {
  for (const int signal : {SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGPIPE, SIGXCPU, SIGABRT, SIGSEGV,
                           SIGBUS, SIGFPE, SIGILL}) {
    struct sigaction action;
    if (sigaction(signal, nullptr, &action) != 0 || (action.sa_flags & SA_SIGINFO) != 0 ||
        action.sa_handler != SIG_DFL) {
      continue;
    }
    action.sa_handler = RemoveUnfinished;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    sigaction(signal, &action, nullptr);
  }
}

}  // namespace

std::error_code LastError() {
  return {errno, std::generic_category()};
}

std::optional<Identity> IdentityOf(const fs::path& path) {
  struct stat found;
  if (stat(path.c_str(), &found) != 0) return std::nullopt;
  return Identity{found.st_dev, found.st_ino};
}

// What a link leads to need not exist.
fs::path Resolved(fs::path path) {
  constexpr int kMostLinks = 40;
  std::error_code error;
  for (int links = 0; links < kMostLinks && fs::is_symlink(path, error); ++links) {
    const fs::path target = fs::read_symlink(path, error);
    if (error) break;
    path = path.parent_path() / target;
  }
  return path;
}

fs::path::string_type FoldedName(const fs::path& path) {
  return path.filename().native();
}

Existing Look(const fs::path& path) {
  Existing found;
  struct stat status;
  found.exists = stat(path.c_str(), &status) == 0;
  if (!found.exists) {
    if (errno != ENOENT && errno != ENOTDIR) found.refusal = "it cannot be looked at";
    return found;
  }
  found.mode = status.st_mode & 07777;
  found.owner = status.st_uid;
  found.group = status.st_gid;
  if (S_ISDIR(status.st_mode)) {
    found.refusal = "it is a folder";
  } else if (!S_ISREG(status.st_mode)) {
    found.refusal = "it is no regular file";
  } else if ((status.st_mode & 0222) == 0 ||  // which does not hold back the superuser
             faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) != 0) {
    found.refusal = "the file is read-only";
  }
  return found;
}

std::FILE* Create(const fs::path& path, const Existing& replaced) {
  const int descriptor = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                              replaced.exists ? 0600 : 0666);
  if (descriptor < 0) return nullptr;
  if (replaced.exists) {  // some file systems have neither
    static_cast<void>(fchown(descriptor, replaced.owner, replaced.group) == 0);
    static_cast<void>(fchmod(descriptor, replaced.mode) == 0);
  }
  std::FILE* file = fdopen(descriptor, "wb");
  if (file == nullptr) {
    const int error = errno;
    close(descriptor);
    unlink(path.c_str());
    errno = error;
  }
  return file;
}

std::FILE* Append(const fs::path& path) {
  return std::fopen(path.c_str(), "abe");
}

bool ReachesDisk(std::FILE* file) {
  return std::fflush(file) == 0 && fsync(fileno(file)) == 0;
}

bool Replace(const fs::path& from, const fs::path& to) {
  return std::rename(from.c_str(), to.c_str()) == 0;
}

void RemoveOnSignals() {
  [[maybe_unused]] static const bool is_set = (HandleSignals(), true);
}

void RemoveOnSignal(const fs::path* part) {
  RemoveOnSignals();
  for (auto& place : unfinished) {
    const fs::path* none = nullptr;
    if (place.compare_exchange_strong(none, part)) return;
  }
}

void KeepOnSignal(const fs::path* part) {
  for (auto& place : unfinished) {
    const fs::path* known = part;
    place.compare_exchange_strong(known, nullptr);
  }
}

}  // namespace nuvhost
