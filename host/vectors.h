// The host's growable arrays of booleans, numbers, texts, points and lines.
#pragma once

#include <cstddef>

#include "host/base_type.h"
#include "host/std_vector.h"
#include "host/values.h"

/// A growable array. A size beyond the limit that the host's settings give (CNuvSetting), a
/// negative count turned into a huge one included, throws std::length_error; a position beyond the
/// end throws std::out_of_range. What throws leaves the array as it was.
template <class Element, NUV_OBJ_TYPE Type>
class TNuvVector final : public CNuvBaseType {
 public:
  using value_type = Element;
  static constexpr NUV_OBJ_TYPE kType = Type;

  TNuvVector() noexcept = default;
  TNuvVector(const TNuvVector& other);
  ~TNuvVector() override;
  /// Keeps the storage where it is large enough.
  TNuvVector& operator=(const TNuvVector& other);

  std::size_t Size() const noexcept { return elements_.Size(); }
  /// New elements are false, zero, the empty text, (0, 0); those already there are not touched,
  /// and a size that the array had before allocates nothing.
  void Resize(std::size_t size);
  Element& operator[](std::size_t index) noexcept { return elements_[index]; }
  const Element& operator[](std::size_t index) const noexcept { return elements_[index]; }
  /// The first element; null for an array that never held one.
  Element* GetStorage() noexcept { return elements_.Data(); }
  const Element* GetStorage() const noexcept { return elements_.Data(); }
  void PushBack(const Element& value);
  /// Puts `count` copies of `value` before `position`; the array's size is a legal position.
  void Insert(std::size_t position, std::size_t count, const Element& value);

  CNuvBaseType* Clone() const override;
  bool Copy(const CNuvBaseType& other) override;
  bool Compare(const CNuvBaseType& other) const override;
  NUV_OBJ_TYPE GetType() const noexcept override;

 private:
  TStdVector<Element> elements_;
};

extern template class NUV_OBJECT_API TNuvVector<bool, NUV_OBJ_BOOL_VECTOR>;
extern template class NUV_OBJECT_API TNuvVector<double, NUV_OBJ_DOUBLE_VECTOR>;
extern template class NUV_OBJECT_API TNuvVector<CNuvString, NUV_OBJ_STRING_VECTOR>;
extern template class NUV_OBJECT_API TNuvVector<CNuvPoint, NUV_OBJ_POINT_VECTOR>;
extern template class NUV_OBJECT_API TNuvVector<CNuvLine, NUV_OBJ_LINE_VECTOR>;

using CNuvBoolVector = TNuvVector<bool, NUV_OBJ_BOOL_VECTOR>;
using CNuvDoubleVector = TNuvVector<double, NUV_OBJ_DOUBLE_VECTOR>;
using CNuvStringVector = TNuvVector<CNuvString, NUV_OBJ_STRING_VECTOR>;
using CNuvPointVector = TNuvVector<CNuvPoint, NUV_OBJ_POINT_VECTOR>;
using CNuvLineVector = TNuvVector<CNuvLine, NUV_OBJ_LINE_VECTOR>;

// A virtual table, and the elements' vector.
static_assert(sizeof(CNuvBoolVector) == 40 && sizeof(CNuvDoubleVector) == 40);
static_assert(sizeof(CNuvStringVector) == 40 && sizeof(CNuvPointVector) == 40);
static_assert(sizeof(CNuvLineVector) == 40);
