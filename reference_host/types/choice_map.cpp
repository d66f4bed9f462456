#include "host/choice_map.h"

#include <memory>
#include <new>
#include <utility>

// The tree is not kept balanced: a choice has a handful of entries.

namespace {

struct FreeNode {
  void operator()(CChoiceMap::Node* node) const noexcept { ::operator delete(node); }
};
using OwnedNode = std::unique_ptr<CChoiceMap::Node, FreeNode>;

OwnedNode AllocateNode() {
  auto* node = static_cast<CChoiceMap::Node*>(::operator new(sizeof(CChoiceMap::Node)));
  node->color = 1;
  node->is_nil = 0;
  return OwnedNode(node);
}

/// The sentinel of every empty map; nothing is ever written to it. A node as a whole would have
/// a label to destroy when the program ends, after which a host may still look at an empty map.
CChoiceMap::Node* SharedSentinel() noexcept {
  alignas(CChoiceMap::Node) static unsigned char storage[sizeof(CChoiceMap::Node)];
  static CChoiceMap::Node* const kSentinel = [] {
    auto* node = reinterpret_cast<CChoiceMap::Node*>(storage);
    node->left = node->parent = node->right = node;
    node->color = 1;
    node->is_nil = 1;
    return node;
  }();
  return kSentinel;
}

void DestroySubtree(CChoiceMap::Node* node) noexcept {
  if (node->is_nil != 0) return;
  DestroySubtree(node->left);
  DestroySubtree(node->right);
  std::destroy_at(&node->label);
  ::operator delete(node);
}

}  // namespace

CChoiceMap::CChoiceMap() noexcept : head_(SharedSentinel()) {}

CChoiceMap::CChoiceMap(CChoiceMap&& other) noexcept
    : head_(std::exchange(other.head_, SharedSentinel())), size_(std::exchange(other.size_, 0)) {}

CChoiceMap& CChoiceMap::operator=(CChoiceMap&& other) noexcept {
  if (this == &other) return *this;
  Clear();
  head_ = std::exchange(other.head_, SharedSentinel());
  size_ = std::exchange(other.size_, 0);
  return *this;
}

void CChoiceMap::Insert(std::int32_t key, const char* label) {
  if (head_ == SharedSentinel()) {
    head_ = AllocateNode().release();
    head_->is_nil = 1;
    head_->left = head_->parent = head_->right = head_;
  }
  Node* parent = head_;
  Node** link = &head_->parent;
  while ((*link)->is_nil == 0) {
    parent = *link;
    if (key == parent->key) return;
    link = key < parent->key ? &parent->left : &parent->right;
  }

  OwnedNode node = AllocateNode();
  std::construct_at(&node->label, label);
  node->key = key;
  node->left = node->right = head_;
  node->parent = parent;
  *link = node.release();
  if (size_ == 0 || key < head_->left->key) head_->left = *link;
  if (size_ == 0 || key > head_->right->key) head_->right = *link;
  ++size_;
}

void CChoiceMap::Clear() noexcept {
  if (head_ == SharedSentinel()) return;
  DestroySubtree(head_->parent);
  ::operator delete(std::exchange(head_, SharedSentinel()));
  size_ = 0;
}

const CChoiceMap::Node* CChoiceMap::First() const noexcept {
  return size_ == 0 ? nullptr : head_->left;
}

const CChoiceMap::Node* CChoiceMap::Next(const Node* node) noexcept {
  if (node->right->is_nil == 0) {
    node = node->right;
    while (node->left->is_nil == 0) node = node->left;
    return node;
  }
  const Node* parent = node->parent;
  while (parent->is_nil == 0 && node == parent->right) {
    node = parent;
    parent = parent->parent;
  }
  return parent->is_nil == 0 ? parent : nullptr;
}
