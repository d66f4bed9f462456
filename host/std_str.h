// CStdStr: the host's 8-bit string, with the layout that the host reads in place.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <type_traits>

#include "host/export.h"

/// An 8-bit string of 40 bytes with a small buffer: up to 15 characters stand inline, longer
/// ones on the C runtime's heap. The text is always closed by a zero byte, which the length does
/// not count. What throws std::bad_alloc leaves the text as it was. Assigning a shorter text keeps
/// the storage.
class NUV_TYPES_API CStdStr {
 public:
  CStdStr() noexcept = default;
  /// A null pointer stands for the empty text.
  CStdStr(const char* text);
  CStdStr(std::string_view text);
  CStdStr(const CStdStr& other);
  CStdStr(CStdStr&& other) noexcept;
  ~CStdStr();

  CStdStr& operator=(const CStdStr& other);
  CStdStr& operator=(CStdStr&& other) noexcept;
  CStdStr& operator=(std::string_view text);

  const char* c_str() const noexcept { return IsInline() ? storage_.inline_text : storage_.heap; }
  std::size_t Size() const noexcept { return length_; }
  std::string_view View() const noexcept { return {c_str(), length_}; }

  friend bool operator==(const CStdStr& a, const CStdStr& b) noexcept {
    return a.View() == b.View();
  }

 private:
  struct Layout;
  static constexpr std::uint64_t kInlineCapacity = 15;

  bool IsInline() const noexcept { return capacity_ <= kInlineCapacity; }
  void Assign(std::string_view text);
  void Steal(CStdStr& other) noexcept;
  void Free() noexcept;

  union Storage {
    char inline_text[kInlineCapacity + 1];
    char* heap;
  };

  std::uint64_t allocator_ = 0;               //  0  allocator word, unused
  Storage storage_{{0}};                      //  8  text, or its address when it is longer
  std::uint64_t length_ = 0;                  // 24  characters before the closing zero
  std::uint64_t capacity_ = kInlineCapacity;  // 32  characters that fit; 15 while inline
};

static_assert(std::is_standard_layout_v<CStdStr> && sizeof(CStdStr) == 40);
struct CStdStr::Layout {
  static_assert(offsetof(CStdStr, storage_) == 8 && offsetof(CStdStr, length_) == 24 &&
                offsetof(CStdStr, capacity_) == 32);
};
