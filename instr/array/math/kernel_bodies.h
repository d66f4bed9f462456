// The bodies of the kernels, to be compiled once for each table with its own target flags.
//
// Nothing here may be shared between the tables: all of it has internal linkage, and nothing of
// the standard library is called, or the linker might keep a copy that only some processors run.
#pragma once

#include <immintrin.h>

#include <cstddef>

#include "instr/array/math/kernels.h"

namespace formula {
namespace {

// The loops are simple enough for the compiler to do in lanes once it knows that no element
// depends on one written before.

template <class Function>
inline void Map(double* out, const double* in, std::size_t size, Function function) {
#pragma GCC ivdep
  for (std::size_t i = 0; i < size; ++i) out[i] = function(in[i]);
}

template <class Function>
inline void Map(double* out, const double* a, const double* b, std::size_t size,
                Function function) {
#pragma GCC ivdep
  for (std::size_t i = 0; i < size; ++i) out[i] = function(a[i], b[i]);
}

void Absolute(double* out, const double* in, std::size_t size) {
  Map(out, in, size, [](double x) { return __builtin_fabs(x); });
}

void Reverse(double* out, const double* in, std::size_t size) {
#pragma GCC ivdep
  for (std::size_t i = 0; i < size; ++i) out[i] = in[size - 1 - i];
}

void Subtract(double* out, const double* a, const double* b, std::size_t size) {
  Map(out, a, b, size, [](double x, double y) { return x - y; });
}

void Add(double* out, const double* a, const double* b, std::size_t size) {
  Map(out, a, b, size, [](double x, double y) { return x + y; });
}

void Multiply(double* out, const double* a, const double* b, std::size_t size) {
  Map(out, a, b, size, [](double x, double y) { return x * y; });
}

void Fill(double* out, std::size_t size, double value) {
  for (std::size_t i = 0; i < size; ++i) out[i] = value;
}

void Scale(double* out, const double* in, std::size_t size, double factor) {
  Map(out, in, size, [=](double x) { return x * factor; });
}

void Offset(double* out, const double* in, std::size_t size, double summand) {
  Map(out, in, size, [=](double x) { return x + summand; });
}

void ScaleOffset(double* out, const double* in, std::size_t size, double factor, double summand) {
  Map(out, in, size, [=](double x) { return x * factor + summand; });
}

void Threshold(double* out, const double* in, std::size_t size, double limit, double above,
               double below) {
  Map(out, in, size, [=](double x) { return x >= limit ? above : below; });
}

void ThresholdBand(double* out, const double* in, std::size_t size, double high, double low,
                   double above, double between, double below) {
  Map(out, in, size, [=](double x) {
    const double lower = x < low ? below : between;
    return x >= high ? above : lower;
  });
}

void ClipLow(double* out, const double* in, std::size_t size, double limit, double below) {
  Map(out, in, size, [=](double x) { return x < limit ? below : x; });
}

void ClipHigh(double* out, const double* in, std::size_t size, double limit, double above) {
  Map(out, in, size, [=](double x) { return x >= limit ? above : x; });
}

// Extremes in lanes. The processor's max(x, best) is "x > best ? x : best" and its min the
// mirror image, on NaN and equal values too: exactly the rule by which an element replaces the
// best.

#ifdef __AVX2__
using Lanes = __m256d;
inline Lanes Load(const double* from) {
  return _mm256_loadu_pd(from);
}
inline void Store(double* to, Lanes lanes) {
  _mm256_storeu_pd(to, lanes);
}
inline Lanes All(double value) {
  return _mm256_set1_pd(value);
}
inline Lanes Max(Lanes x, Lanes best) {
  return _mm256_max_pd(x, best);
}
inline Lanes Min(Lanes x, Lanes best) {
  return _mm256_min_pd(x, best);
}
inline unsigned Greater(Lanes a, Lanes b) {
  return static_cast<unsigned>(_mm256_movemask_pd(_mm256_cmp_pd(a, b, _CMP_GT_OQ)));
}
inline unsigned Equal(Lanes a, Lanes b) {
  return static_cast<unsigned>(_mm256_movemask_pd(_mm256_cmp_pd(a, b, _CMP_EQ_OQ)));
}
#else
using Lanes = __m128d;
inline Lanes Load(const double* from) {
  return _mm_loadu_pd(from);
}
inline void Store(double* to, Lanes lanes) {
  _mm_storeu_pd(to, lanes);
}
inline Lanes All(double value) {
  return _mm_set1_pd(value);
}
inline Lanes Max(Lanes x, Lanes best) {
  return _mm_max_pd(x, best);
}
inline Lanes Min(Lanes x, Lanes best) {
  return _mm_min_pd(x, best);
}
inline unsigned Greater(Lanes a, Lanes b) {
  return static_cast<unsigned>(_mm_movemask_pd(_mm_cmpgt_pd(a, b)));
}
inline unsigned Equal(Lanes a, Lanes b) {
  return static_cast<unsigned>(_mm_movemask_pd(_mm_cmpeq_pd(a, b)));
}
#endif

constexpr std::size_t kLanes = sizeof(Lanes) / sizeof(double);
constexpr std::size_t kBlock = 64;

struct Largest {
  static bool Beats(double x, double best) { return x > best; }
  static unsigned Beats(Lanes x, Lanes best) { return Greater(x, best); }
  static Lanes Pick(Lanes x, Lanes best) { return Max(x, best); }
};

struct Smallest {
  static bool Beats(double x, double best) { return best > x; }
  static unsigned Beats(Lanes x, Lanes best) { return Greater(best, x); }
  static Lanes Pick(Lanes x, Lanes best) { return Min(x, best); }
};

/// A scan for the best element in blocks. Four sets of lanes hold candidates, so that no step
/// waits for the one before.
template <class Order>
struct Scan {
  explicit Scan(double first)
      : best{first, 0}, a(All(first)), b(All(first)), c(All(first)), d(All(first)) {}

