// Bytes: a fuzz engine's input, read as whatever a target asks for.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace fuzz {

/// Never at its end: behind the last byte stands the first again, changed, so that few bytes make
/// many values.
class Bytes {
 public:
  explicit Bytes(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

  std::uint8_t Next() {
    if (bytes_.empty()) return 0;
    const std::size_t round = at_ / bytes_.size();
    return static_cast<std::uint8_t>(bytes_[at_++ % bytes_.size()] ^ round * 151);
  }
  std::uint64_t Next(int count) {
    std::uint64_t value = 0;
    for (; count > 0; --count) value = value << 8 | Next();
    return value;
  }
  bool Flag() { return Next() % 2 != 0; }
  /// From 0 to below `end`.
  std::size_t Below(std::size_t end) { return Next(end > 256 ? 2 : 1) % end; }
  /// What was not yet read.
  std::string Rest() const {
    const auto rest = bytes_.subspan(at_ < bytes_.size() ? at_ : bytes_.size());
    return {rest.begin(), rest.end()};
  }

 private:
  std::span<const std::uint8_t> bytes_;
  std::size_t at_ = 0;
};

}  // namespace fuzz
