// CChoiceMap: an ordered map from a choice's key to its label, as the host reads it in place.
#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "host/export.h"
#include "host/std_str.h"

/// A map from 32-bit keys to labels, ordered by key: 24 bytes, a word, a head pointer and a
/// 64-bit size. The head points to a sentinel node whose left, parent and right links lead to
/// the smallest key, the root and the largest key of a binary search tree; the sentinel stands
/// wherever a link leads nowhere. Empty maps share one sentinel, so that making one cannot fail.
class NUV_TYPES_API CChoiceMap {
 public:
  struct Node {
    Node* left;           //  0
    Node* parent;         //  8
    Node* right;          // 16
    std::uint8_t color;   // 24  1: black; every node is black, the sentinel too
    std::uint8_t is_nil;  // 25  1 in the sentinel alone
    std::uint8_t padding[6];
    std::int32_t key;  // 32  key and label are not set in the sentinel
    std::uint32_t padding2;
    CStdStr label;  // 40
  };

  CChoiceMap() noexcept;
  CChoiceMap(CChoiceMap&& other) noexcept;
  CChoiceMap& operator=(CChoiceMap&& other) noexcept;
  ~CChoiceMap() { Clear(); }

  /// Adds a choice; a key that is already there keeps its first label. On std::bad_alloc the map
  /// is as before.
  void Insert(std::int32_t key, const char* label);
  /// Removes every choice and frees the storage.
  void Clear() noexcept;

  std::size_t Size() const noexcept { return size_; }
  /// The choice with the smallest key, and the one that follows a choice; null behind the last.
  const Node* First() const noexcept;
  static const Node* Next(const Node* node) noexcept;

 private:
  struct Layout;

  std::uint64_t allocator_ = 0;  //  0  allocator word, unused
  Node* head_;                   //  8  the sentinel
  std::uint64_t size_ = 0;       // 16  choices in the map
};

static_assert(std::is_standard_layout_v<CChoiceMap> && sizeof(CChoiceMap) == 24);
struct CChoiceMap::Layout {
  static_assert(offsetof(CChoiceMap, head_) == 8 && offsetof(CChoiceMap, size_) == 16);
};
static_assert(std::is_standard_layout_v<CChoiceMap::Node> && sizeof(CChoiceMap::Node) == 80);
static_assert(offsetof(CChoiceMap::Node, parent) == 8);
static_assert(offsetof(CChoiceMap::Node, right) == 16);
static_assert(offsetof(CChoiceMap::Node, color) == 24);
static_assert(offsetof(CChoiceMap::Node, is_nil) == 25);
static_assert(offsetof(CChoiceMap::Node, key) == 32);
static_assert(offsetof(CChoiceMap::Node, label) == 40);
