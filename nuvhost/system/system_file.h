// Files as their system knows them: what an output file needs of it, on every platform.
#pragma once

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <string>
#include <system_error>
#include <tuple>

namespace nuvhost {

/// A file by what it is, not by its name: two numbers that every name of it leads to. One that
/// does not exist yet is a name in the folder that has them.
struct Identity {
  std::uint64_t volume = 0;
  std::uint64_t index = 0;
  std::filesystem::path::string_type name = {};
  bool operator<(const Identity& other) const {
    return std::tie(volume, index, name) < std::tie(other.volume, other.index, other.name);
  }
};

/// What was found under the name of an output.
struct Existing {
  bool exists = false;
  const char* refusal = nullptr;  ///< why it must not be replaced; null if it may be
  unsigned mode = 0666;
  unsigned owner = 0;
  unsigned group = 0;
};

/// The file that a path leads to now; nothing where it leads to none.
std::optional<Identity> IdentityOf(const std::filesystem::path& path);

/// The path that a link leads to, and links there; a path that is no link itself.
std::filesystem::path Resolved(std::filesystem::path path);

/// A path's last name, so that names are equal where the system takes them for one.
std::filesystem::path::string_type FoldedName(const std::filesystem::path& path);

/// What is found under a path that is no link.
Existing Look(const std::filesystem::path& path);

/// Creates a file where nothing is, with the owner and the mode of the one that it shall replace;
/// null where that cannot be.
std::FILE* Create(const std::filesystem::path& path, const Existing& replaced);
/// Opens a file for writing at its end, and creates it where nothing is; null, and errno tells why,
/// where that cannot be.
std::FILE* Append(const std::filesystem::path& path);
/// Puts all that was written on the disk; false, and errno tells why, where that cannot be.
bool ReachesDisk(std::FILE* file);
/// Moves a closed file to where another may be; false where that cannot be.
bool Replace(const std::filesystem::path& from, const std::filesystem::path& to);
/// Why Create or Replace failed.
std::error_code LastError();

/// Has the process, where a signal ends it, delete its unfinished files before. RemoveOnSignal sees
/// to it by itself; who takes a signal's handling for a time does this first.
void RemoveOnSignals();
/// From here on, a file is deleted where the process is ended; until KeepOnSignal, which the path
/// must outlive.
void RemoveOnSignal(const std::filesystem::path* path);
void KeepOnSignal(const std::filesystem::path* path);

}  // namespace nuvhost
