// Number arrays: the instructions that compute, and their kernels against the plain formulas.

#include <algorithm>
#include <cmath>
#include <compare>
#include <vector>

#include "algorithm/kernels.h"
#include "algorithm/sort.h"
#include "tests/instr/any_arrays.h"

namespace {

using formula::Extreme;

TEST(NumberArrays, ElementWiseInEveryTable) {
  ForTables([](const Kernels& k) {
    ForArrays([&](std::mt19937_64& random, const Array& in) {
      const std::size_t n = in.size();
      const Array other = AnyArray(random, n, static_cast<unsigned>(random() % 8));
      const double p = AnyArray(random, 1, static_cast<unsigned>(random() % 4))[0];
      const double q = n > 0 && random() % 2 == 0 ? in[random() % n] : AnyNumber(random);
      const double r = AnyNumber(random);
      // The kernel into another array and into its input, against the plain loop.
      const auto check = [&](auto kernel, auto plain, bool any_nan = true) {
        Array wanted(n);
        Array out(n);
        Array self = in;
        for (std::size_t i = 0; i < n; ++i) wanted[i] = plain(i);
        kernel(out.data(), in.data());
        kernel(self.data(), self.data());
        ExpectSame(out, wanted, any_nan);
        ExpectSame(self, wanted, any_nan);
      };
      const double* b = other.data();
      check([&](double* o, const double* a) { k.absolute(o, a, n); },
            [&](std::size_t i) { return std::copysign(in[i], 1.0); }, false);
      check([&](double* o, const double* a) { k.subtract(o, a, b, n); },
            [&](std::size_t i) { return in[i] - b[i]; });
      check([&](double* o, const double* a) { k.add(o, a, b, n); },
            [&](std::size_t i) { return in[i] + b[i]; });
      check([&](double* o, const double* a) { k.multiply(o, a, b, n); },
            [&](std::size_t i) { return in[i] * b[i]; });
      check([&](double* o, const double*) { k.fill(o, n, p); }, [&](std::size_t) { return p; },
            false);
      check([&](double* o, const double* a) { k.scale(o, a, n, p); },
            [&](std::size_t i) { return in[i] * p; });
      check([&](double* o, const double* a) { k.offset(o, a, n, p); },
            [&](std::size_t i) { return in[i] + p; });
      check([&](double* o, const double* a) { k.scale_offset(o, a, n, p, q); },
            [&](std::size_t i) {
              const volatile double product = in[i] * p;
              return product + q;
            });
      check([&](double* o, const double* a) { k.threshold(o, a, n, q, p, r); },
            [&](std::size_t i) { return in[i] >= q ? p : r; }, false);
      check([&](double* o, const double* a) { k.threshold_band(o, a, n, q, p, r, 2.0, 3.0); },
            [&](std::size_t i) {
              if (in[i] >= q) return r;
              return in[i] < p ? 3.0 : 2.0;
            },
            false);
      check([&](double* o, const double* a) { k.clip_low(o, a, n, q, p); },
            [&](std::size_t i) { return in[i] < q ? p : in[i]; }, false);
      check([&](double* o, const double* a) { k.clip_high(o, a, n, q, p); },
            [&](std::size_t i) { return in[i] >= q ? p : in[i]; }, false);
      Array out(n);
      k.reverse(out.data(), in.data(), n);
      ExpectSame(out, Array(in.rbegin(), in.rend()), false);
    });
  });
}

TEST(NumberArrays, ExtremesInEveryTable) {
  ForTables([](const Kernels& k) {
    ForArrays([&](std::mt19937_64& random, Array in) {
      if (in.empty()) return;
      if (std::isnan(in[0]) && random() % 4 != 0) in[0] = -1.0;  // else nothing beats it
      // The same elements, which begin anywhere.
      Array moved(random() % 8);
      const std::size_t before = moved.size();
      moved.insert(moved.end(), in.begin(), in.end());
      const double* const from = moved.data() + before;
      Extreme most{in[0], 0};
      Extreme least{in[0], 0};
      for (std::size_t i = 1; i < in.size(); ++i) {
        if (in[i] > most.value) most = {in[i], i};
        if (in[i] < least.value) least = {in[i], i};
      }
      const auto check = [](const Extreme& found, const Extreme& wanted) {
        EXPECT_EQ(found.index, wanted.index);
        ExpectSame({found.value}, {wanted.value}, false);
      };
      check(k.maximum(from, in.size()), most);
      check(k.minimum(from, in.size()), least);
      const formula::Extremes both = k.extrema(from, in.size());
      check(both.maximum, most);
      check(both.minimum, least);
    });
  });
}

TEST(NumberArrays, SortIsTheTotalOrderInEveryTable) {
  ForTables([](const Kernels& k) {
    ForArrays([&](std::mt19937_64& random, const Array& in) {
      Array wanted = in;
      std::sort(wanted.begin(), wanted.end(),
                [](double a, double b) { return std::strong_order(a, b) < 0; });
      Array out(in.size());
      formula::SortNumbers(out.data(), in.data(), in.size(), false, k);
      ExpectSame(out, wanted, false);
      Array self = random() % 2 == 0 ? in : wanted;  // in place, and what is sorted already
      formula::SortNumbers(self.data(), self.data(), in.size(), true, k);
      std::reverse(wanted.begin(), wanted.end());
      ExpectSame(self, wanted, false);
    });
  });
}

}  // namespace
