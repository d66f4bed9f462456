#include "instr/array/math/sort.h"

#include <algorithm>
#include <array>
#include <bit>

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

void InsertionSort(Key* keys, std::size_t size) {
  for (std::size_t i = 1; i < size; ++i) {
    const Key key = keys[i];
    std::size_t at = i;
    for (; at > 0 && keys[at - 1] > key; --at) keys[at] = keys[at - 1];
    keys[at] = key;
  }
}

void SortFew(Key* keys, std::size_t size) {
  if (size <= kInsertionSize) {
    InsertionSort(keys, size);
  } else {
    std::sort(keys, keys + size);
  }
}

// Bigger arrays are sorted by some of the highest bits in which keys differ, a digit a pass from
// the lowest, and then the few that agree in all of those are put right.
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
void SortWithinTops(Key* keys, std::size_t size, int shift) {
  for (std::size_t begin = 0; begin + 1 < size;) {
    const Key top = keys[begin] >> shift;
    std::size_t end = begin + 1;
    while (end < size && keys[end] >> shift == top) ++end;
    if (end - begin > 1) SortFew(keys + begin, end - begin);
    begin = end;
  }
}

/// Sorts the keys and leaves them less `smallest`. `spare` takes them in between.
template <int kDigits, int kDigitBits>
void RadixSort(Key* keys, double* spare, std::size_t size, Key smallest, Key largest) {
  const int bits = static_cast<int>(std::bit_width(largest - smallest));
  const int low = std::max(0, bits - kDigits * kDigitBits);
  std::array<Buckets<kDigitBits>, kDigits> counts{};
  for (std::size_t i = 0; i < size; ++i) {
    const Key key = keys[i] - smallest;
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
  if (low > 0) SortWithinTops(keys, size, low);
}

}  // namespace

void SortNumbers(double* out, const double* in, std::size_t size, bool descending,
                 std::uint64_t* scratch) {
  if (size == 0) return;
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
  } else if (size < kRadixSizeFrom || size > kRadixSizeTo) {
    SortFew(scratch, size);
  } else {
    base = smallest;
    (size < kLargeDigitsFrom ? RadixSort<3, 8> : RadixSort<3, 11>)(scratch, out, size, smallest,
                                                                   largest);
  }
  if (descending) {
    for (std::size_t i = 0; i < size; ++i) out[size - 1 - i] = ToNumber(scratch[i] + base);
  } else {
    for (std::size_t i = 0; i < size; ++i) out[i] = ToNumber(scratch[i] + base);
  }
}

}  // namespace formula
