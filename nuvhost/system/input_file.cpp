#include "nuvhost/system/input_file.h"

#include <fstream>
#include <iterator>

#include "nuvhost/system/paths.h"

namespace nuvhost {

bool IsReadable(const std::string& name, std::string& reason) {
  const std::filesystem::path path = PathFromUtf8(name);
  std::error_code ignored;
  if (!std::filesystem::exists(path, ignored)) {
    reason = "there is no such file";
  } else if (std::filesystem::is_directory(path, ignored)) {
    reason = "it is a folder, not a file";
  } else if (!std::ifstream(path, std::ios::binary)) {
    reason = "it cannot be opened";
  } else {
    return true;
  }
  return false;
}

std::optional<std::string> ReadBytes(const std::string& name, std::string& reason) {
  if (!IsReadable(name, reason)) return std::nullopt;
  std::ifstream file(PathFromUtf8(name), std::ios::binary);
  std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  if (!file.bad()) return text;
  reason = "it cannot be read to its end";
  return std::nullopt;
}

}  // namespace nuvhost
