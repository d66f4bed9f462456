#include "algorithm/sort.h"

#include <algorithm>
#include <array>
#include <bit>
#include <functional>
#include <memory>
#include <numeric>

namespace formula {
namespace {

using Key = std::uint64_t;

constexpr Key kSign = Key{1} << 63;

/// Unsigned keys in the order of the numbers, NaN at the ends.
Key ToKey(double number) {
  const Key bits = std::bit_cast<Key>(number);
  return bits ^ ((Key{0} - (bits >> 63)) | kSign);  // negative: all bits, else the sign's
}

double ToNumber(Key key) {
  return std::bit_cast<double>(key ^ (((key >> 63) - 1) | kSign));
}

constexpr std::size_t kInsertionSize = 16;
constexpr std::size_t kRadixSizeFrom = 64;

template <class Before>
void InsertionSort(Key* keys, std::size_t size, Before before) {
  for (std::size_t i = 1; i < size; ++i) {
    const Key key = keys[i];
    std::size_t at = i;
    for (; at > 0 && before(key, keys[at - 1]); --at) keys[at] = keys[at - 1];
    keys[at] = key;
  }
}

template <class Before>
void SortFew(Key* keys, std::size_t size, Before before) {
  if (size <= kInsertionSize) {
    InsertionSort(keys, size, before);
  } else if (!std::is_sorted(keys, keys + size, before)) {  // equal keys often are
    std::sort(keys, keys + size, before);
  }
}

// Without lanes, bigger arrays are sorted by some of the highest bits in which keys differ, a digit
// a pass from the lowest, and then the few that agree in all of those are put right.
template <int kDigitBits>
using Buckets = std::array<std::uint32_t, std::size_t{1} << kDigitBits>;

// Larger digits pay where their buckets are few beside the keys.
constexpr std::size_t kLargeDigitsFrom = 8000;
// What the buckets can count.
constexpr std::size_t kRadixSizeTo = ~std::uint32_t{0};

template <int kDigitBits>
std::size_t Digit(Key key, int shift) {
  return (key >> shift) & ((std::size_t{1} << kDigitBits) - 1);
}

/// One stable pass. Keys lie in the scratch and, after every other pass, as bits in `out`.
template <int kDigitBits, class From, class To>
void Scatter(To* to, const From* from, std::size_t size, int shift, Buckets<kDigitBits>& buckets) {
  std::uint32_t begin = 0;
  for (std::uint32_t& bucket : buckets) {
    const std::uint32_t count = bucket;
    bucket = begin;
    begin += count;
  }
  for (std::size_t i = 0; i < size; ++i) {
    const Key key = std::bit_cast<Key>(from[i]);
    to[buckets[Digit<kDigitBits>(key, shift)]++] = std::bit_cast<To>(key);
  }
}

/// Sorts the neighbours that agree above `shift`.
template <class Before>
void SortWithinTops(Key* keys, std::size_t size, int shift, Before before) {
  for (std::size_t begin = 0; begin + 1 < size;) {
    const Key top = keys[begin] >> shift;
    std::size_t end = begin + 1;
    while (end < size && keys[end] >> shift == top) ++end;
    if (end - begin > 1) SortFew(keys + begin, end - begin, before);
    begin = end;
  }
}

/// Makes the keys key_of(0), key_of(1), ... and sorts them by their digits from the bit `low` on;
/// keys equal in those keep their order. `spare` takes them in between.
template <int kDigits, int kDigitBits, class KeyOf>
void SortByDigits(Key* keys, double* spare, std::size_t size, int low, KeyOf key_of) {
  std::array<Buckets<kDigitBits>, kDigits> counts{};
  for (std::size_t i = 0; i < size; ++i) {
    const Key key = key_of(i);
    keys[i] = key;
    for (int digit = 0; digit < kDigits; ++digit) {
      ++counts[digit][Digit<kDigitBits>(key, low + digit * kDigitBits)];
    }
  }
  const Key any = keys[0];
  bool in_spare = false;
  for (int digit = 0; digit < kDigits; ++digit) {
    const int shift = low + digit * kDigitBits;
    Buckets<kDigitBits>& buckets = counts[digit];
    if (buckets[Digit<kDigitBits>(any, shift)] == size) continue;  // all the same
    if (in_spare) {
      Scatter<kDigitBits>(keys, spare, size, shift, buckets);
    } else {
      Scatter<kDigitBits>(spare, keys, size, shift, buckets);
    }
    in_spare = !in_spare;
  }
  if (in_spare) {
    for (std::size_t i = 0; i < size; ++i) keys[i] = std::bit_cast<Key>(spare[i]);
  }
}

/// The same for keys of `bits` bits, by as many of the highest as pay, none below `bottom`.
/// Returns the lowest bit that counted.
template <class KeyOf>
int SortByTops(Key* keys, double* spare, std::size_t size, int bottom, int bits, KeyOf key_of) {
  if (size < kLargeDigitsFrom) {
    const int low = std::max(bottom, bits - 3 * 8);
    SortByDigits<3, 8>(keys, spare, size, low, key_of);
    return low;
  }
  const int low = std::max(bottom, bits - 3 * 11);
  SortByDigits<3, 11>(keys, spare, size, low, key_of);
  return low;
}

bool RadixPays(std::size_t size) {
  return size >= kRadixSizeFrom && size <= kRadixSizeTo;
}

}  // namespace

void SortNumbers(double* out, const double* in, std::size_t size, bool descending,
                 const Kernels& kernels) {
  if (size == 0) return;
  if (kernels.sort_numbers != nullptr) {
    kernels.sort_numbers(out, in, size, descending);
    return;
  }
  const auto keys = std::make_unique_for_overwrite<Key[]>(size);
  Key* const scratch = keys.get();
  Key smallest = ~Key{0};
  Key largest = 0;
  bool sorted = true;
  for (std::size_t i = 0; i < size; ++i) {
    const Key key = ToKey(in[i]);
    sorted &= key >= largest;  // the largest so far
    smallest = std::min(smallest, key);
    largest = std::max(largest, key);
    scratch[i] = key;
  }
  Key base = 0;
  if (sorted) {
    // nothing left to do
  } else if (!RadixPays(size)) {
    SortFew(scratch, size, std::less<>());
  } else {
    base = smallest;
    const int bits = static_cast<int>(std::bit_width(largest - smallest));
    const int low = SortByTops(scratch, out, size, 0, bits,
                               [=](std::size_t i) { return scratch[i] - smallest; });
    if (low > 0) SortWithinTops(scratch, size, low, std::less<>());
  }
  if (descending) {
    for (std::size_t i = 0; i < size; ++i) out[size - 1 - i] = ToNumber(scratch[i] + base);
  } else {
    for (std::size_t i = 0; i < size; ++i) out[i] = ToNumber(scratch[i] + base);
  }
}

void SortIndices(std::uint64_t* indices, const std::uint64_t* keys, std::size_t size, double* spare,
                 const Kernels& kernels) {
  const auto before = [keys](Key a, Key b) {
    return keys[a] != keys[b] ? keys[a] < keys[b] : a < b;
  };
  const bool sorted = std::is_sorted(keys, keys + size);
  if (sorted || (kernels.sort_indexed == nullptr && !RadixPays(size))) {
    std::iota(indices, indices + size, Key{0});
    if (!sorted) SortFew(indices, size, before);
    return;
  }
  // The highest bits in which keys differ stand above the index, which says what the rest are.
  const int index_bits = IndexBits(size);
  const Key index_mask = (Key{1} << index_bits) - 1;
  int low = index_bits;
  bool tie = true;
  if (kernels.sort_indexed != nullptr) {
    if (!kernels.sort_indexed(indices, keys, size)) return;
  } else {
    Key smallest = ~Key{0};
    Key largest = 0;
    for (std::size_t i = 0; i < size; ++i) {
      smallest = std::min(smallest, keys[i]);
      largest = std::max(largest, keys[i]);
    }
    const int bits = static_cast<int>(std::bit_width(largest - smallest));
    const int dropped = std::max(0, bits - (63 - index_bits));
    low = SortByTops(indices, spare, size, low, index_bits + bits - dropped, [=](std::size_t i) {
      return (keys[i] - smallest) >> dropped << index_bits | i;
    });
    tie = low > index_bits || dropped > 0;
  }
  if (tie) {
    SortWithinTops(indices, size, low,
                   [=](Key a, Key b) { return before(a & index_mask, b & index_mask); });
  }
  for (std::size_t i = 0; i < size; ++i) indices[i] &= index_mask;
}

}  // namespace formula
