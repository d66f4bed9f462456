// TStdVector: the host's growable array, with the layout that the host walks in place.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <new>
#include <stdexcept>
#include <type_traits>
#include <utility>

/// A growable array of 32 bytes: an allocator word, then the begin, end and capacity pointers.
/// It owns its elements. An operation that throws (std::bad_alloc, or std::length_error for a
/// size that no memory holds) leaves the array as it was; an array that grows moves its elements,
/// which must not throw.
template <class T>
class TStdVector {
 public:
  constexpr TStdVector() noexcept = default;
  /// So many value-initialised elements, and no room for more.
  explicit TStdVector(std::size_t count) {
    if (count == 0) return;
    TStdVector made;
    made.Allocate(count);
    std::uninitialized_value_construct_n(made.begin_, count);
    made.end_ = made.capacity_;
    Swap(made);
  }
  TStdVector(const TStdVector& other) {
    if (other.begin_ == other.end_) return;
    TStdVector copy;
    copy.Allocate(other.Size());
    copy.end_ = std::uninitialized_copy(other.begin_, other.end_, copy.begin_);
    Swap(copy);
  }
  TStdVector(TStdVector&& other) noexcept { Swap(other); }
  ~TStdVector() {
    if (begin_ == nullptr) return;
    std::destroy(begin_, end_);
    ::operator delete(begin_);
  }

  /// Keeps the storage where it is large enough, so that equal sizes never allocate.
  TStdVector& operator=(const TStdVector& other) {
    if (this == &other) return *this;
    if constexpr (std::is_nothrow_copy_assignable_v<T>) {
      if (other.Size() <= Capacity()) {
        AssignWithinCapacity(other);
        return *this;
      }
    }
    TStdVector copy(other);
    Swap(copy);
    return *this;
  }
  TStdVector& operator=(TStdVector&& other) noexcept {
    TStdVector taken(std::move(other));
    Swap(taken);
    return *this;
  }

  std::size_t Size() const noexcept { return static_cast<std::size_t>(end_ - begin_); }
  std::size_t Capacity() const noexcept { return static_cast<std::size_t>(capacity_ - begin_); }
  bool Empty() const noexcept { return begin_ == end_; }
  T* Data() noexcept { return begin_; }
  const T* Data() const noexcept { return begin_; }
  T& operator[](std::size_t index) noexcept { return begin_[index]; }
  const T& operator[](std::size_t index) const noexcept { return begin_[index]; }
  T* begin() noexcept { return begin_; }
  T* end() noexcept { return end_; }
  const T* begin() const noexcept { return begin_; }
  const T* end() const noexcept { return end_; }

  /// Destroys the elements and keeps the storage.
  void Clear() noexcept {
    std::destroy(begin_, end_);
    end_ = begin_;
  }
  /// Destroys the elements and frees the storage.
  void Release() noexcept { TStdVector().Swap(*this); }

  void Reserve(std::size_t count) {
    static_assert(std::is_nothrow_move_constructible_v<T> && std::is_nothrow_move_assignable_v<T>);
    if (count <= Capacity()) return;
    TStdVector grown;
    grown.Allocate(count);
    grown.end_ = std::uninitialized_move(begin_, end_, grown.begin_);
    Swap(grown);
  }

  /// New elements are value-initialised; those already there are not touched.
  void Resize(std::size_t count) {
    if (count <= Size()) {
      std::destroy(begin_ + count, end_);
    } else {
      Grow(count);
      std::uninitialized_value_construct(end_, begin_ + count);
    }
    end_ = begin_ + count;
  }

  void PushBack(T value) {
    if (end_ == capacity_) Grow(Size() + 1);
    std::construct_at(end_, std::move(value));
    ++end_;
  }

  /// Puts `count` copies of `value` before `position`, which must not lie beyond the end.
  void Insert(std::size_t position, std::size_t count, const T& value) {
    if (position > Size()) throw std::out_of_range("TStdVector::Insert: position beyond the end");
    if (count == 0) return;
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): it may be an element that moves.
    const T copy(value);
    const std::size_t old_size = Size();
    if (count > MaxSize() - old_size) throw std::length_error("TStdVector::Insert: too many");
    Grow(old_size + count);
    std::uninitialized_fill_n(end_, count, copy);
    end_ += count;
    std::rotate(begin_ + position, begin_ + old_size, end_);
  }

  void Swap(TStdVector& other) noexcept {
    std::swap(begin_, other.begin_);
    std::swap(end_, other.end_);
    std::swap(capacity_, other.capacity_);
  }

 private:
  template <class Element>
  friend struct TStdVectorLayout;

  static constexpr std::size_t MaxSize() noexcept {
    return static_cast<std::size_t>(std::numeric_limits<std::ptrdiff_t>::max()) / sizeof(T);
  }
  // Only for an array without storage.
  void Allocate(std::size_t count) {
    if (count > MaxSize()) throw std::length_error("TStdVector: size impossible");
    begin_ = end_ = static_cast<T*>(::operator new(count * sizeof(T)));
    capacity_ = begin_ + count;
  }
  void Grow(std::size_t count) {
    if (count > Capacity()) Reserve(std::max(count, Size() + Size() / 2));
  }
  void AssignWithinCapacity(const TStdVector& other) noexcept {
    const std::size_t shared = std::min(Size(), other.Size());
    std::copy_n(other.begin_, shared, begin_);
    if (Size() > shared) {
      std::destroy(begin_ + shared, end_);
    } else {
      std::uninitialized_copy(other.begin_ + shared, other.end_, begin_ + shared);
    }
    end_ = begin_ + other.Size();
  }

  std::uint64_t allocator_ = 0;  //  0  allocator word, unused
  T* begin_ = nullptr;           //  8  first element; null while there is no storage
  T* end_ = nullptr;             // 16  behind the last element
  T* capacity_ = nullptr;        // 24  behind the storage
};

template <class Element>
struct TStdVectorLayout {
  using Vector = TStdVector<Element>;
  static_assert(std::is_standard_layout_v<Vector> && sizeof(Vector) == 32);
  static_assert(offsetof(Vector, begin_) == 8 && offsetof(Vector, end_) == 16 &&
                offsetof(Vector, capacity_) == 24);
};
template struct TStdVectorLayout<int>;
