#include "host/vectors.h"

#include "host/setting.h"

std::size_t NuvVectorLimit(std::size_t element_size) noexcept {
  constexpr std::size_t kDefaultBytes = std::size_t{1} << 30;
  const std::size_t elements = CNuvSetting::Inst().GetVectorLimit();
  return elements != 0 ? elements : kDefaultBytes / element_size;
}

template class TNuvVector<bool, NUV_OBJ_BOOL_VECTOR>;
template class TNuvVector<double, NUV_OBJ_DOUBLE_VECTOR>;
template class TNuvVector<CNuvString, NUV_OBJ_STRING_VECTOR>;
template class TNuvVector<CNuvPoint, NUV_OBJ_POINT_VECTOR>;
template class TNuvVector<CNuvLine, NUV_OBJ_LINE_VECTOR>;
