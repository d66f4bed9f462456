// The lock under which this library reads and changes the process's environment.
#pragma once

#include <mutex>

namespace platform {

/// Held while the environment, or what is made from it, is looked at or changed. It keeps the
/// library's own threads apart; a host that changes the environment meanwhile is beyond it.
std::unique_lock<std::mutex> LockEnvironment();

}  // namespace platform
