#include "tests/plugin/allocation_failure.h"

#include <cstdlib>
#include <new>

namespace {

std::ptrdiff_t live_allocations = 0;
std::ptrdiff_t allocations = 0;
std::ptrdiff_t successes_left = -1;  // below 0: none is to fail
bool fails_for_ever = false;
bool has_failed = false;

bool IsToFail() noexcept {
  ++allocations;
  if (successes_left < 0) return false;
  if (successes_left > 0) {
    --successes_left;
    return false;
  }
  if (!fails_for_ever) successes_left = -1;
  return has_failed = true;
}

template <class Allocate>
void* Counted(Allocate allocate) noexcept {
  if (IsToFail()) return nullptr;
  void* block = allocate();
  if (block != nullptr) ++live_allocations;
  return block;
}

/// A block that grows or shrinks is the same block; one that fails stays.
template <class Reallocate>
void* Moved(void* block, Reallocate reallocate) noexcept {
  if (block == nullptr) return Counted(reallocate);
  return IsToFail() ? nullptr : reallocate();
}

void CountFree(const void* block) noexcept {
  if (block != nullptr) --live_allocations;
}

}  // namespace

#if defined(_WIN32) || defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)

// The C runtime's allocations are the sanitizer's, or those of each module: only the operators are
// counted.
void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  return Counted([&] { return std::malloc(size == 0 ? 1 : size); });
}
void* operator new(std::size_t size) {
  if (void* block = operator new(size, std::nothrow)) return block;
  throw std::bad_alloc();
}
void* operator new[](std::size_t size) {
  return operator new(size);
}
void* operator new[](std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  return operator new(size, std::nothrow);
}
void operator delete(void* block) noexcept {
  CountFree(block);
  std::free(block);
}
void operator delete(void* block, std::size_t /*size*/) noexcept {
  operator delete(block);
}
void operator delete[](void* block) noexcept {
  operator delete(block);
}
void operator delete[](void* block, std::size_t /*size*/) noexcept {
  operator delete(block);
}

#else

// The program's own definitions take the place of the C library's, for all that is loaded.
extern "C" {

// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming): the C library's names.
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void __libc_free(void* block);

__attribute__((visibility("default"))) void* malloc(std::size_t size) noexcept {
  return Counted([&] { return __libc_malloc(size); });
}
__attribute__((visibility("default"))) void* calloc(std::size_t count, std::size_t size) noexcept {
  return Counted([&] { return __libc_calloc(count, size); });
}
__attribute__((visibility("default"))) void* realloc(void* block, std::size_t size) noexcept {
  return Moved(block, [&] { return __libc_realloc(block, size); });
}
__attribute__((visibility("default"))) void free(void* block) noexcept {
  CountFree(block);
  __libc_free(block);
}
// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)
}

#endif

std::ptrdiff_t LiveAllocations() {
  return live_allocations;
}

std::ptrdiff_t Allocations() {
  return allocations;
}

FailingAllocation::FailingAllocation(std::ptrdiff_t successes, bool for_ever) {
  has_failed = false;
  fails_for_ever = for_ever;
  successes_left = successes;
}

FailingAllocation::~FailingAllocation() {
  successes_left = -1;
}

bool FailingAllocation::HasFailed() const {
  return has_failed;
}
