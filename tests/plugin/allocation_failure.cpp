#include "tests/plugin/allocation_failure.h"

#include <cstdlib>
#include <new>

namespace {

std::ptrdiff_t live_allocations = 0;
std::ptrdiff_t successes_left = -1;  // below 0: none is to fail
bool has_failed = false;

void* Allocate(std::size_t size) noexcept {
  if (successes_left == 0) {
    successes_left = -1;
    has_failed = true;
    return nullptr;
  }
  if (successes_left > 0) --successes_left;
  void* block = std::malloc(size == 0 ? 1 : size);
  if (block != nullptr) ++live_allocations;
  return block;
}

void Free(void* block) noexcept {
  if (block != nullptr) --live_allocations;
  std::free(block);
}

}  // namespace

void* operator new(std::size_t size) {
  if (void* block = Allocate(size)) return block;
  throw std::bad_alloc();
}
void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  return Allocate(size);
}
void* operator new[](std::size_t size) {
  return operator new(size);
}
void* operator new[](std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  return Allocate(size);
}
void operator delete(void* block) noexcept {
  Free(block);
}
void operator delete(void* block, std::size_t /*size*/) noexcept {
  Free(block);
}
void operator delete[](void* block) noexcept {
  Free(block);
}
void operator delete[](void* block, std::size_t /*size*/) noexcept {
  Free(block);
}

std::ptrdiff_t LiveAllocations() {
  return live_allocations;
}

FailingAllocation::FailingAllocation(std::ptrdiff_t successes) {
  has_failed = false;
  successes_left = successes;
}

FailingAllocation::~FailingAllocation() {
  successes_left = -1;
}

bool FailingAllocation::HasFailed() const {
  return has_failed;
}
