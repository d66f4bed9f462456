// Number arrays of every kind that could mislead an algorithm, and every table of kernels.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

#include "algorithm/kernels.h"
#include "tests/instr/random_rounds.h"

using formula::Kernels;
using Array = std::vector<double>;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

/// Equal bits; NaN of any payload are equal where two of them met.
inline void ExpectSame(const Array& a, const Array& b, bool any_nan = true) {
  ASSERT_EQ(a.size(), b.size());
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (any_nan && std::isnan(a[i]) && std::isnan(b[i])) continue;
    ASSERT_EQ(std::memcmp(&a[i], &b[i], sizeof a[i]), 0) << i << ": " << a[i] << ", " << b[i];
  }
}

/// Arrays of every kind that could mislead a scan or a sort.
inline Array AnyArray(std::mt19937_64& random, std::size_t size, unsigned kind) {
  constexpr double kHostile[] = {0.0, -0.0, 1.0, -1.0, kNaN, -kNaN, kInfinity, -kInfinity};
  Array array(size);
  for (std::size_t i = 0; i < size; ++i) {
    const auto step = static_cast<double>(i);
    switch (kind % 8) {
      case 0: array[i] = AnyNumber(random); break;
      case 1: array[i] = kHostile[random() % 8]; break;
      case 2: array[i] = kHostile[random() % 2]; break;
      case 3: array[i] = static_cast<double>(random() % 256); break;
      case 4: array[i] = random() % 9 == 0 ? kNaN : -step; break;
      case 5: array[i] = step + static_cast<double>(random() % 2); break;
      case 6: array[i] = 1.0 + std::ldexp(static_cast<double>(random() % 4096), -52); break;
      default: array[i] = random() % 32 == 0 ? AnyNumber(random) : 0.5; break;
    }
  }
  return array;
}

/// Runs a check on every kind of array, of all small sizes and some large ones.
template <class Check>
void ForArrays(Check check) {
  std::mt19937_64 random(5);
  for (std::size_t size = 0; size <= 304; ++size) {
    const std::size_t length = size <= 300 ? size : 2500 * (size - 300) + random() % 4000;
    for (unsigned kind = 0; kind < 8; ++kind) {
      SCOPED_TRACE(testing::Message() << "size " << length << ", kind " << kind);
      check(random, AnyArray(random, length, kind));
      if (testing::Test::HasFatalFailure()) return;
    }
  }
}

/// Runs a check on the table of every kind of lanes that this processor has.
template <class Check>
void ForTables(Check check) {
  check(formula::kBaseKernels);
#ifdef __x86_64__
  if (__builtin_cpu_supports("avx2")) {
    SCOPED_TRACE("AVX2");
    check(formula::kAvx2Kernels);
  }
  if (formula::kKernels == &formula::kAvx512Kernels) {
    SCOPED_TRACE("AVX-512");
    check(formula::kAvx512Kernels);
  }
#endif
}
