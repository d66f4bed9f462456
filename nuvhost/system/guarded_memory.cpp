#include "nuvhost/system/guarded_memory.h"

#include <cstring>
#include <new>

#if defined(_WIN32)
#include <windows.h>
#else
#include <sys/mman.h>
#include <unistd.h>
#endif

namespace nuvhost {
namespace {

constexpr std::size_t kReserved = std::size_t{64} << 20;

}  // namespace

#if defined(_WIN32)

std::byte* GuardedMemory::Reserve(std::size_t size, bool is_open) {
  return static_cast<std::byte*>(VirtualAlloc(nullptr, size, MEM_RESERVE | MEM_COMMIT,
                                              is_open ? PAGE_READWRITE : PAGE_NOACCESS));
}

bool GuardedMemory::Open(const Block& block) {
  DWORD before = 0;
  return VirtualProtect(block.begin, block.size, PAGE_READWRITE, &before);
}

void GuardedMemory::Close(const Block& block) {
  DWORD before = 0;
  VirtualProtect(block.begin, block.size, PAGE_NOACCESS, &before);
}

void GuardedMemory::Free(std::byte* begin, std::size_t /*size*/) {
  VirtualFree(begin, 0, MEM_RELEASE);
}

std::size_t GuardedMemory::PageSize() {
  SYSTEM_INFO information;
  GetSystemInfo(&information);
  return information.dwPageSize;
}

#else

std::byte* GuardedMemory::Reserve(std::size_t size, bool is_open) {
  void* begin = mmap(nullptr, size, is_open ? PROT_READ | PROT_WRITE : PROT_NONE,
                     MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  return begin == MAP_FAILED ? nullptr : static_cast<std::byte*>(begin);
}

bool GuardedMemory::Open(const Block& block) {
  return mprotect(block.begin, block.size, PROT_READ | PROT_WRITE) == 0;
}

void GuardedMemory::Close(const Block& block) {
  mprotect(block.begin, block.size, PROT_NONE);
}

void GuardedMemory::Free(std::byte* begin, std::size_t size) {
  munmap(begin, size);
}

std::size_t GuardedMemory::PageSize() {
  return static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

#endif

GuardedMemory::GuardedMemory(bool guards) : guards_(guards), begin_(Reserve(kReserved, !guards)) {
  if (begin_ == nullptr) throw std::bad_alloc();
}

GuardedMemory::~GuardedMemory() {
  Free(begin_, kReserved);
}

void* GuardedMemory::Take(std::size_t size, unsigned char fill) {
  static const std::size_t page = PageSize();
  if (size == 0) return begin_ + kReserved - page;  // never opened
  const std::size_t pages = size <= page ? page : (size + page - 1) / page * page;
  if (next_ + pages + page > kReserved) {
    if (pages > kReserved / 2) throw std::bad_alloc();
    next_ = 0;
  }
  const Block block{begin_ + next_, pages};
  if (guards_ && !Open(block)) throw std::bad_alloc();
  // Blocks in a row are closed at once, with the pages between them.
  if (!open_.empty() && open_.back().begin + open_.back().size + page == block.begin) {
    open_.back().size += page + pages;
  } else {
    open_.push_back(block);
  }
  std::memset(block.begin, fill, pages);
  next_ += pages + page;
  return block.begin + pages - size;
}

void GuardedMemory::Retire() noexcept {
  for (const Block& block : open_) {
    if (guards_) Close(block);
  }
  open_.clear();
}

}  // namespace nuvhost
