// CNuvBaseType: what every typed value of the host can do, and the numbers of the value types.
//
// Values belong to the host: a value's virtual functions, and whatever allocates or frees for it,
// are the host's own, so that values outlive the plug-in that wrote them.
#pragma once

#include <cstdint>

#include "host/export.h"

/// The type of a value. The numbers of the arrays are fixed: 4096 plus the element's kind.
enum NUV_OBJ_TYPE : std::uint32_t {
  NUV_OBJ_EMPTY = 0,
  NUV_OBJ_BOOL = 1,
  NUV_OBJ_DOUBLE = 3,
  NUV_OBJ_STRING = 4,
  NUV_OBJ_POINT = 6,
  NUV_OBJ_LINE = 7,
  NUV_OBJ_CIRCLE = 8,
  NUV_OBJ_RECT = 9,
  NUV_OBJ_BOOL_VECTOR = 4096,
  NUV_OBJ_DOUBLE_VECTOR = 4098,
  NUV_OBJ_STRING_VECTOR = 4099,
  NUV_OBJ_POINT_VECTOR = 4100,
  NUV_OBJ_LINE_VECTOR = 4102,
};

/// The host's storage for programs; opaque here.
class IXStorage;

/// Base of all typed values.
class NUV_OBJECT_API CNuvBaseType {
 public:
  virtual ~CNuvBaseType() = default;

  /// A new value with the same type and content, owned by the caller.
  virtual CNuvBaseType* Clone() const = 0;
  /// Takes over the other value's content; false, and nothing happens, where its type differs.
  virtual bool Copy(const CNuvBaseType& other) = 0;
  /// Whether the other value has the same type and equal content (a NaN equals nothing).
  virtual bool Compare(const CNuvBaseType& other) const = 0;
  virtual NUV_OBJ_TYPE GetType() const noexcept = 0;
  /// Writes the value to, or reads it from, the host's storage; false where it cannot.
  virtual bool Save(IXStorage& storage) const;
  virtual bool Load(IXStorage& storage);

 protected:
  CNuvBaseType() = default;
  CNuvBaseType(const CNuvBaseType&) = default;
  CNuvBaseType& operator=(const CNuvBaseType&) = default;
};
