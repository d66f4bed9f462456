// ElementSet: which values an array holds, answered in constant time.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

#include "host/values.h"

namespace formula {

/// Spreads a number's differences over the whole word; integers held as doubles differ in their
/// upper bits alone.
inline std::uint64_t Mix(std::uint64_t bits) {
  bits = (bits ^ (bits >> 32)) * 0x9e3779b97f4a7c15U;
  return (bits ^ (bits >> 29)) * 0xbf58476d1ce4e5b9U;
}

/// Bits that are equal where the numbers are: both zeros have the same. A NaN, which equals
/// nothing, has those of no other number.
inline std::uint64_t EqualBits(double number) {
  return std::bit_cast<std::uint64_t>(number + 0.0);
}

/// Bits of a NaN, that mark a free slot.
inline constexpr std::uint64_t kFree = ~std::uint64_t{0};

template <class Word>
std::uint64_t WordAt(const char* text) {
  Word word = 0;
  std::memcpy(&word, text, sizeof word);
  return word;
}

/// Eight bytes at a time. The last words may overlap, which the length makes unambiguous.
inline std::uint64_t HashText(std::string_view text) {
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

/// A value as it stands in the set. Equality is that of the element type, but for a value that
/// equals nothing, which is never stored. For numbers IsFreeOr is one branch, since no processor
/// foresees whether a search ends at the value or at a free slot.
template <class Element>
struct SetSlot;

template <>
struct SetSlot<double> {
  SetSlot() = default;
  explicit SetSlot(double number) : bits(EqualBits(number)) {}
  static bool EqualsNothing(double number) { return number != number; }
  bool IsFree() const { return bits == kFree; }
  std::uint64_t Hash() const { return Mix(bits); }
  bool IsFreeOr(const SetSlot& value) const { return std::min(bits ^ value.bits, ~bits) == 0; }

  std::uint64_t bits = kFree;
};

/// Two numbers, without what else a value of the host's carries.
struct PairSlot {
  bool IsFree() const { return a == kFree; }
  std::uint64_t Hash() const { return Mix(a * 0x94d049bb133111ebU + std::rotl(b, 32)); }
  bool IsFreeOr(const PairSlot& value) const {
    return std::min((a ^ value.a) | (b ^ value.b), ~a) == 0;
  }

  std::uint64_t a = kFree;
  std::uint64_t b = 0;
};

template <>
struct SetSlot<CNuvPoint> : PairSlot {
  SetSlot() = default;
  explicit SetSlot(const CNuvPoint& point) : PairSlot{EqualBits(point.x), EqualBits(point.y)} {}
  static bool EqualsNothing(const CNuvPoint& point) { return !(point == point); }
};

template <>
struct SetSlot<CNuvLine> : PairSlot {
  SetSlot() = default;
  explicit SetSlot(const CNuvLine& line) : PairSlot{EqualBits(line.a), EqualBits(line.d)} {}
  static bool EqualsNothing(const CNuvLine& line) { return !(line == line); }
};

/// A text stays where it is, in its array.
template <>
struct SetSlot<CNuvString> {
  SetSlot() = default;
  explicit SetSlot(const CNuvString& string) : text(&string), hash(HashText(string.View())) {}
  static bool EqualsNothing(const CNuvString& /*string*/) { return false; }
  bool IsFree() const { return text == nullptr; }
  std::uint64_t Hash() const { return hash; }
  bool IsFreeOr(const SetSlot& value) const {
    return IsFree() || (hash == value.hash && *text == *value.text);
  }

  const CNuvString* text = nullptr;
  std::uint64_t hash = 0;
};

/// Open addressing, at most a quarter full. It refers to the array it was made from.
template <class Element>
class ElementSet {
 public:
  ElementSet(const Element* begin, const Element* end)
      : slots_(std::bit_ceil(4 * static_cast<std::size_t>(end - begin))),
        shift_(64 - std::countr_zero(slots_.size())) {
    for (; begin != end; ++begin) {
      const Slot slot(*begin);
      if (!Slot::EqualsNothing(*begin)) slots_[Find(slot)] = slot;
    }
  }
  bool Contains(const Element& value) const { return !slots_[Find(Slot(value))].IsFree(); }

 private:
  using Slot = SetSlot<Element>;

  /// Where the value stands, or the free slot where it would.
  std::size_t Find(const Slot& wanted) const {
    std::size_t at = wanted.Hash() >> shift_;
    while (!slots_[at].IsFreeOr(wanted)) at = (at + 1) & (slots_.size() - 1);
    return at;
  }

  std::vector<Slot> slots_;
  int shift_;
};

}  // namespace formula
