// StreamFile: an output that is under its name from the beginning and grows line by line.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>
#include <system_error>

namespace nuvhost {

/// What is written is the system's at once, so that it stays however the process ends.
class StreamFile {
 public:
  enum class Mode {
    kNew,        ///< where no file is, or an empty one
    kOverwrite,  ///< in place of the one that is there
    kGoOn,       ///< behind the first `kept` bytes of the one that is there
  };

  /// `what` names the contents in complaints: "results". Throws UserError where the file cannot be
  /// written: it is read-only, no regular file, its folder takes none, or kNew finds one.
  StreamFile(const std::string& name, const std::string& what, Mode mode, std::uint64_t kept = 0);
  StreamFile(const StreamFile&) = delete;
  StreamFile& operator=(const StreamFile&) = delete;
  ~StreamFile();

  void Write(std::string_view line);
  /// Throws UserError where anything of the file could not be written.
  void Finish();

 private:
  [[noreturn]] void Fail(const std::string& reason) const;

  std::string complaint_;
  std::FILE* file_ = nullptr;
  std::error_code error_;  ///< of the first line that could not be written
};

}  // namespace nuvhost
