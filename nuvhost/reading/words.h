// Eight characters of a text at once, as the bytes of a word.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

namespace nuvhost {

/// A word with the byte at each of its places.
constexpr std::uint64_t Bytes(unsigned char byte) {
  return std::uint64_t{0x0101010101010101} * byte;
}

/// A bit in each byte of a word that is zero, at least up to the first of them (Mycroft 1987).
constexpr std::uint64_t ZeroBytes(std::uint64_t word) {
  return (word - Bytes(0x01)) & ~word & Bytes(0x80);
}

/// The first of a text's characters in the lowest byte.
inline std::uint64_t WordAt(const char* text) {
  static_assert(std::endian::native == std::endian::little);
  std::uint64_t word = 0;
  std::memcpy(&word, text, sizeof word);
  return word;
}

/// A bit in each byte of a word that is zero, and in no other.
constexpr std::uint64_t EachZeroByte(std::uint64_t word) {
  return ~(((word & Bytes(0x7F)) + Bytes(0x7F)) | word | Bytes(0x7F));
}

}  // namespace nuvhost
