// OutputFile: a file that appears under its name once it is whole.
#pragma once

#include <filesystem>
#include <fstream>
#include <string>

namespace nuvhost {

/// Written beside its place under another name and moved there at the end, so that the file's
/// name never stands for half of it. Without Finish nothing stays.
class OutputFile {
 public:
  /// `what` names the contents in complaints: "results". Throws UserError where the file cannot be
  /// written.
  OutputFile(const std::string& name, const std::string& what);
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;
  ~OutputFile();

  std::ostream& Stream() { return file_; }
  /// Throws UserError where anything of the file could not be written.
  void Finish();

 private:
  std::string complaint_;
  std::filesystem::path path_;
  std::filesystem::path part_;
  std::ofstream file_;
};

}  // namespace nuvhost
