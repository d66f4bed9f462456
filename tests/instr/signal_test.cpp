// Smoothing, correlation and order of number arrays against the plain algorithms.

#include <algorithm>
#include <numeric>

#include "algorithm/sort.h"
#include "tests/instr/any_arrays.h"
#include "tests/instr/plain_signals.h"
#include "tests/instr/table.h"

namespace {

Array Smoothed(Array a, std::int64_t passes, bool circular) {
  SmoothPlainly(a, passes, circular);
  return a;
}

TEST(Signals, SmoothInEveryTable) {
  ForTables([](const Kernels& k) {
    ForArrays([&](std::mt19937_64& random, const Array& in) {
      if (in.size() < 3) return;
      const auto most = static_cast<std::uint64_t>(formula::kSmoothPasses);
      for (const std::uint64_t passes : {std::uint64_t{1}, 2 + random() % (most - 2), most}) {
        for (const bool circular : {false, true}) {
          const auto count = static_cast<std::ptrdiff_t>(passes);
          Array out(in.size() + random() % 8);  // its end is written, which begins anywhere
          double* const end = out.data() + (out.size() - in.size());
          k.smooth(end, in.data(), in.size(), count, circular);
          ExpectSame({end, end + in.size()}, Smoothed(in, count, circular));
        }
      }
    });
  });
}

void SetArray(CNuvObject& object, const Array& values) {
  auto& vector = static_cast<CNuvDoubleVector&>(object);
  vector.Resize(values.size());
  std::ranges::copy(values, vector.GetStorage());
}

Array GetArray(const CNuvObject& object) {
  const auto& vector = static_cast<const CNuvDoubleVector&>(object);
  return {vector.GetStorage(), vector.GetStorage() + vector.Size()};
}

// More passes than a kernel does at once, until nothing changes any more.
TEST(Signals, SmoothManyTimes) {
  nuvhost::Services services;
  const nuvhost::CatalogueEntry& smooth =
      *BuiltCatalogue().FindIdentifier("_Nuv_Array_CNArrMathSmooth_");
  std::mt19937_64 random(7);
  nuvhost::CallContext call(*smooth.descriptor, services);
  for (unsigned round = 0; round < 240; ++round) {
    const Array in = AnyArray(random, 3 + random() % (round % 3 == 0 ? 5 : 80), round);
    const bool circular = random() % 2 == 0;
    const int passes = static_cast<int>(random() % (round % 3 == 0 ? 5000 : 200));
    SCOPED_TRACE(testing::Message() << in.size() << " elements, " << passes << " passes");
    SetArray(call.inputs[0], in);
    call.inputs[1] = passes;
    call.inputs[2] = circular;
    ASSERT_EQ(call.Execute(*smooth.prototype), 0);
    Array wanted = Smoothed(in, passes, circular);
    if (circular && passes == 0) wanted.resize(in.size() + 2);
    ExpectSame(GetArray(call.results[0]), wanted);
  }
  // A host may ask for two thousand million passes.
  const Array in = {0.0, 1.0, 1.0, 4.0};
  SetArray(call.inputs[0], in);
  call.inputs[1] = std::numeric_limits<int>::max();
  call.inputs[2] = false;
  ASSERT_EQ(call.Execute(*smooth.prototype), 0);
  ExpectSame(GetArray(call.results[0]), Smoothed(in, 5000, false));
}

TEST(Signals, CorrelateInEveryTable) {
  ForTables([](const Kernels& k) {
    std::mt19937_64 random(8);
    for (unsigned round = 0; round < 1500; ++round) {
      const std::size_t s = 1 + random() % (round % 50 == 0 ? 700 : 70);
      const std::size_t t = 1 + random() % s;
      // Kinds that are often constant, that are not, and mixed.
      const Array pattern = AnyArray(random, t, round % 7 == 0 ? 2 : round / 8);
      const Array search = AnyArray(random, s, round);
      SCOPED_TRACE(testing::Message() << "round " << round << ": " << t << " in " << s);
      Array wanted(s);
      const std::size_t invalid = CorrelatePlainly(pattern, search, wanted);
      const double mean =
          std::accumulate(pattern.begin(), pattern.end(), 0.0) / static_cast<double>(t);
      Array differences(t);
      double squares = 0.0;
      for (std::size_t i = 0; i < t; ++i) {
        differences[i] = pattern[i] - mean;
        squares += differences[i] * differences[i];
      }
      Array circle = search;
      circle.insert(circle.end(), search.begin(), search.begin() + static_cast<std::ptrdiff_t>(t));
      circle.resize(circle.size() + formula::kCorrelationPadding, round % 2 == 0 ? kNaN : 0.0);
      Array found(s);
      ASSERT_EQ(
          k.correlate(found.data(), circle.data(), s, differences.data(), t, std::sqrt(squares)),
          invalid);
      ExpectSame(found, wanted);
      if (testing::Test::HasFailure()) return;
    }
  });
}

TEST(Signals, CorrelateCircularIsThePlainOne) {
  nuvhost::Services services;
  const nuvhost::CatalogueEntry& correlate =
      *BuiltCatalogue().FindIdentifier("_Nuv_Array_CNArrMathCorrelateCircular_");
  std::mt19937_64 random(9);
  nuvhost::CallContext call(*correlate.descriptor, services);
  for (unsigned round = 0; round < 400; ++round) {
    const Array first = AnyArray(random, 1 + random() % 40, round);
    const Array second = AnyArray(random, 1 + random() % 40, round / 8);
    const bool align = random() % 2 == 0;
    SetArray(call.inputs[0], first);
    SetArray(call.inputs[1], second);
    call.inputs[2] = align;
    ASSERT_EQ(call.Execute(*correlate.prototype), 0);
    const bool swapped = second.size() < first.size();
    const Array& pattern = swapped ? second : first;
    Array wanted(std::max(first.size(), second.size()));
    const std::size_t invalid = CorrelatePlainly(pattern, swapped ? first : second, wanted);
    if (align && pattern.size() >= 3) {
      std::rotate(wanted.begin(), wanted.end() - static_cast<std::ptrdiff_t>(pattern.size() / 2),
                  wanted.end());
    }
    ExpectSame(GetArray(call.results[0]), wanted);
    EXPECT_EQ(static_cast<double>(call.results[1]), static_cast<double>(pattern.size()));
    EXPECT_EQ(static_cast<double>(call.results[2]), static_cast<double>(invalid));
    if (testing::Test::HasFailure()) return;
  }
}

// Keys that differ in few bits, in more than one pass takes, or in so many that they leave no room
// for an index; where but one differs in the highest, all others meet in one bucket.
TEST(Signals, IndicesOfKeysThatDifferInTheirLowestBits) {
  std::mt19937_64 random(10);
  for (const std::size_t size : {2U, 3U, 63U, 64U, 65U, 1000U, 7999U, 9000U}) {
    for (const int top : {0, 23, 24, 25, 33, 34, 50, 63}) {
      std::vector<std::uint64_t> keys(size);
      for (std::uint64_t& key : keys) key = random() % (size / 3 + 1);
      keys[random() % size] |= std::uint64_t{1} << top;
      std::vector<std::uint64_t> wanted(size);
      std::iota(wanted.begin(), wanted.end(), 0U);
      std::stable_sort(wanted.begin(), wanted.end(),
                       [&](std::uint64_t a, std::uint64_t b) { return keys[a] < keys[b]; });
      ForTables([&](const Kernels& k) {
        std::vector<std::uint64_t> indices(size);
        Array spare(size);
        formula::SortIndices(indices.data(), keys.data(), size, spare.data(), k);
        EXPECT_EQ(indices, wanted) << size << ' ' << top;
      });
    }
  }
}

}  // namespace
