#include <cstdlib>

#include "platform/environment_lock.h"
#include "platform/runtime.h"

namespace platform {

void SeedRandom(std::uint32_t seed) noexcept {
  std::srand(seed);
}

int Random() noexcept {
  return std::rand();
}

std::vector<std::string> Environment() {
  const auto lock = LockEnvironment();
  std::vector<std::string> entries;
  // In a program that began with wide characters, the first look-up makes the narrow table.
  static_cast<void>(std::getenv("PATH"));
  for (char** entry = _environ; entry != nullptr && *entry != nullptr; ++entry) {
    entries.emplace_back(*entry);
  }
  return entries;
}

std::optional<std::string> FindVariable(const char* name) {
  const auto lock = LockEnvironment();
  const char* const value = std::getenv(name);
  return value == nullptr ? std::nullopt : std::optional<std::string>(value);
}

bool AssignVariable(const std::string& assignment) {
  const auto lock = LockEnvironment();
  return _putenv(assignment.c_str()) == 0;
}

}  // namespace platform
