#include "host/vectors.h"

#include <algorithm>
#include <stdexcept>

#include "host/setting.h"
#include "reference_host/object/value_operations.h"

namespace {

/// How many elements of a size an array may hold: as the settings say, 1 GiB of elements unless
/// they were changed.
std::size_t Limit(std::size_t element_size) {
  constexpr std::size_t kDefaultBytes = std::size_t{1} << 30;
  const std::size_t elements = CNuvSetting::Inst().GetVectorLimit();
  return elements != 0 ? elements : kDefaultBytes / element_size;
}

/// Whether an array may grow to the size.
template <class Element>
void CheckSize(std::size_t size) {
  if (size > Limit(sizeof(Element))) throw std::length_error("array too long");
}

template <class Vector>
bool AreEqual(const Vector& a, const Vector& b) {
  return std::equal(a.GetStorage(), a.GetStorage() + a.Size(), b.GetStorage(),
                    b.GetStorage() + b.Size());
}

}  // namespace

template <class Element, NUV_OBJ_TYPE Type>
TNuvVector<Element, Type>::TNuvVector(const TNuvVector& other) = default;

template <class Element, NUV_OBJ_TYPE Type>
TNuvVector<Element, Type>::~TNuvVector() = default;

template <class Element, NUV_OBJ_TYPE Type>
TNuvVector<Element, Type>& TNuvVector<Element, Type>::operator=(const TNuvVector& other) = default;

template <class Element, NUV_OBJ_TYPE Type>
void TNuvVector<Element, Type>::Resize(std::size_t size) {
  if (size > Size()) CheckSize<Element>(size);
  elements_.Resize(size);
}

template <class Element, NUV_OBJ_TYPE Type>
void TNuvVector<Element, Type>::PushBack(const Element& value) {
  CheckSize<Element>(Size() + 1);
  elements_.PushBack(value);
}

template <class Element, NUV_OBJ_TYPE Type>
void TNuvVector<Element, Type>::Insert(std::size_t position, std::size_t count,
                                       const Element& value) {
  CheckSize<Element>(count);
  CheckSize<Element>(Size() + count);
  elements_.Insert(position, count, value);
}

template <class Element, NUV_OBJ_TYPE Type>
CNuvBaseType* TNuvVector<Element, Type>::Clone() const {
  return new TNuvVector(*this);
}

template <class Element, NUV_OBJ_TYPE Type>
bool TNuvVector<Element, Type>::Copy(const CNuvBaseType& other) {
  return value_operations::Copy(*this, other);
}

template <class Element, NUV_OBJ_TYPE Type>
bool TNuvVector<Element, Type>::Compare(const CNuvBaseType& other) const {
  return other.GetType() == Type && AreEqual(*this, static_cast<const TNuvVector&>(other));
}

template <class Element, NUV_OBJ_TYPE Type>
NUV_OBJ_TYPE TNuvVector<Element, Type>::GetType() const noexcept {
  return Type;
}

template class TNuvVector<bool, NUV_OBJ_BOOL_VECTOR>;
template class TNuvVector<double, NUV_OBJ_DOUBLE_VECTOR>;
template class TNuvVector<CNuvString, NUV_OBJ_STRING_VECTOR>;
template class TNuvVector<CNuvPoint, NUV_OBJ_POINT_VECTOR>;
template class TNuvVector<CNuvLine, NUV_OBJ_LINE_VECTOR>;
