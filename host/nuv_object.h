// CNuvObject: the host's typed variant value. Every default, input and result is one.
#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "host/base_type.h"
#include "host/values.h"
#include "host/vectors.h"

/// A value of any type, or empty. 16 bytes; it owns what it holds.
///
/// Conversions are exact for the matching type. Booleans and numbers read as each other (true is
/// 1, every number but zero is true); every other conversion between unrelated types gives the
/// wanted type's default and leaves the value alone. Reading never throws. A conversion to a
/// mutable reference makes a value of another type a default one of the wanted type first, so
/// that results are written in place; that may throw std::bad_alloc and then changes nothing.
/// Assigning keeps the storage where the type matches. The value held is always the host's own: a
/// copy made by the host, or one that it made and another module wrote to.
class NUV_OBJECT_API CNuvObject {
 public:
  CNuvObject() : CNuvObject(NUV_OBJ_EMPTY) {}
  /// An empty value of the type; an unknown type number gives the empty value.
  explicit CNuvObject(NUV_OBJ_TYPE type);
  CNuvObject(const CNuvObject& other);
  CNuvObject(CNuvObject&& other) noexcept;
  ~CNuvObject();

  CNuvObject& operator=(const CNuvObject& other);
  CNuvObject& operator=(CNuvObject&& other) noexcept;
  CNuvObject& operator=(const CNuvBaseType& value);
  CNuvObject& operator=(bool value);
  /// An integer is held as the number it is.
  CNuvObject& operator=(int value);
  CNuvObject& operator=(double value);
  CNuvObject& operator=(const char* text);

  /// Makes this an empty value of the type: false, 0, "", (0, 0), an array without elements.
  void SetType(NUV_OBJ_TYPE type);
  void Clear() noexcept;
  NUV_OBJ_TYPE GetType() const noexcept;
  /// The held value; null when empty.
  const CNuvBaseType* Get() const noexcept;

  explicit operator bool() const noexcept;
  /// Truncates toward zero; what does not fit, and NaN, gives -2147483648.
  explicit operator int() const noexcept;
  explicit operator double() const noexcept;
  /// Valid until this value changes.
  explicit operator const char*() const noexcept;

  explicit operator CNuvBool&();
  explicit operator CNuvDouble&();
  explicit operator CNuvString&();
  explicit operator CNuvPoint&();
  explicit operator CNuvLine&();
  explicit operator CNuvBoolVector&();
  explicit operator CNuvDoubleVector&();
  explicit operator CNuvStringVector&();
  explicit operator CNuvPointVector&();
  explicit operator CNuvLineVector&();

  explicit operator const CNuvPoint&() const noexcept;
  explicit operator const CNuvLine&() const noexcept;
  explicit operator const CNuvBoolVector&() const noexcept;
  explicit operator const CNuvDoubleVector&() const noexcept;
  explicit operator const CNuvStringVector&() const noexcept;
  explicit operator const CNuvPointVector&() const noexcept;
  explicit operator const CNuvLineVector&() const noexcept;

  /// Same type and equal content; two empty values are equal.
  friend NUV_OBJECT_API bool operator==(const CNuvObject& a, const CNuvObject& b);

 private:
  struct Layout;
  template <class Value>
  Value& InPlace();
  template <class Value>
  const Value& OrDefault() const noexcept;

  CNuvBaseType* value_ = nullptr;      //  0
  NUV_OBJ_TYPE type_ = NUV_OBJ_EMPTY;  //  8  the held value's type, so that reading needs no call
  std::uint32_t padding_ = 0;          // 12
};

static_assert(std::is_standard_layout_v<CNuvObject> && sizeof(CNuvObject) == 16);
struct CNuvObject::Layout {
  static_assert(offsetof(CNuvObject, value_) == 0 && offsetof(CNuvObject, type_) == 8);
};
