#include "platform/environment_lock.h"

namespace platform {

std::unique_lock<std::mutex> LockEnvironment() {
  static std::mutex mutex;
  return std::unique_lock(mutex);
}

}  // namespace platform
