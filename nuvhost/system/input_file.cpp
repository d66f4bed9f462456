#include "nuvhost/system/input_file.h"

#include <fstream>
#include <iterator>

#include "nuvhost/system/paths.h"

namespace nuvhost {

std::optional<std::string> ReadBytes(const std::string& name, std::string& reason) {
  const std::filesystem::path path = PathFromUtf8(name);
  std::error_code ignored;
  if (!std::filesystem::exists(path, ignored)) {
    reason = "there is no such file";
  } else if (std::filesystem::is_directory(path, ignored)) {
    reason = "it is a folder, not a file";
  } else if (std::ifstream file(path, std::ios::binary); file) {
    std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    if (!file.bad()) return text;
    reason = "it cannot be read to its end";
  } else {
    reason = "it cannot be opened";
  }
  return std::nullopt;
}

}  // namespace nuvhost
