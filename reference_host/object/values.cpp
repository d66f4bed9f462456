#include "host/values.h"

bool CNuvBaseType::Save(IXStorage& /*storage*/) const {
  return false;
}

bool CNuvBaseType::Load(IXStorage& /*storage*/) {
  return false;
}

template class TNuvPoint<double, NUV_OBJ_POINT>;
template class TNuvRect<double, NUV_OBJ_RECT>;
