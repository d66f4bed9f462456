#include "host/vectors.h"

#include "host/setting.h"

std::size_t NuvVectorLimit(std::size_t element_size) noexcept {
  constexpr std::size_t kDefaultBytes = std::size_t{1} << 30;
  const std::size_t elements = CNuvSetting::Inst().GetVectorLimit();
  return elements != 0 ? elements : kDefaultBytes / element_size;
}
