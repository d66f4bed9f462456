// Kernels: the inner loops of the number-array instructions, over plain pointers.
//
// There are tables of the same functions, for the lanes of two numbers that every processor has,
// for the four of AVX2 and the eight of AVX-512. All give the bits of the plain formula on every
// element (of two NaN operands either may be the result's payload, and the sign of a new NaN is the
// processor's).
#pragma once

#include <cstddef>
#include <cstdint>

namespace formula {

/// How many bits the indices of so many elements need.
constexpr int IndexBits(std::size_t size) {
  return 64 - __builtin_clzll(size | 1);
}

/// An element and its index.
struct Extreme {
  double value;
  std::size_t index;
};

struct Extremes {
  Extreme maximum;
  Extreme minimum;
};

/// Each writes `size` elements to `out`, which must not overlap an input but may, except for
/// `reverse`, be one.
struct Kernels {
  using OneArray = void(double* out, const double* in, std::size_t size);
  using TwoArrays = void(double* out, const double* a, const double* b, std::size_t size);

  OneArray* absolute;
  OneArray* reverse;
  TwoArrays* subtract;
  TwoArrays* add;
  TwoArrays* multiply;

  void (*fill)(double* out, std::size_t size, double value);
  void (*scale)(double* out, const double* in, std::size_t size, double factor);
  void (*offset)(double* out, const double* in, std::size_t size, double summand);
  /// in * factor + summand, rounded twice.
  void (*scale_offset)(double* out, const double* in, std::size_t size, double factor,
                       double summand);

  /// `above` where at or above the limit, else `below`.
  void (*threshold)(double* out, const double* in, std::size_t size, double limit, double above,
                    double below);
  /// `above` where at or above `high`, else `below` where below `low`, else `between`.
  void (*threshold_band)(double* out, const double* in, std::size_t size, double high, double low,
                         double above, double between, double below);
  void (*clip_low)(double* out, const double* in, std::size_t size, double limit, double below);
  void (*clip_high)(double* out, const double* in, std::size_t size, double limit, double above);

  /// The best of at least one element: a strictly better one replaces those before it, so the
  /// first of equals wins, a NaN never wins, and a NaN at 0 is never beaten.
  Extreme (*maximum)(const double* in, std::size_t size);
  Extreme (*minimum)(const double* in, std::size_t size);
  Extremes (*extrema)(const double* in, std::size_t size);

  /// Passes of the filter (1, 2, 1) / 4, at most kSmoothPasses, over at least 3 elements to
  /// another array. Both ends stay as they are, or are neighbours where the array is circular.
  void (*smooth)(double* out, const double* in, std::size_t size, std::ptrdiff_t passes,
                 bool circular);
  /// The correlation of a pattern with every window of its size, from `search` and each of the
  /// following elements on; 0 where the window or the pattern is constant, and how often that was.
  /// The pattern is given by the differences from its mean and the root of their squares' sum.
  /// Behind the last window there must be kCorrelationPadding more elements, of any value.
  std::size_t (*correlate)(double* scores, const double* search, std::size_t windows,
                           const double* differences, std::size_t size, double spread);

  /// The numbers' keys: unsigned integers in the order of the numbers, or in the opposite one. Both
  /// zeros have one key; NaN have the outermost.
  void (*sort_keys)(std::uint64_t* keys, const double* in, std::size_t size, bool descending);
  /// Sorts as `SortNumbers` in algorithm/sort.h. Null, as the next one, where lanes do not pay.
  void (*sort_numbers)(double* out, const double* in, std::size_t size, bool descending);
  /// Writes the indices of at least one key, sorted by the highest bits in which keys differ and
  /// then by themselves, if those are all bits in which any two differ. Else they stand below the
  /// bits, in their IndexBits, and true is returned.
  bool (*sort_indexed)(std::uint64_t* words, const std::uint64_t* keys, std::size_t size);
};

inline constexpr std::ptrdiff_t kSmoothPasses = 32;
inline constexpr std::size_t kCorrelationPadding = 64;

extern const Kernels kBaseKernels;
extern const Kernels kAvx2Kernels;  ///< on x86-64 alone, as the next
extern const Kernels kAvx512Kernels;

/// The table for this processor, set while the library is loaded.
extern const Kernels* const kKernels;

}  // namespace formula
