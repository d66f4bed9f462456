// Counts this program's allocations, and lets one of them fail.
#pragma once

#include <cstddef>

/// Blocks that were allocated and not freed since the program began.
std::ptrdiff_t LiveAllocations();

/// While it lives, the allocation after the next `successes` fails, once.
class FailingAllocation {
 public:
  explicit FailingAllocation(std::ptrdiff_t successes);
  ~FailingAllocation();
  /// Whether it has come to the failure.
  bool HasFailed() const;
};