  void TakeRow(const double* row) {
    a = Order::Pick(Load(row), a);
    b = Order::Pick(Load(row + kLanes), b);
    c = Order::Pick(Load(row + 2 * kLanes), c);
    d = Order::Pick(Load(row + 3 * kLanes), d);
  }

  /// Once the rows of the block at `start` are taken: finds the element if one of them beat the
  /// best. Value and index come from the array, so a zero keeps its sign.
  void EndBlock(const double* in, std::size_t start) {
    const Lanes candidates = Order::Pick(Order::Pick(a, b), Order::Pick(c, d));
    if (Order::Beats(candidates, All(best.value)) == 0) return;
    double values[kLanes];
    Store(values, candidates);
    double value = values[0];
    for (std::size_t i = 1; i < kLanes; ++i) {
      if (Order::Beats(values[i], value)) value = values[i];
    }
    std::size_t i = start;
    unsigned equal = 0;
    while ((equal = Equal(Load(in + i), All(value))) == 0) i += kLanes;
    i += static_cast<std::size_t>(__builtin_ctz(equal));
    best = {in[i], i};
  }

  void Take(const double* in, std::size_t i) {
    if (Order::Beats(in[i], best.value)) best = {in[i], i};
  }

  Extreme best;
  Lanes a, b, c, d;
};

/// Runs all scans over the array. The last block may overlap the one before: what is seen twice
/// does not beat itself.
template <class... Scans>
inline void Run(const double* in, std::size_t size, Scans&... scans) {
  if (in[0] != in[0]) return;
  if (size < kBlock) {
    for (std::size_t i = 1; i < size; ++i) (scans.Take(in, i), ...);
    return;
  }
  const std::size_t last = size - kBlock;
  for (std::size_t start = 0;; start = start + kBlock < last ? start + kBlock : last) {
    for (std::size_t i = 0; i < kBlock; i += 4 * kLanes) (scans.TakeRow(in + start + i), ...);
    (scans.EndBlock(in, start), ...);
    if (start == last) return;
  }
}

Extreme Maximum(const double* in, std::size_t size) {
  Scan<Largest> scan(in[0]);
  Run(in, size, scan);
  return scan.best;
}

Extreme Minimum(const double* in, std::size_t size) {
  Scan<Smallest> scan(in[0]);
  Run(in, size, scan);
  return scan.best;
}

Extremes Extrema(const double* in, std::size_t size) {
  Scan<Largest> largest(in[0]);
  Scan<Smallest> smallest(in[0]);
  Run(in, size, largest, smallest);
  return {.maximum = largest.best, .minimum = smallest.best};
}

constexpr Kernels kBodies{.absolute = Absolute,
                          .reverse = Reverse,
                          .subtract = Subtract,
                          .add = Add,
                          .multiply = Multiply,
                          .fill = Fill,
                          .scale = Scale,
                          .offset = Offset,
                          .scale_offset = ScaleOffset,
                          .threshold = Threshold,
                          .threshold_band = ThresholdBand,
                          .clip_low = ClipLow,
                          .clip_high = ClipHigh,
                          .maximum = Maximum,
                          .minimum = Minimum,
                          .extrema = Extrema};

}  // namespace
}  // namespace formula
