#include "host/values.h"

bool CNuvBaseType::Save(IXStorage& /*storage*/) const {
  return false;
}

bool CNuvBaseType::Load(IXStorage& /*storage*/) {
  return false;
}
