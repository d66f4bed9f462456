// Number arrays: the instructions that compute, and their kernels against the plain formulas.

#include <algorithm>
#include <cmath>
#include <compare>
#include <cstring>
#include <limits>
#include <vector>

#include "algorithm/kernels.h"
#include "algorithm/sort.h"
#include "tests/instr/any_arrays.h"
#include "tests/instr/table.h"

namespace {

using formula::Extreme;

TEST(NumberArrays, Rows) {
  const InstructionRow rows[] = {
      {"_Nuv_Array_CNArrMathAbsolute_", R"([[-0.0, -2, 3, "-Infinity"]])",
       R"([[0,2,3,"Infinity"]])"},
      {"_Nuv_Array_CNArrMathSubtract_", "[[1, 2], [5, 5, 5]]", "[[-4,-3]]"},
      {"_Nuv_Array_CNArrMathAdd_", "[[1, 2, 3, 4, 5], [1, 1, 1]]", "[[2,3,4]]"},
      {"_Nuv_Array_CNArrMathAdd_", "[[1, 2], []]", "[[]]"},
      {"_Nuv_Array_CNArrMathMultiply_", R"([[-1, 1e200, 0], [0, 1e200, "Infinity"]])",
       R"([[-0.0,"Infinity","NaN"]])"},
      {"_Nuv_Array_CNArrMathMaximum_", "[[2, 5, 5]]", "[5,1]"},
      {"_Nuv_Array_CNArrMathMaximum_", R"([["NaN", 5]])", R"(["NaN",0])"},
      {"_Nuv_Array_CNArrMathMaximum_", "[[-0.0, 0]]", "[-0.0,0]"},
      {"_Nuv_Array_CNArrMathMinimum_", "[[3, 1, 1]]", "[1,1]"},
      {"_Nuv_Array_CNArrMathMinimum_", R"([[3, "NaN", 2]])", "[2,2]"},
      {"_Nuv_Array_CNArrMathMinimum_", "[[]]", "[0,0]"},
      {"_Nuv_Array_CNArrMathExtrema_", "[[2, 7, 1, 7, 1]]", "[7,1,1,2]"},
      {"_Nuv_Array_CNArrMathExtrema_", "[[]]", "[0,0,0,0]"},
      {"_Nuv_Array_CNMeanAndVar_", "[[1, 2, 3, 4]]", "[2.5,1.25,1.118033988749895,4]"},
      {"_Nuv_Array_CNMeanAndVar_", "[[]]", "[0,0,0,0]"},
      {"_Nuv_Array_CNMeanAndVar_", "[[0.1, 0.1, 0.1]]",  // not clamped
       R"([0.10000000000000002,-1.734723475976807e-18,"NaN",3])"},
      {"_Nuv_Array_CNArrMathThreshold_", R"([[1, 0.9, "NaN", "Infinity"], 1, 8, 9])",
       "[[8,9,9,8]]"},
      {"_Nuv_Array_CNArrMathThresholdBand_", R"([[2, 1, 0, -1, "NaN"]])", "[[1,1,0.5,0,0.5]]"},
      {"_Nuv_Array_CNArrMathThresholdBand_", "[[2, 1, 0.5, 0], 0, 1, 7, 8, 9]", "[[7,7,9,9]]"},
      {"_Nuv_Array_CNArrMathClipLow_", R"([[-1, -0.0, 3, "NaN"], 0, 9])", R"([[9,-0.0,3,"NaN"]])"},
      {"_Nuv_Array_CNArrMathClipHigh_", R"([[-1, -0.0, 3, "NaN"], 0, 9])", R"([[-1,9,9,"NaN"]])"},
      {"_Nuv_Array_CNArrReverse_", "[[1, 2, 3]]", "[[3,2,1]]"},
      {"_Nuv_Array_CNArrSort_", "[[3, -1, 2, -1]]", "[[-1,-1,2,3]]"},
      {"_Nuv_Array_CNArrSort_", R"([["NaN", 3, "-Infinity", 2], true])",
       R"([["NaN",3,2,"-Infinity"]])"},
      {"_Nuv_Array_CNArrSetRange_", "[[1, 2, 3, 4, 5], 3, 4, 9]", "[[1,2,3,9,9]]"},
      {"_Nuv_Array_CNArrSetRange_", "[[1, 2, 3, 4, 5], 3, 4, 9, true]", "[[9,9,3,9,9]]"},
      {"_Nuv_Array_CNArrSetRange_", "[[1, 2, 3], 1.9, 1.9, 9]", "[[1,9,3]]"},
      {"_Nuv_Array_CNArrSetRange_", "[[1, 2, 3], 0, 0, 9]", "[[1,2,3]]"},
      {"_Nuv_Array_CNArrSetRange_", "[[1, 2, 3], -1, 2, 9, true]", "[[1,2,3]]"},
      {"_Nuv_Array_CNArrSetRange_", "[[1, 2, 3], 2, 2147483647, 9]", "[[1,2,9]]"},
      {"_Nuv_Array_CNArrSetRange_", "[[1, 2, 3], 2147483647, 3, 9, true]", "[[9,9,9]]"},
      {"_Nuv_Array_CNArrSetRange_", "[[1, 2, 3], 2147483647, 2, 9, true]", "[[9,9,3]]"},
      {"_Nuv_Array_CNArrSetRange_", "[[1, 2, 3], 7, 2, 9]", "[[1,2,3]]"},
      {"_CNArrCopyArray_", "[[1, 2, 3], 1]", "[[2,3]]"},
      {"_CNArrCopyArray_", "[[1, 2, 3], 0, 2]", "[[1,2]]"},
      {"_CNArrCopyArray_", "[[1, 2, 3], 1, -5]", "[[2,3]]"},
      {"_CNArrCopyArray_", "[[1, 2, 3], 1, 0]", "[[]]"},
      {"_CNArrCopyArray_", "[[1, 2, 3], 3]", "[[]]"},
      {"_CNArrCopyArray_", "[[1, 2, 3], -1]", "[[]]"},
      {"_CNArrInsertArray_", "[[8, 9], [1, 2, 3], 1]", "[[1,8,9,2,3]]"},
      {"_CNArrInsertArray_", "[[8, 9], [1, 2], -3]", "[[8,9,1,2]]"},
      {"_CNArrInsertArray_", "[[8, 9], [1, 2], 2147483647]", "[[1,2,8,9]]"},
      {"_CNArrInsertArray_", "[[], [], 1]", "[[]]"},
  };
  CheckRows(rows);
}

// From 16 elements on the constants 0 and 1 take their own ways.
TEST(NumberArrays, ConstMulAddBySize) {
  const struct {
    double in, factor, summand, as_short, as_long;
  } rows[] = {
      {kNaN, 0, 3, kNaN, 3},
      {kInfinity, -0.0, 0, kNaN, 0},
      {-2, 0, -0.0, -0.0, 0},
      {-0.0, 1, 0, 0, -0.0},
      {-0.0, 2, 0, 0, -0.0},
      {-0.0, 1, -0.0, -0.0, -0.0},
      {-0.0, 1, 5, 5, 5},
      {3, 2, 1, 7, 7},
      {kInfinity, 1, -kInfinity, kNaN, kNaN},
  };
  nuvhost::Services services;
  const nuvhost::CatalogueEntry& instruction =
      *BuiltCatalogue().FindIdentifier("_Nuv_Array_CNArrMathConstMulAdd_");
  for (const auto& row : rows) {
    for (const std::size_t size : {15U, 16U, 17U}) {
      SCOPED_TRACE(testing::Message() << row.in << "*" << row.factor << "+" << row.summand);
      nuvhost::CallContext call(*instruction.descriptor, services);
      auto& in = static_cast<CNuvDoubleVector&>(call.inputs[0]);
      for (std::size_t i = 0; i < size; ++i) in.PushBack(row.in);
      call.inputs[1] = row.factor;
      call.inputs[2] = row.summand;
      ASSERT_EQ(call.Execute(*instruction.prototype), 0);
      const double wanted = size < 16 ? row.as_short : row.as_long;
      const auto& out = static_cast<const CNuvDoubleVector&>(std::as_const(call.results[0]));
      ASSERT_EQ(out.Size(), size);
      for (std::size_t i = 0; i < size; ++i) {
        if (std::isnan(wanted)) {
          EXPECT_TRUE(std::isnan(out[i]));
        } else {
          EXPECT_TRUE(out[i] == wanted && std::signbit(out[i]) == std::signbit(wanted)) << out[i];
        }
      }
    }
  }
}

void CheckElementWise(const Kernels& k) {
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
}

TEST(NumberArrays, ElementWiseInBothTables) {
  ForTables(CheckElementWise);
}

void CheckExtremes(const Kernels& k) {
  ForArrays([&](std::mt19937_64& random, Array in) {
    if (in.empty()) return;
    if (std::isnan(in[0]) && random() % 4 != 0) in[0] = -1.0;  // else nothing beats it
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
    check(k.maximum(in.data(), in.size()), most);
    check(k.minimum(in.data(), in.size()), least);
    const formula::Extremes both = k.extrema(in.data(), in.size());
    check(both.maximum, most);
    check(both.minimum, least);
  });
}

TEST(NumberArrays, ExtremesInBothTables) {
  ForTables(CheckExtremes);
}

TEST(NumberArrays, SortIsTheTotalOrder) {
  ForArrays([](std::mt19937_64& random, const Array& in) {
    Array wanted = in;
    std::sort(wanted.begin(), wanted.end(),
              [](double a, double b) { return std::strong_order(a, b) < 0; });
    std::vector<std::uint64_t> scratch(in.size());
    Array out(in.size());
    formula::SortNumbers(out.data(), in.data(), in.size(), false, scratch.data());
    ExpectSame(out, wanted, false);
    Array self = random() % 2 == 0 ? in : wanted;  // in place, and what is sorted already
    formula::SortNumbers(self.data(), self.data(), in.size(), true, scratch.data());
    std::reverse(wanted.begin(), wanted.end());
    ExpectSame(self, wanted, false);
  });
}

}  // namespace
