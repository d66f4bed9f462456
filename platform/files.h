// Files, folders and disks, with the error codes of Win32.
#pragma once

#include <cstdint>
#include <optional>

namespace platform {

/// A Win32 error code; 0 is success.
using ErrorCode = std::uint32_t;

inline constexpr ErrorCode kFileNotFound = 2;
inline constexpr ErrorCode kPathNotFound = 3;
inline constexpr ErrorCode kFileExists = 80;
inline constexpr ErrorCode kBadPathName = 161;
inline constexpr ErrorCode kAlreadyExists = 183;
inline constexpr ErrorCode kNameTooLong = 206;
inline constexpr ErrorCode kCancelled = 1223;

/// Why a helper of the host (CNuvOs) that was given these two names has just failed; to be asked
/// before anything else is called.
ErrorCode LastFileError(const char* from, const char* to);

/// Deletes a file.
ErrorCode RemoveFile(const char* name);

/// Creates a folder and its missing parents. The name must be absolute, and nothing may stand
/// there.
ErrorCode CreateFolders(const char* name);

/// The longest name that RemoveFolder takes, in characters.
inline constexpr std::size_t kLongestFolderName = 258;

/// Deletes a folder with all that is in it, for good; false where something could not be deleted.
/// A symbolic link is deleted and never followed (on Windows the shell decides). It refuses an
/// empty name and, but on Windows, the root and a name that ends in "." or "..".
bool RemoveFolder(const char* name);

struct DiskSpace {
  std::uint64_t free = 0;  ///< bytes that the caller may still use
  std::uint64_t total = 0;
};

/// The disk that a path lies on, or the current folder where the path is empty; none where there
/// is no such disk.
std::optional<DiskSpace> FindDiskSpace(const char* path) noexcept;

}  // namespace platform
