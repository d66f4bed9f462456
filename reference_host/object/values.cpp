#include "host/values.h"

#include <utility>

#include "reference_host/object/value_operations.h"

bool CNuvBaseType::Save(IXStorage& /*storage*/) const {
  return false;
}
bool CNuvBaseType::Load(IXStorage& /*storage*/) {
  return false;
}

CNuvString::CNuvString() noexcept = default;
CNuvString::CNuvString(const char* text) : text_(text) {}
CNuvString::CNuvString(const CNuvString& other) = default;
CNuvString::CNuvString(CNuvString&& other) noexcept = default;
CNuvString::~CNuvString() = default;
CNuvString& CNuvString::operator=(const CNuvString& other) = default;
CNuvString& CNuvString::operator=(CNuvString&& other) noexcept = default;
CNuvString& CNuvString::operator=(const char* text) {
  text_ = std::string_view(text == nullptr ? "" : text);
  return *this;
}
CNuvString::operator const char*() const noexcept {
  return text_.c_str();
}
bool operator==(const CNuvString& a, const CNuvString& b) noexcept {
  return a.text_ == b.text_;
}

CNuvBaseType* CNuvBool::Clone() const {
  return new CNuvBool(*this);
}
bool CNuvBool::Copy(const CNuvBaseType& other) {
  return value_operations::Copy(*this, other);
}
bool CNuvBool::Compare(const CNuvBaseType& other) const {
  return value_operations::Compare(*this, other);
}
NUV_OBJ_TYPE CNuvBool::GetType() const noexcept {
  return kType;
}

CNuvBaseType* CNuvDouble::Clone() const {
  return new CNuvDouble(*this);
}
bool CNuvDouble::Copy(const CNuvBaseType& other) {
  return value_operations::Copy(*this, other);
}
bool CNuvDouble::Compare(const CNuvBaseType& other) const {
  return value_operations::Compare(*this, other);
}
NUV_OBJ_TYPE CNuvDouble::GetType() const noexcept {
  return kType;
}

CNuvBaseType* CNuvString::Clone() const {
  return new CNuvString(*this);
}
bool CNuvString::Copy(const CNuvBaseType& other) {
  return value_operations::Copy(*this, other);
}
bool CNuvString::Compare(const CNuvBaseType& other) const {
  return value_operations::Compare(*this, other);
}
NUV_OBJ_TYPE CNuvString::GetType() const noexcept {
  return kType;
}

CNuvBaseType* CNuvLine::Clone() const {
  return new CNuvLine(*this);
}
bool CNuvLine::Copy(const CNuvBaseType& other) {
  return value_operations::Copy(*this, other);
}
bool CNuvLine::Compare(const CNuvBaseType& other) const {
  return value_operations::Compare(*this, other);
}
NUV_OBJ_TYPE CNuvLine::GetType() const noexcept {
  return kType;
}

CNuvBaseType* CNuvCircle::Clone() const {
  return new CNuvCircle(*this);
}
bool CNuvCircle::Copy(const CNuvBaseType& other) {
  return value_operations::Copy(*this, other);
}
bool CNuvCircle::Compare(const CNuvBaseType& other) const {
  return value_operations::Compare(*this, other);
}
NUV_OBJ_TYPE CNuvCircle::GetType() const noexcept {
  return kType;
}

template <class Number, NUV_OBJ_TYPE Type>
CNuvBaseType* TNuvPoint<Number, Type>::Clone() const {
  return new TNuvPoint(*this);
}
template <class Number, NUV_OBJ_TYPE Type>
bool TNuvPoint<Number, Type>::Copy(const CNuvBaseType& other) {
  return value_operations::Copy(*this, other);
}
template <class Number, NUV_OBJ_TYPE Type>
bool TNuvPoint<Number, Type>::Compare(const CNuvBaseType& other) const {
  return value_operations::Compare(*this, other);
}
template <class Number, NUV_OBJ_TYPE Type>
NUV_OBJ_TYPE TNuvPoint<Number, Type>::GetType() const noexcept {
  return Type;
}

template <class Number, NUV_OBJ_TYPE Type>
CNuvBaseType* TNuvRect<Number, Type>::Clone() const {
  return new TNuvRect(*this);
}
template <class Number, NUV_OBJ_TYPE Type>
bool TNuvRect<Number, Type>::Copy(const CNuvBaseType& other) {
  return value_operations::Copy(*this, other);
}
template <class Number, NUV_OBJ_TYPE Type>
bool TNuvRect<Number, Type>::Compare(const CNuvBaseType& other) const {
  return value_operations::Compare(*this, other);
}
template <class Number, NUV_OBJ_TYPE Type>
NUV_OBJ_TYPE TNuvRect<Number, Type>::GetType() const noexcept {
  return Type;
}

template class TNuvPoint<double, NUV_OBJ_POINT>;
template class TNuvRect<double, NUV_OBJ_RECT>;
