#include <cstdlib>

#include "platform/runtime.h"

namespace platform {

void SeedRandom(std::uint32_t seed) noexcept {
  std::srand(seed);
}

int Random() noexcept {
  return std::rand();
}

std::vector<std::string> Environment() {
  std::vector<std::string> entries;
  // In a program that began with wide characters, the first look-up makes the narrow table.
  static_cast<void>(std::getenv("PATH"));
  for (char** entry = _environ; entry != nullptr && *entry != nullptr; ++entry) {
    entries.emplace_back(*entry);
  }
  return entries;
}

const char* FindVariable(const char* name) noexcept {
  return std::getenv(name);
}

bool AssignVariable(const std::string& assignment) {
  return _putenv(assignment.c_str()) == 0;
}

}  // namespace platform
