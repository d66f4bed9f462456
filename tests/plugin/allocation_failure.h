// Counts this process's allocations, those of its libraries included, and lets them fail.
#pragma once

#include <cstddef>
#include <cstdint>

/// Blocks that were allocated and not freed since counting began, at the first call.
std::ptrdiff_t LiveAllocations();
/// Blocks that were allocated, or moved to grow or shrink, since counting began.
std::ptrdiff_t Allocations();

/// How many fail in a row: one, two, all. On Windows a module's C++ runtime needs memory for its
/// first exception, and for the first that finds none; the first two leave it that.
inline constexpr std::ptrdiff_t kInARow[] = {1, 2, PTRDIFF_MAX};

/// While it lives, so many allocations fail after the next `successes`.
class FailingAllocation {
 public:
  explicit FailingAllocation(std::ptrdiff_t successes, std::ptrdiff_t failures = 1);
  FailingAllocation(const FailingAllocation&) = delete;
  FailingAllocation& operator=(const FailingAllocation&) = delete;
  ~FailingAllocation();
  /// Whether it has come to the failure.
  bool HasFailed() const;
};
