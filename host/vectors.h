// The host's growable arrays of booleans, numbers, texts, points and lines.
#pragma once

#include <algorithm>
#include <cstddef>
#include <stdexcept>

#include "host/base_type.h"
#include "host/std_vector.h"
#include "host/values.h"

/// How many elements of a size an array may hold: as the host's settings say (CNuvSetting),
/// 1 GiB of elements unless they were changed.
NUV_OBJECT_API std::size_t NuvVectorLimit(std::size_t element_size) noexcept;

/// A growable array. A size beyond the host's limit, a negative count turned into a huge one
/// included, throws std::length_error; a position beyond the end throws std::out_of_range. What
/// throws leaves the array as it was.
template <class Element, NUV_OBJ_TYPE Type>
class TNuvVector final : public TNuvTypedValue<TNuvVector<Element, Type>, Type> {
 public:
  using value_type = Element;

  std::size_t Size() const noexcept { return elements_.Size(); }
  /// New elements are false, zero, the empty text, (0, 0); those already there are not touched.
  void Resize(std::size_t size) {
    CheckSize(size);
    elements_.Resize(size);
  }
  void Clear() noexcept { elements_.Clear(); }
  Element& operator[](std::size_t index) noexcept { return elements_[index]; }
  const Element& operator[](std::size_t index) const noexcept { return elements_[index]; }
  /// The first element; null for an array that never held one.
  Element* GetStorage() noexcept { return elements_.Data(); }
  const Element* GetStorage() const noexcept { return elements_.Data(); }
  void PushBack(const Element& value) {
    CheckSize(Size() + 1);
    elements_.PushBack(value);
  }
  /// Puts `count` copies of `value` before `position`; the array's size is a legal position.
  void Insert(std::size_t position, std::size_t count, const Element& value) {
    if (count > NuvVectorLimit(sizeof(Element))) throw std::length_error("array too long");
    CheckSize(Size() + count);
    elements_.Insert(position, count, value);
  }
  /// For writing an array from front to back in one pass: Restart empties it and makes room for
  /// `size` elements, which the appending operations may then fill and not exceed.
  void Restart(std::size_t size) {
    CheckSize(size);
    elements_.Restart(size);
  }
  void Append(const Element* first, std::size_t count) { elements_.Append(first, count); }
  void AppendCopies(std::size_t count, const Element& value) {
    elements_.AppendCopies(count, value);
  }
  void Swap(TNuvVector& other) noexcept { elements_.Swap(other.elements_); }

  friend bool operator==(const TNuvVector& a, const TNuvVector& b) {
    return std::equal(a.elements_.begin(), a.elements_.end(), b.elements_.begin(),
                      b.elements_.end());
  }

 private:
  void CheckSize(std::size_t size) const {
    if (size > Size() && size > NuvVectorLimit(sizeof(Element))) {
      throw std::length_error("array too long");
    }
  }

  TStdVector<Element> elements_;
};

using CNuvBoolVector = TNuvVector<bool, NUV_OBJ_BOOL_VECTOR>;
using CNuvDoubleVector = TNuvVector<double, NUV_OBJ_DOUBLE_VECTOR>;
using CNuvStringVector = TNuvVector<CNuvString, NUV_OBJ_STRING_VECTOR>;
using CNuvPointVector = TNuvVector<CNuvPoint, NUV_OBJ_POINT_VECTOR>;
using CNuvLineVector = TNuvVector<CNuvLine, NUV_OBJ_LINE_VECTOR>;
