#include "tests/plugin/allocation_failure.h"

#include <cstdlib>
#include <new>

#if defined(_WIN32)
#include <windows.h>

#include <cstring>
#endif

namespace {

std::ptrdiff_t live_allocations = 0;
std::ptrdiff_t successes_left = -1;  // below 0: none is to fail
bool fails_for_ever = false;
bool has_failed = false;

bool IsToFail() noexcept {
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

#if defined(_WIN32)

// Each module calls the C runtime through a table of its own, in which these take its place.
namespace {

template <class Function>
Function* Runtime(const char* name) {
  return reinterpret_cast<Function*>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("msvcrt.dll"), name)));
}

auto* const runtime_malloc = Runtime<void*(std::size_t)>("malloc");
auto* const runtime_calloc = Runtime<void*(std::size_t, std::size_t)>("calloc");
auto* const runtime_realloc = Runtime<void*(void*, std::size_t)>("realloc");
auto* const runtime_free = Runtime<void(void*)>("free");

void* Malloc(std::size_t size) {
  return Counted([&] { return runtime_malloc(size); });
}
void* Calloc(std::size_t count, std::size_t size) {
  return Counted([&] { return runtime_calloc(count, size); });
}
void* Realloc(void* block, std::size_t size) {
  return Moved(block, [&] { return runtime_realloc(block, size); });
}
void Free(void* block) {
  CountFree(block);
  runtime_free(block);
}

void TakeThePlace(HMODULE module) {
  auto* const image = reinterpret_cast<std::byte*>(module);
  const auto at = [image]<class Record>(const Record*, std::size_t offset) {
    return reinterpret_cast<Record*>(image + offset);
  };
  const auto* dos = at(static_cast<IMAGE_DOS_HEADER*>(nullptr), 0);
  const auto* headers =
      at(static_cast<IMAGE_NT_HEADERS64*>(nullptr), static_cast<std::size_t>(dos->e_lfanew));
  const IMAGE_DATA_DIRECTORY& imports =
      headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
  const auto* library = at(static_cast<IMAGE_IMPORT_DESCRIPTOR*>(nullptr), imports.VirtualAddress);
  for (; library->Name != 0; ++library) {
    auto* slot = at(static_cast<void**>(nullptr), library->FirstThunk);
    for (; *slot != nullptr; ++slot) {
      void* replacement = nullptr;
      if (*slot == reinterpret_cast<void*>(runtime_malloc))
        replacement = reinterpret_cast<void*>(Malloc);
      if (*slot == reinterpret_cast<void*>(runtime_calloc))
        replacement = reinterpret_cast<void*>(Calloc);
      if (*slot == reinterpret_cast<void*>(runtime_realloc))
        replacement = reinterpret_cast<void*>(Realloc);
      if (*slot == reinterpret_cast<void*>(runtime_free))
        replacement = reinterpret_cast<void*>(Free);
      if (replacement == nullptr) continue;
      DWORD before = 0;
      VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &before);
      *slot = replacement;
      VirtualProtect(slot, sizeof *slot, before, &before);
    }
  }
}

/// In every module of ours that is loaded now, once.
void TakeThePlaces() {
  static HMODULE done[8] = {};
  constexpr const char* kModules[] = {nullptr,        "NuvFormula.dll", "NuvGeometry.dll",
                                      "NuvLog.dll",   "NuvObject.dll",  "NuvOs.dll",
                                      "NuvTypes.dll", "NuvSetting.dll"};
  for (std::size_t i = 0; i < 8; ++i) {
    HMODULE module = GetModuleHandleA(kModules[i]);
    if (module == nullptr || module == done[i]) continue;
    TakeThePlace(module);
    done[i] = module;
  }
}

}  // namespace

bool FailsTheRuntime() {
  return true;
}

#elif defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)

// The C runtime's allocations are the sanitizer's: only the operators are counted.
static void TakeThePlaces() {}

bool FailsTheRuntime() {
  return false;
}

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
static void TakeThePlaces() {}

bool FailsTheRuntime() {
  return true;
}

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
  TakeThePlaces();
  return live_allocations;
}

FailingAllocation::FailingAllocation(std::ptrdiff_t successes, bool for_ever) {
  TakeThePlaces();
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
