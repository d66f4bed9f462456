// Two: two numbers side by side, for sums over many points. Each lane rounds as a double does, and
// the lanes are added at the end: the same bits wherever it is computed.
#pragma once

#include <emmintrin.h>

#include <cmath>
#include <cstddef>
#include <cstdint>

namespace geometry {

struct Two {
  __m128d lanes = _mm_setzero_pd();

  Two() = default;
  Two(__m128d value) : lanes(value) {}
  explicit Two(double both) : lanes(_mm_set1_pd(both)) {}
  explicit Two(const double* first) : lanes(_mm_loadu_pd(first)) {}
  Two(double low, double high) : lanes(_mm_set_pd(high, low)) {}

  friend Two operator+(Two a, Two b) { return _mm_add_pd(a.lanes, b.lanes); }
  friend Two operator-(Two a, Two b) { return _mm_sub_pd(a.lanes, b.lanes); }
  friend Two operator*(Two a, Two b) { return _mm_mul_pd(a.lanes, b.lanes); }
  friend Two operator/(Two a, Two b) { return _mm_div_pd(a.lanes, b.lanes); }
  Two& operator+=(Two b) { return *this = *this + b; }
};

inline double Sqrt(double a) {
  return std::sqrt(a);
}
inline Two Sqrt(Two a) {
  return _mm_sqrt_pd(a.lanes);
}
inline Two Largest(Two a, Two b) {
  return _mm_max_pd(a.lanes, b.lanes);
}
inline Two Smallest(Two a, Two b) {
  return _mm_min_pd(a.lanes, b.lanes);
}
inline Two Absolute(Two a) {
  return _mm_andnot_pd(_mm_set1_pd(-0.0), a.lanes);
}
/// All bits set, which is a NaN, in the lanes that are NaN; no bit in the others.
inline Two IsNan(Two a) {
  return _mm_cmpunord_pd(a.lanes, a.lanes);
}
inline Two Either(Two a, Two b) {
  return _mm_or_pd(a.lanes, b.lanes);
}

/// How many of the values are below the limit.
inline std::size_t CountBelow(const double* values, std::size_t count, double limit) {
  const __m128d limits = _mm_set1_pd(limit);
  __m128i below = _mm_setzero_si128();
  std::size_t i = 0;
  for (; i + 1 < count; i += 2) {
    // A lane that compares true is -1 as an integer.
    const __m128d less = _mm_cmplt_pd(_mm_loadu_pd(values + i), limits);
    below = _mm_sub_epi64(below, _mm_castpd_si128(less));
  }
  const std::int64_t sum =
      _mm_cvtsi128_si64(below) + _mm_cvtsi128_si64(_mm_unpackhi_epi64(below, below));
  return static_cast<std::size_t>(sum) + (i < count && values[i] < limit ? 1 : 0);
}

inline void Store(Two a, double* first) {
  _mm_storeu_pd(first, a.lanes);
}
inline double Low(Two a) {
  return _mm_cvtsd_f64(a.lanes);
}
inline double High(Two a) {
  return _mm_cvtsd_f64(_mm_unpackhi_pd(a.lanes, a.lanes));
}
inline double Sum(Two a) {
  return Low(a) + High(a);
}

/// The sum of function(value) over an array.
template <class Function>
double SumOf(const double* values, std::size_t count, const Function& function) {
  Two chains[2];
  std::size_t i = 0;
  for (; i + 3 < count; i += 4) {
    chains[0] += function(Two(values + i));
    chains[1] += function(Two(values + i + 2));
  }
  for (; i + 1 < count; i += 2) chains[0] += function(Two(values + i));
  const Two last = i < count ? function(Two(values[i])) : Two();
  return Sum(chains[0] + chains[1]) + Low(last);
}
inline double SumOf(const double* values, std::size_t count) {
  return SumOf(values, count, [](Two value) { return value; });
}

}  // namespace geometry
