// Files and folders. What goes wrong is a warning and a false result; the program goes on.

#include "platform/files.h"

#include "host/os.h"
#include "plugin/instruction.h"

namespace formula {
namespace {

/// Sets the result to false, and reports a warning, each "%s" or "%d" of its format replaced by
/// the next text as it stands.
Status Warned(Call& call, const char* source, std::string_view format,
              std::initializer_list<std::string_view> texts) {
  std::string warning;
  for (const std::string_view text : texts) {
    const std::size_t mark = format.find('%');
    warning += format.substr(0, mark);
    warning += text;
    format.remove_prefix(mark + 2);
  }
  warning += format;
  call.Warn(source, warning.c_str());
  return call.Set(0, false);
}

std::string ErrorText(platform::ErrorCode error) {
  CStdStr text;
  CNuvOsError::GetErrorMsg(error, text);
  return text.c_str();
}

/// Why a folder could not be created; null for a reason known by its number alone.
const char* CreationError(platform::ErrorCode error) {
  switch (error) {
    case platform::kPathNotFound:
      return "The system cannot find the path pointed to by pszPath. The path may contain an "
             "invalid entry.";
    case platform::kFileExists:
    case platform::kAlreadyExists: return "The directory exists.";
    case platform::kBadPathName: return "The pszPath parameter was set to a relative path.";
    case platform::kNameTooLong: return "The path pointed to by pszPath is too long.";
    case platform::kCancelled: return "The user canceled the operation.";
    default: return nullptr;
  }
}

}  // namespace

/// A folder is no file.
struct CFileExists final : Instruction<CFileExists> {
  static constexpr Definition kDefinition{
      .category = "IO: System",
      .name = "FileExists",
      .identifier = "_Nuv_System_CFileExists_",
      .help = 460172,
      .description = "Returns true if the specified file exists, false otherwise.",
      .inputs = {Text("filename")},
      .results = {Boolean("file exists")},
  };
  static Status Run(Call& call, const char* name) { return call.Set(0, CNuvOs::FileExists(name)); }
};

/// A file that is not there is as good as deleted; a folder that is not there is an error.
struct CFileDelete final : Instruction<CFileDelete> {
  static constexpr Definition kDefinition{
      .category = "IO: System",
      .name = "FileDelete ",
      .identifier = "_Nuv_System_CFileDelete_",
      .help = 460230,
      .description = "Deletes the specified file. It will succeed even if the file doesn't exist.",
      .inputs = {Text("filename")},
      .results = {Boolean("result")},
  };
  static Status Run(Call& call, std::string_view given) {
    const std::string name(given);
    const platform::ErrorCode error = platform::RemoveFile(name.c_str());
    if (error == 0 || error == platform::kFileNotFound) return call.Set(0, true);
    return Warned(call, "FileDelete", "Failed to delete \"%s\". %s", {name, ErrorText(error)});
  }
};

struct CFolderCreate final : Instruction<CFolderCreate> {
  static constexpr Definition kDefinition{
      .category = "IO: System",
      .name = "FolderCreate ",
      .identifier = "_Nuv_System_CFolderCreate_",
      .help = 460231,
      .description = "Creates a folder with the specified name.",
      .inputs = {Text("name")},
      .results = {Boolean("result")},
  };
  static Status Run(Call& call, std::string_view given) {
    const std::string name(given);
    const platform::ErrorCode error = platform::CreateFolders(name.c_str());
    if (error == 0) return call.Set(0, true);
    if (const char* reason = CreationError(error)) {
      return Warned(call, "FolderCreate", "Failed to create folder \"%s\". %s", {name, reason});
    }
    return Warned(call, "FolderCreate", "Failed to create folder \"%s\". System error code %d",
                  {name, std::to_string(error)});
  }
};

struct CFolderDelete final : Instruction<CFolderDelete> {
  static constexpr Definition kDefinition{
      .category = "IO: System",
      .name = "FolderDelete ",
      .identifier = "_Nuv_System_CFolderDelete_",
      .help = 460232,
      .description = "Deletes a folder with the specified name.",
      .inputs = {Text("name", "Acts recursively on all files and folders")},
      .results = {Boolean("result")},
  };
  static Status Run(Call& call, std::string_view given) {
    const std::string name(given);
    if (name.size() > platform::kLongestFolderName) {
      return Warned(call, "FolderDelete", "Filename too long: %s", {name});
    }
    if (platform::RemoveFolder(name.c_str())) return call.Set(0, true);
    return Warned(call, "FolderDelete", "Failed to delete folder \"%s\"", {name});
  }
};

struct CFileCopy final : Instruction<CFileCopy> {
  static constexpr Definition kDefinition{
      .category = "IO: System",
      .name = "FileCopy ",
      .identifier = "_Nuv_System_CFileCopy_",
      .help = 460233,
      .description = "Copies the source file to the destination file",
      .inputs = {Text("source"), Text("destination"),
                 Boolean("failIfExists", true,
                         "The call fails if the destination file already exists.")},
      .results = {Boolean("result")},
  };
  static Status Run(Call& call, std::string_view source, std::string_view destination,
                    bool fail_if_exists) {
    const std::string from(source);
    const std::string to(destination);
    if (CNuvOs::FileCopy(from.c_str(), to.c_str(), fail_if_exists)) return call.Set(0, true);
    const platform::ErrorCode error = platform::LastFileError(from.c_str(), to.c_str());
    return Warned(call, "FileCopy", "Failed to copy \"%s\" to \"%s\". %s",
                  {from, to, ErrorText(error)});
  }
};

struct CFileMove final : Instruction<CFileMove> {
  static constexpr Definition kDefinition{
      .category = "IO: System",
      .name = "FileMove ",
      .identifier = "_Nuv_System_CFileMove_",
      .help = 460234,
      .description = "Moves the source file to the specified destination.",
      .inputs = {Text("source"), Text("destination")},
      .results = {Boolean("result")},
  };
  static Status Run(Call& call, std::string_view source, std::string_view destination) {
    const std::string from(source);
    const std::string to(destination);
    if (CNuvOs::FileMove(from.c_str(), to.c_str())) return call.Set(0, true);
    const platform::ErrorCode error = platform::LastFileError(from.c_str(), to.c_str());
    return Warned(call, "FileMove", "Failed to move \"%s\" to \"%s\". %s",
                  {from, to, ErrorText(error)});
  }
};

template struct Instructions<CFileExists, CFileDelete, CFolderCreate, CFolderDelete, CFileCopy,
                             CFileMove>;

}  // namespace formula
