#include "tests/fuzz/sandbox.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

namespace fuzz {
namespace {

namespace fs = std::filesystem;

class Folder {
 public:
  Folder() : path_(fs::temp_directory_path() / ("fuzz_" + std::to_string(std::random_device()()))) {
    fs::create_directory(path_);
    fs::current_path(path_);
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;
  ~Folder() {
    std::error_code ignored;
    fs::current_path(path_.parent_path(), ignored);
    fs::remove_all(path_, ignored);
  }

  void Tidy() const {
    fs::create_directories(path_);  // which an instruction may have deleted
    fs::current_path(path_);
    for (const fs::directory_entry& entry : fs::directory_iterator(path_)) {
      fs::remove_all(entry.path());
    }
    std::ofstream("a") << "content";
    fs::create_directory("b");
  }

 private:
  fs::path path_;
};

/// A short path below the current folder.
void Shorten(CNuvObject& text) {
  std::string path = static_cast<const char*>(text);
  path.resize(std::min(path.size(), std::size_t{64}));
  std::ranges::replace(path, ':', ';');
  for (std::size_t at = 0; (at = path.find("..")) != path.npos;) path[at] = '_';
  if (path.starts_with('/') || path.starts_with('\\')) path[0] = '_';
  text = path.c_str();
}

}  // namespace

void EnterSandbox() {
  static const Folder folder;
  static unsigned entered = 0;
  if (entered++ % 512 == 0) {
    folder.Tidy();
#if !defined(_WIN32)
    clearenv();
#endif
  }
#if !defined(_WIN32)
  unsetenv("DISPLAY");
#endif
}

bool Confine(const DescriptorRecord& descriptor, nuvhost::CallContext& call) {
  const std::string_view identifier = descriptor.identifier;
#if defined(_WIN32)
  // Nobody is there to answer, and where there is no sound, a beep may wait for it.
  for (const char* one :
       {"_Nuv_System_CSystemMsgBox_", "_Nuv_System_CSystemBeep_", "_Nuv_System_CSystemMsgBeep_"}) {
    if (identifier == one) return false;
  }
#endif
  for (CNuvObject& input : call.inputs) {
    if (input.GetType() == NUV_OBJ_STRING) Shorten(input);
    if (identifier != "_Nuv_System_CSleep_" || input.GetType() != NUV_OBJ_DOUBLE) continue;
    // What counts are the low 32 bits of the whole milliseconds.
    const double milliseconds = static_cast<double>(input);
    if (milliseconds >= 1) {
      input = 4294967296.0;
    } else if (!(milliseconds > -1)) {
      input = -4294967296.0;
    }
  }
  return true;
}

}  // namespace fuzz
