#include "host/nuv_object.h"

#include <memory>
#include <utility>

#include "host/integer.h"

namespace {

std::unique_ptr<CNuvBaseType> MakeValue(NUV_OBJ_TYPE type) {
  switch (type) {
    case NUV_OBJ_BOOL: return std::make_unique<CNuvBool>();
    case NUV_OBJ_DOUBLE: return std::make_unique<CNuvDouble>();
    case NUV_OBJ_STRING: return std::make_unique<CNuvString>();
    case NUV_OBJ_POINT: return std::make_unique<CNuvPoint>();
    case NUV_OBJ_LINE: return std::make_unique<CNuvLine>();
    case NUV_OBJ_CIRCLE: return std::make_unique<CNuvCircle>();
    case NUV_OBJ_RECT: return std::make_unique<CNuvRect>();
    case NUV_OBJ_BOOL_VECTOR: return std::make_unique<CNuvBoolVector>();
    case NUV_OBJ_DOUBLE_VECTOR: return std::make_unique<CNuvDoubleVector>();
    case NUV_OBJ_STRING_VECTOR: return std::make_unique<CNuvStringVector>();
    case NUV_OBJ_POINT_VECTOR: return std::make_unique<CNuvPointVector>();
    case NUV_OBJ_LINE_VECTOR: return std::make_unique<CNuvLineVector>();
    case NUV_OBJ_EMPTY: break;
  }
  return nullptr;
}

}  // namespace

CNuvObject::CNuvObject(NUV_OBJ_TYPE type) {
  SetType(type);
}

CNuvObject::CNuvObject(const CNuvObject& other)
    : value_(other.value_ == nullptr ? nullptr : other.value_->Clone()), type_(other.type_) {}

CNuvObject::CNuvObject(CNuvObject&& other) noexcept
    : value_(std::exchange(other.value_, nullptr)),
      type_(std::exchange(other.type_, NUV_OBJ_EMPTY)) {}

CNuvObject::~CNuvObject() {
  delete value_;
}

CNuvObject& CNuvObject::operator=(CNuvObject&& other) noexcept {
  CNuvObject taken(std::move(other));
  std::swap(value_, taken.value_);
  std::swap(type_, taken.type_);
  return *this;
}

CNuvObject& CNuvObject::operator=(const CNuvObject& other) {
  if (this == &other) return *this;
  if (other.value_ == nullptr) {
    Clear();
    return *this;
  }
  return *this = *other.value_;
}

CNuvObject& CNuvObject::operator=(const CNuvBaseType& value) {
  if (value_ != nullptr && value_->Copy(value)) return *this;
  // The value may be a part of the one held, so that one goes last.
  std::unique_ptr<CNuvBaseType> copy(value.Clone());
  Clear();
  value_ = copy.release();
  type_ = value_->GetType();
  return *this;
}

CNuvObject& CNuvObject::operator=(bool value) {
  InPlace<CNuvBool>() = value;
  return *this;
}

CNuvObject& CNuvObject::operator=(int value) {
  return *this = static_cast<double>(value);
}

CNuvObject& CNuvObject::operator=(double value) {
  InPlace<CNuvDouble>() = value;
  return *this;
}

CNuvObject& CNuvObject::operator=(const char* text) {
  if (type_ == NUV_OBJ_STRING) {
    InPlace<CNuvString>() = text;
  } else {
    *this = CNuvString(text);
  }
  return *this;
}

void CNuvObject::SetType(NUV_OBJ_TYPE type) {
  std::unique_ptr<CNuvBaseType> fresh = MakeValue(type);
  Clear();
  value_ = fresh.release();
  if (value_ != nullptr) type_ = type;
}

void CNuvObject::Clear() noexcept {
  delete std::exchange(value_, nullptr);
  type_ = NUV_OBJ_EMPTY;
}

NUV_OBJ_TYPE CNuvObject::GetType() const noexcept {
  return type_;
}

const CNuvBaseType* CNuvObject::Get() const noexcept {
  return value_;
}

template <class Value>
Value& CNuvObject::InPlace() {
  if (type_ != Value::kType) SetType(Value::kType);
  return static_cast<Value&>(*value_);
}

template <class Value>
const Value& CNuvObject::OrDefault() const noexcept {
  static const Value kDefault;
  return type_ == Value::kType ? static_cast<const Value&>(*value_) : kDefault;
}

CNuvObject::operator bool() const noexcept {
  if (type_ == NUV_OBJ_DOUBLE) return OrDefault<CNuvDouble>() != 0.0;
  return OrDefault<CNuvBool>();
}

CNuvObject::operator int() const noexcept {
  return NuvTruncate(static_cast<double>(*this));
}

CNuvObject::operator double() const noexcept {
  if (type_ == NUV_OBJ_DOUBLE) return static_cast<const CNuvDouble&>(*value_);
  return OrDefault<CNuvBool>() ? 1.0 : 0.0;
}

CNuvObject::operator const char*() const noexcept {
  return OrDefault<CNuvString>();
}

CNuvObject::operator CNuvBool&() {
  return InPlace<CNuvBool>();
}
CNuvObject::operator CNuvDouble&() {
  return InPlace<CNuvDouble>();
}
CNuvObject::operator CNuvString&() {
  return InPlace<CNuvString>();
}
CNuvObject::operator CNuvPoint&() {
  return InPlace<CNuvPoint>();
}
CNuvObject::operator CNuvLine&() {
  return InPlace<CNuvLine>();
}
CNuvObject::operator CNuvBoolVector&() {
  return InPlace<CNuvBoolVector>();
}
CNuvObject::operator CNuvDoubleVector&() {
  return InPlace<CNuvDoubleVector>();
}
CNuvObject::operator CNuvStringVector&() {
  return InPlace<CNuvStringVector>();
}
CNuvObject::operator CNuvPointVector&() {
  return InPlace<CNuvPointVector>();
}
CNuvObject::operator CNuvLineVector&() {
  return InPlace<CNuvLineVector>();
}

CNuvObject::operator const CNuvPoint&() const noexcept {
  return OrDefault<CNuvPoint>();
}
CNuvObject::operator const CNuvLine&() const noexcept {
  return OrDefault<CNuvLine>();
}
CNuvObject::operator const CNuvBoolVector&() const noexcept {
  return OrDefault<CNuvBoolVector>();
}
CNuvObject::operator const CNuvDoubleVector&() const noexcept {
  return OrDefault<CNuvDoubleVector>();
}
CNuvObject::operator const CNuvStringVector&() const noexcept {
  return OrDefault<CNuvStringVector>();
}
CNuvObject::operator const CNuvPointVector&() const noexcept {
  return OrDefault<CNuvPointVector>();
}
CNuvObject::operator const CNuvLineVector&() const noexcept {
  return OrDefault<CNuvLineVector>();
}

bool operator==(const CNuvObject& a, const CNuvObject& b) {
  if (a.Get() == nullptr || b.Get() == nullptr) return a.Get() == b.Get();
  return a.Get()->Compare(*b.Get());
}
