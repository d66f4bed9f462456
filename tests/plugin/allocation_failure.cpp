#include "tests/plugin/allocation_failure.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>

#if defined(_WIN32)
#include <malloc.h>
#include <windows.h>
#endif

namespace {

std::ptrdiff_t live_allocations = 0;
std::ptrdiff_t allocations = 0;
std::ptrdiff_t successes_left = 0;
std::ptrdiff_t failures_left = 0;
bool has_failed = false;

bool IsToFail() noexcept {
  ++allocations;
  if (failures_left == 0) return false;
  if (successes_left > 0) {
    --successes_left;
    return false;
  }
  --failures_left;
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

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)

// The C library's allocations are the sanitizer's: only the operators are counted.
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

#elif defined(_WIN32)

namespace {

HANDLE Heap() noexcept {
  return reinterpret_cast<HANDLE>(_get_heap_handle());
}

void* Malloc(std::size_t size) noexcept {
  return Counted([&] { return HeapAlloc(Heap(), 0, size); });
}
void* Calloc(std::size_t count, std::size_t size) noexcept {
  return Counted([&] { return HeapAlloc(Heap(), HEAP_ZERO_MEMORY, count * size); });
}
void* Realloc(void* block, std::size_t size) noexcept {
  return Moved(block, [&] {
    return block == nullptr ? HeapAlloc(Heap(), 0, size) : HeapReAlloc(Heap(), 0, block, size);
  });
}
void Free(void* block) noexcept {
  CountFree(block);
  HeapFree(Heap(), 0, block);
}

/// Lets a function of the C runtime, which all modules share, begin with a jump to another.
template <class Function>
void Replace(const char* name, Function* function) {
  void* code = reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("msvcrt.dll"), name));
  std::uint8_t jump[] = {0x48, 0xB8, 0, 0, 0, 0, 0, 0, 0, 0, 0xFF, 0xE0};  // mov rax, ...; jmp rax
  std::memcpy(jump + 2, &function, sizeof function);
  DWORD access = 0;
  VirtualProtect(code, sizeof jump, PAGE_EXECUTE_READWRITE, &access);
  std::memcpy(code, jump, sizeof jump);
}

[[maybe_unused]] const bool are_replaced = [] {
  Replace("malloc", &Malloc);
  Replace("calloc", &Calloc);
  Replace("realloc", &Realloc);
  Replace("free", &Free);
  try {  // so that what this program's C++ runtime keeps for exceptions is lost in no test
    throw 0;
  } catch (int) {
    return true;
  }
}();

}  // namespace

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

FailingAllocation::FailingAllocation(std::ptrdiff_t successes, std::ptrdiff_t failures) {
  has_failed = false;
  successes_left = successes;
  failures_left = failures;
}

FailingAllocation::~FailingAllocation() {
  failures_left = 0;
}

bool FailingAllocation::HasFailed() const {
  return has_failed;
}
