// TemporaryFolder: a folder of one's own, gone with its contents at the end.
#pragma once

#include <filesystem>

namespace nuvhost {

class TemporaryFolder {
 public:
  TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder();

  const std::filesystem::path& Path() const { return path_; }

 private:
  std::filesystem::path path_;
};

}  // namespace nuvhost
