#include <cstdio>
#include <cstring>

#include "nuvhost/system/child_process.h"

namespace nuvhost {

std::string Framed(std::string_view message) {
  const std::uint64_t size = message.size();
  std::string framed(reinterpret_cast<const char*>(&size), sizeof size);
  return framed += message;
}

std::optional<std::string_view> Partner::Read() {
  std::uint64_t size = 0;
  while (true) {
    const std::string_view rest = std::string_view(read_).substr(taken_);
    if (rest.size() >= sizeof size) {
      std::memcpy(&size, rest.data(), sizeof size);
      if (rest.size() - sizeof size >= size) break;
    }
    read_.erase(0, taken_);
    taken_ = 0;
    if (!ReadMore()) return std::nullopt;
  }
  const std::string_view message = std::string_view(read_).substr(taken_ + sizeof size, size);
  taken_ += sizeof size + size;
  return message;
}

std::optional<std::string> ReadMessage() {
  std::uint64_t size = 0;
  if (std::fread(&size, sizeof size, 1, stdin) != 1) return std::nullopt;
  std::string message(size, '\0');
  if (std::fread(message.data(), 1, size, stdin) != size) return std::nullopt;
  return message;
}

}  // namespace nuvhost
