// Several characters of a text at once, eight as the bytes of a word.
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

/// A bit for each of the 64 characters from `text` on that is one of the two, the first's lowest.
inline std::uint64_t EachOf(const char* text, char one, char other) {
  const std::uint64_t ones = Bytes(static_cast<unsigned char>(one));
  const std::uint64_t others = Bytes(static_cast<unsigned char>(other));
  std::uint64_t found = 0;
  for (int i = 0; i < 64; i += 8) {
    const std::uint64_t word = WordAt(text + i);
    const std::uint64_t in_bytes = EachZeroByte(word ^ ones) | EachZeroByte(word ^ others);
    // Each byte's bit moves to a place of its own in the highest byte.
    found |= ((in_bytes >> 7) * 0x0102040810204080) >> 56 << i;
  }
  return found;
}

}  // namespace nuvhost
