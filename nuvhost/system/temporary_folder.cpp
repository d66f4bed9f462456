#include "nuvhost/system/temporary_folder.h"

#include <fmt/format.h>

#include <random>

namespace nuvhost {

TemporaryFolder::TemporaryFolder() {
  std::random_device random;
  do {
    path_ =
        std::filesystem::temp_directory_path() / fmt::format("nuvhost-{}{}", random(), random());
  } while (!std::filesystem::create_directory(path_));
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

}  // namespace nuvhost
