// ElementSet: which values an array holds, answered in constant time.
//
// A filter of one bit for each of sixteen values tells most that are not there without a branch
// that the processor guesses wrong; the others are looked up in chains of elements of one hash.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

namespace formula {

/// Two odd factors without a pattern.
inline constexpr std::uint64_t kFactor = 0x94d049bb133111ebU;
inline constexpr std::uint64_t kOtherFactor = 0x9e3779b97f4a7c15U;

/// Spreads differences anywhere in the word over its upper bits.
inline std::uint64_t Mix(std::uint64_t bits) {
  return (bits ^ bits >> 32) * kOtherFactor;
}

/// Bits that are equal where the numbers are: both zeros have the same.
inline std::uint64_t EqualBits(double number) {
  return std::bit_cast<std::uint64_t>(number + 0.0);
}

template <class Word>
std::uint64_t WordAt(const char* text) {
  Word word = 0;
  std::memcpy(&word, text, sizeof word);
  return word;
}

/// Eight bytes at a time. The last words may overlap, which the length makes unambiguous.
inline std::uint64_t Hash(std::string_view text) {
  const std::size_t size = text.size();
  const char* const end = text.data() + size;
  std::uint64_t last = 0;
  if (size >= 8) {
    last = WordAt<std::uint64_t>(end - 8);
  } else if (size >= 4) {
    last = WordAt<std::uint32_t>(end - 4) << 32 | WordAt<std::uint32_t>(text.data());
  } else {
    for (const char character : text) last = last << 8 | static_cast<unsigned char>(character);
  }
  std::uint64_t hash = Mix(last) + size;
  for (const char* at = text.data(); end - at > 8; at += 8) {
    hash = Mix(hash ^ WordAt<std::uint64_t>(at));
  }
  return Mix(hash);
}

inline std::uint64_t Hash(double number) {
  // Integers held as doubles differ in their upper bits alone.
  return Mix(EqualBits(number) * kFactor);
}
inline std::uint64_t Hash(double a, double b) {
  return Mix(EqualBits(a) * kFactor + std::rotl(EqualBits(b), 32));
}
/// Equality is that of the element type, and `HashOf` gives equal elements one hash. The set refers
/// to the array it was made from.
template <class Element, class HashOf>
class ElementSet {
 public:
  ElementSet(const Element* elements, std::size_t size)
      : elements_(elements),
        bits_(static_cast<int>(std::bit_width(size)) + 4),
        filter_((std::size_t{1} << bits_) / 64 + 1),
        first_(std::size_t{1} << (bits_ - 3)),
        next_(std::make_unique_for_overwrite<std::uint32_t[]>(size + 1)) {
    for (std::size_t i = 0; i < size; ++i) {
      // A value that equals nothing is never found; many of them would make one long chain.
      // NOLINTNEXTLINE(misc-redundant-expression): a NaN differs from itself.
      if (!(elements[i] == elements[i])) continue;
      const std::size_t cell = CellOf(elements[i]);
      filter_[cell / 64] |= std::uint64_t{1} << cell % 64;
      next_[i + 1] = std::exchange(first_[cell / 8], static_cast<std::uint32_t>(i + 1));
    }
  }
  bool Contains(const Element& value) const {
    const std::size_t cell = CellOf(value);
    if ((filter_[cell / 64] >> cell % 64 & 1) == 0) return false;
    std::uint32_t at = first_[cell / 8];
    while (at != 0 && !(elements_[at - 1] == value)) at = next_[at];
    return at != 0;
  }

 private:
  std::size_t CellOf(const Element& value) const { return HashOf()(value) >> (64 - bits_); }

  const Element* elements_;
  int bits_;
  std::vector<std::uint64_t> filter_;
  /// The last element of each chain and the one before each element, counted from 1; 0 for none.
  std::vector<std::uint32_t> first_;
  std::unique_ptr<std::uint32_t[]> next_;
};

}  // namespace formula
