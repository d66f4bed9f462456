// What the operations of CNuvBaseType are, for a value class that copies and compares itself.
#pragma once

#include "host/base_type.h"

namespace value_operations {

template <class Value>
bool Copy(Value& value, const CNuvBaseType& other) {
  if (other.GetType() != Value::kType) return false;
  value = static_cast<const Value&>(other);
  return true;
}

template <class Value>
bool Compare(const Value& value, const CNuvBaseType& other) {
  return other.GetType() == Value::kType && value == static_cast<const Value&>(other);
}

}  // namespace value_operations
