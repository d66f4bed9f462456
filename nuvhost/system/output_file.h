// OutputFile: a file that appears under its name once it is whole; and what must not be written.
#pragma once

#include <cstdio>
#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "nuvhost/system/system_file.h"

namespace nuvhost {

/// Written beside its place under a name of its own and moved there at the end, so that the file's
/// name never stands for half of it. A file that was there keeps its mode; where the name is a
/// link, what it leads to is replaced. Without Finish nothing stays, and neither where a signal
/// ends the process.
class OutputFile {
 public:
  /// `what` names the contents in complaints: "results". Throws UserError where the file cannot be
  /// written: it is read-only, no regular file, or its folder takes none.
  OutputFile(const std::string& name, const std::string& what);
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;
  ~OutputFile();

  void Write(std::string_view text);
  /// Throws UserError where anything of the file could not be written.
  void Finish();

 private:
  [[noreturn]] void Fail(const std::string& reason) const;

  std::string complaint_;
  std::filesystem::path path_;
  std::filesystem::path part_;
  std::FILE* file_ = nullptr;
  std::error_code error_;  ///< of the first text that could not be written
};

/// A file by its name, and what it is on the command line: "the program", "--results".
struct NamedFile {
  std::string role;
  std::string name;
};

/// The files that are to be written: none may be written twice or be one that is read, by whatever
/// name or link. Empty names are none. It creates nothing. Both throw UserError that names the two.
class WrittenFiles {
 public:
  void Add(const NamedFile& written);
  /// Once all are added.
  void CheckRead(const NamedFile& read) const;

 private:
  std::map<Identity, NamedFile> files_;
};

/// Has the entries of the application's log appended to a file, unless the name is empty. Throws
/// UserError now, not at the first entry, where it cannot be written.
void UseLogFile(const std::string& name);

}  // namespace nuvhost
