// Clustering and the point arrays' algorithms against the plain ones.

#include "algorithm/cluster.h"

#include <algorithm>
#include <cmath>
#include <compare>
#include <numeric>
#include <utility>

#include "tests/instr/any_arrays.h"
#include "tests/instr/plain_signals.h"
#include "tests/instr/table.h"

namespace {

TEST(Points, ClusteringIsThePlainOne) {
  std::mt19937_64 random(11);
  constexpr double kTolerances[] = {0.5,       1.0,  1.5, 3.0,  100.0, 5e-324, 1e308,
                                    kInfinity, 0.25, 0.0, kNaN, 2.0,   4.0};
  for (int round = 0; round < RandomRounds(3000); ++round) {
    const std::size_t size = round % 250 == 249 ? 4000 : random() % (round % 25 == 24 ? 900 : 60);
    const double tolerance = kTolerances[random() % std::size(kTolerances)];
    Array values = AnyArray(random, size, static_cast<unsigned>(round));
    for (double& value : values) {
      const auto bits = random();
      switch (round % 6) {
        case 0: value = 0x1p53 + static_cast<double>(bits % 64) * 2.0; break;  // rounded ties
        case 1: value *= 1.6e308; break;                                       // sums overflow
        case 2:
          value = std::ldexp(static_cast<double>(bits >> 11), -50) * static_cast<double>(size);
          break;
        default: break;
      }
    }
    // Which members some cluster has shows once it is the largest.
    if (size > 0 && random() % 2 == 0) values.insert(values.end(), 40, values[random() % size]);
    ASSERT_EQ(formula::LargestCluster(values, tolerance), ClusterPlainly(values, tolerance))
        << "round " << round << ", size " << size << ", tolerance " << tolerance;
  }
}

// A value halfway between any two of many centres, which stand in several blocks, makes the cluster
// that was created first the largest.
TEST(Points, TheFirstOfEquallyNearClustersWins) {
  for (const bool rising : {false, true}) {
    for (std::size_t k = 0; k < 299; ++k) {
      Array values(300);
      std::iota(values.begin(), values.end(), 0.0);
      if (!rising) std::reverse(values.begin(), values.end());
      values.push_back(static_cast<double>(k) + 0.5);
      const std::size_t first = rising ? k : 298 - k;
      ASSERT_EQ(formula::LargestCluster(values, 0.75), (std::vector<std::size_t>{first, 300}));
    }
  }
}

// The centres of many clusters drift past each other, and whole blocks of them come to nothing.
TEST(Points, ClustersThatMoveAndVanish) {
  std::mt19937_64 random(12);
  for (int round = 0; round < 20; ++round) {
    Array values;
    for (int i = 0; i < 700; ++i) values.push_back(static_cast<double>(i) * 2e305);
    std::shuffle(values.begin(), values.end(), random);
    for (int i = 0; i < 1500; ++i) {
      const double drift = 1.0 - static_cast<double>(random() % 1000) * 1e-6;
      values.push_back(round % 2 == 0 ? values[random() % 700] * drift : values[i % 700]);
    }
    const double tolerance = 1.5e305 + 1e305 * (round % 7);
    ASSERT_EQ(formula::LargestCluster(values, tolerance), ClusterPlainly(values, tolerance));
  }
}

double Key(const CNuvPoint& point, int criterion) {
  if (criterion == 2 || criterion == 3) return point.y;
  if (criterion != 4 && criterion != 5) return point.x;
  const double sum = point.x * point.x + point.y * point.y;
  return std::isnan(sum) ? kNaN : sum;
}

TEST(Points, SortIsStableInTheTotalOrder) {
  nuvhost::Services services;
  const nuvhost::CatalogueEntry& sort = *BuiltCatalogue().FindIdentifier("_Nuv_Array_CPArrSort_");
  nuvhost::CallContext call(*sort.descriptor, services);
  ForArrays([&](std::mt19937_64& random, const Array& x) {
    if (x.size() % 3 == 1 && x.size() < 64) return;
    const Array y = AnyArray(random, x.size(), static_cast<unsigned>(random() % 8));
    auto& points = static_cast<CNuvPointVector&>(call.inputs[0]);
    points.Resize(0);
    for (std::size_t i = 0; i < x.size(); ++i) points.PushBack(CNuvPoint(x[i], y[i]));
    for (int criterion = -1; criterion <= 6; ++criterion) {
      std::vector<CNuvPoint> wanted(points.GetStorage(), points.GetStorage() + points.Size());
      const bool descending = criterion == 1 || criterion == 3 || criterion == 5;
      std::stable_sort(wanted.begin(), wanted.end(), [&](const CNuvPoint& a, const CNuvPoint& b) {
        const double first = Key(descending ? b : a, criterion) + 0.0;
        return std::strong_order(first, Key(descending ? a : b, criterion) + 0.0) < 0;
      });
      call.constants[0] = criterion;
      ASSERT_EQ(call.Execute(*sort.prototype), 0);
      const auto& sorted = static_cast<const CNuvPointVector&>(std::as_const(call.results[0]));
      ASSERT_EQ(sorted.Size(), wanted.size());
      for (std::size_t i = 0; i < wanted.size(); ++i) {
        ExpectSame({sorted[i].x, sorted[i].y}, {wanted[i].x, wanted[i].y}, false);
      }
    }
  });
}

}  // namespace
