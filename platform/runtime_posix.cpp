#include <unistd.h>

#include <cstdlib>

#include "platform/environment_lock.h"
#include "platform/runtime.h"

namespace platform {
namespace {

thread_local constinit std::uint32_t random_state = 1;

}  // namespace

void SeedRandom(std::uint32_t seed) noexcept {
  random_state = seed;
}

int Random() noexcept {
  random_state = random_state * 214013 + 2531011;
  return static_cast<int>(random_state >> 16 & 0x7FFF);
}

std::vector<std::string> Environment() {
  const auto lock = LockEnvironment();
  std::vector<std::string> entries;
  for (char** entry = environ; entry != nullptr && *entry != nullptr; ++entry) {
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
  const std::size_t equals = assignment.find('=');
  if (equals == 0 || equals == std::string::npos) return false;
  const std::string name = assignment.substr(0, equals);
  const char* value = assignment.c_str() + equals + 1;
  const auto lock = LockEnvironment();
  return (*value == '\0' ? unsetenv(name.c_str()) : setenv(name.c_str(), value, 1)) == 0;
}

}  // namespace platform
