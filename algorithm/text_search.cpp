#include "algorithm/text_search.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>

#if defined(__aarch64__)
#include <arm_neon.h>
#endif

namespace formula {
namespace {

using Characters [[gnu::vector_size(16)]] = signed char;

/// Bit i: lane i, whose bits are all set or none, is set.
std::uint32_t Bits(Characters lanes) {
#if defined(__aarch64__)
  constexpr uint8x16_t kPlaces{1, 2, 4, 8, 16, 32, 64, 128, 1, 2, 4, 8, 16, 32, 64, 128};
  const uint8x16_t set = reinterpret_cast<uint8x16_t>(lanes) & kPlaces;
  return vaddv_u8(vget_low_u8(set)) | std::uint32_t{vaddv_u8(vget_high_u8(set))} << 8;
#else
  using Chars [[gnu::vector_size(16)]] = char;
  return static_cast<std::uint32_t>(__builtin_ia32_pmovmskb128(reinterpret_cast<Chars>(lanes)));
#endif
}

constexpr std::size_t kBlock = 32;

/// The first and the last character of what is sought, to be held against a block of positions.
class Ends {
 public:
  explicit Ends(std::string_view what)
      : first_(static_cast<signed char>(what.front()) - Characters{}),
        last_(static_cast<signed char>(what.back()) - Characters{}),
        distance_(what.size() - 1) {}
  /// Bit i: both fit at text[i].
  std::uint32_t Fitting(const char* text) const {
    return FittingHalf(text) | FittingHalf(text + kBlock / 2) << kBlock / 2;
  }

 private:
  std::uint32_t FittingHalf(const char* text) const {
    return Bits((Load(text) == first_) & (Load(text + distance_) == last_));
  }
  static Characters Load(const char* from) {
    Characters characters;
    std::memcpy(&characters, from, sizeof characters);
    return characters;
  }
  Characters first_;
  Characters last_;
  std::size_t distance_;
};

/// How far two texts agree, rounded down to whole words where they differ within one.
std::size_t Agreement(const char* a, const char* b, std::size_t length) {
  std::size_t i = 0;
  for (; i + sizeof(std::uint64_t) <= length; i += sizeof(std::uint64_t)) {
    if (std::memcmp(a + i, b + i, sizeof(std::uint64_t)) != 0) return i;
  }
  while (i < length && a[i] == b[i]) ++i;
  return i;
}

/// How much of `what` ends with `next`, where `matched` characters of it ended just before.
template <class Iterator>
std::size_t Advance(Iterator what, const std::vector<std::size_t>& borders, std::size_t matched,
                    char next) {
  while (matched > 0 && what[matched] != next) matched = borders[matched - 1];
  return what[matched] == next ? matched + 1 : matched;
}

/// For every beginning of `what`, by its last character: how much of `what` it also ends with,
/// short of itself.
template <class Iterator>
std::vector<std::size_t> Borders(Iterator what, std::size_t size) {
  std::vector<std::size_t> borders(size);
  std::size_t matched = 0;
  for (std::size_t i = 1; i < size; ++i) {
    matched = Advance(what, borders, matched, what[i]);
    borders[i] = matched;
  }
  return borders;
}

/// How many characters of the range stand before the end of the first occurrence, by Knuth,
/// Morris and Pratt's method; kNone where there is no occurrence.
template <class Iterator>
std::size_t EndOfFirst(Iterator begin, Iterator end, Iterator what,
                       const std::vector<std::size_t>& borders) {
  std::size_t matched = 0;
  for (Iterator at = begin; at != end; ++at) {
    matched = Advance(what, borders, matched, *at);
    if (matched == borders.size()) return static_cast<std::size_t>(at - begin) + 1;
  }
  return TextSearch::kNone;
}

}  // namespace

std::size_t TextSearch::Next(std::size_t from) {
  if (from > text_.size() || what_.size() > text_.size() - from) return kNone;
  if (what_.empty()) return from;
  if (what_.size() == 1) return text_.find(what_[0], from);

  std::size_t at = from;
  const std::size_t end = text_.size() - what_.size() + 1;
  const Ends ends(what_);
  while (budget_ > 0 && at + kBlock <= end) {
    for (std::uint32_t left = ends.Fitting(text_.data() + at); left != 0; left &= left - 1) {
      const std::size_t candidate = at + static_cast<std::size_t>(std::countr_zero(left));
      if (IsAt(candidate)) return candidate;
    }
    at += kBlock;
  }
  for (; budget_ > 0 && at < end; ++at) {
    if (text_[at] == what_.front() && IsAt(at)) return at;
  }
  if (at >= end) return kNone;

  if (borders_.empty()) borders_ = Borders(what_.begin(), what_.size());
  const std::string_view rest = text_.substr(at);
  const std::size_t found = EndOfFirst(rest.begin(), rest.end(), what_.begin(), borders_);
  return found == kNone ? kNone : at + found - what_.size();
}

std::size_t TextSearch::Last() {
  if (what_.size() > text_.size()) return kNone;
  if (what_.empty()) return text_.size();

  std::size_t end = text_.size() - what_.size() + 1;  // behind the positions left
  const Ends ends(what_);
  while (budget_ > 0 && end >= kBlock) {
    const std::size_t at = end - kBlock;
    for (std::uint32_t left = ends.Fitting(text_.data() + at); left != 0;) {
      const auto bit = static_cast<unsigned>(std::bit_width(left)) - 1;
      if (IsAt(at + bit)) return at + bit;
      left ^= 1U << bit;
    }
    end = at;
  }
  for (; budget_ > 0 && end > 0; --end) {
    if (text_[end - 1] == what_.front() && IsAt(end - 1)) return end - 1;
  }
  if (end == 0) return kNone;

  const std::string_view rest = text_.substr(0, end - 1 + what_.size());
  const std::size_t found =
      EndOfFirst(rest.rbegin(), rest.rend(), what_.rbegin(), Borders(what_.rbegin(), what_.size()));
  return found == kNone ? kNone : rest.size() - found;
}

bool TextSearch::IsAt(std::size_t position) {
  const std::size_t agreed = Agreement(text_.data() + position, what_.data(), what_.size());
  budget_ -= std::min(agreed, budget_);
  return agreed == what_.size();
}

}  // namespace formula
