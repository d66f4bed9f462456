// Two: two numbers side by side, for sums over many points. Each lane rounds as a double does, and
// the lanes are added at the end: the same bits wherever it is computed.
#pragma once

#if defined(__x86_64__)
#include <emmintrin.h>
#endif

#include <cmath>
#include <cstddef>
#include <cstring>

namespace geometry {

/// Two numbers, and two integers, as the compiler does them in lanes.
using Numbers [[gnu::vector_size(16)]] = double;
using Integers [[gnu::vector_size(16)]] = long long;

struct Two {
  Numbers lanes{};

  Two() = default;
  Two(Numbers value) : lanes(value) {}
  explicit Two(double both) : lanes{both, both} {}
  explicit Two(const double* first) { std::memcpy(&lanes, first, sizeof lanes); }
  Two(double low, double high) : lanes{low, high} {}

  friend Two operator+(Two a, Two b) { return a.lanes + b.lanes; }
  friend Two operator-(Two a, Two b) { return a.lanes - b.lanes; }
  friend Two operator*(Two a, Two b) { return a.lanes * b.lanes; }
  friend Two operator/(Two a, Two b) { return a.lanes / b.lanes; }
  Two& operator+=(Two b) { return *this = *this + b; }
};

inline double Sqrt(double a) {
  return std::sqrt(a);
}
#if defined(__x86_64__)

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

#else  // the same, where compilers do not need to be told the instruction

inline Two Sqrt(Two a) {
  return {std::sqrt(a.lanes[0]), std::sqrt(a.lanes[1])};
}
inline Two Largest(Two a, Two b) {
  return a.lanes > b.lanes ? a.lanes : b.lanes;
}
inline Two Smallest(Two a, Two b) {
  return a.lanes < b.lanes ? a.lanes : b.lanes;
}
inline Two Absolute(Two a) {
  return reinterpret_cast<Numbers>(reinterpret_cast<Integers>(a.lanes) & ~(1LL << 63));
}
inline Two IsNan(Two a) {
  return reinterpret_cast<Numbers>(a.lanes != a.lanes);
}
inline Two Either(Two a, Two b) {
  return reinterpret_cast<Numbers>(reinterpret_cast<Integers>(a.lanes) |
                                   reinterpret_cast<Integers>(b.lanes));
}

#endif

/// How many of the values are below the limit.
inline std::size_t CountBelow(const double* values, std::size_t count, double limit) {
  Integers below{};
  std::size_t i = 0;
  // A lane that compares true is -1 as an integer.
  for (; i + 1 < count; i += 2) below -= Two(values + i).lanes < limit;
  const auto sum = static_cast<std::size_t>(below[0] + below[1]);
  return sum + (i < count && values[i] < limit ? 1 : 0);
}

inline void Store(Two a, double* first) {
  std::memcpy(first, &a.lanes, sizeof a.lanes);
}
inline double Low(Two a) {
  return a.lanes[0];
}
inline double High(Two a) {
  return a.lanes[1];
}
inline double Sum(Two a) {
  return Low(a) + High(a);
}

/// The sum of the lanes that hold values: `last` is half filled where their count is odd.
inline double Total(Two pairs, Two last) {
  return Sum(pairs) + Low(last);
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
  return Total(chains[0] + chains[1], last);
}
inline double SumOf(const double* values, std::size_t count) {
  return SumOf(values, count, [](Two value) { return value; });
}

}  // namespace geometry
