// Counts this process's allocations, those of its libraries included, and lets them fail.
#pragma once

#include <cstddef>

/// Blocks that were allocated and not freed since counting began, at the first call.
std::ptrdiff_t LiveAllocations();
/// Blocks that were allocated, or moved to grow or shrink, since counting began.
std::ptrdiff_t Allocations();

/// While it lives, the allocation after the next `successes` fails: that one, or all from it on.
class FailingAllocation {
 public:
  explicit FailingAllocation(std::ptrdiff_t successes, bool for_ever = false);
  FailingAllocation(const FailingAllocation&) = delete;
  FailingAllocation& operator=(const FailingAllocation&) = delete;
  ~FailingAllocation();
  /// Whether it has come to the failure.
  bool HasFailed() const;
};
