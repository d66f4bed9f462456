#include "host/os.h"

#include <chrono>
#include <cstring>
#include <string>

#include "reference_host/os/error_text.h"

double CNuvOs::GetMSecTime() noexcept {
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  return std::chrono::duration<double, std::milli>(now).count();
}

void* CNuvOs::Memset(void* target, int value, std::size_t count) noexcept {
  return std::memset(target, value, count);
}

void* CNuvOs::Memcpy(void* target, const void* source, std::size_t count) noexcept {
  return std::memcpy(target, source, count);
}

void CNuvOsError::GetErrorMsg(std::uint32_t code, CStdStr& text) {
  text = ErrorText(code);
  if (text.Size() == 0) text = "Error " + std::to_string(code);
}
