// GuardedMemory: memory that ends where access ends, so that a step too far ends the process.
#pragma once

#include <cstddef>
#include <vector>

namespace nuvhost {

/// Blocks that each end just before memory without access, and have none again once retired. Much
/// other memory is handed out before an address comes back, so late uses are noticed, too.
class GuardedMemory {
 public:
  /// Throws std::bad_alloc. Where it does not guard, the same memory is never without access.
  explicit GuardedMemory(bool guards = true);
  GuardedMemory(const GuardedMemory&) = delete;
  GuardedMemory& operator=(const GuardedMemory&) = delete;
  ~GuardedMemory();

  /// So many bytes, all of them and those before them `fill`. The address is a multiple of as large
  /// a power of two as the size is. Throws std::bad_alloc.
  void* Take(std::size_t size, unsigned char fill);
  /// Ends the access to all blocks.
  void Retire() noexcept;

 private:
  struct Block {
    std::byte* begin;
    std::size_t size;
  };

  // What the system does: reserve with or without access, give access, take it away.
  static std::byte* Reserve(std::size_t size, bool is_open);
  static bool Open(const Block& block);
  static void Close(const Block& block);
  static void Free(std::byte* begin, std::size_t size);
  static std::size_t PageSize();

  bool guards_;
  std::byte* begin_;
  std::size_t next_ = 0;
  std::vector<Block> open_;  ///< as stretches that are closed at once
};

}  // namespace nuvhost
