// Sorting, sets and clusters, beside the standard library's and Highway's ways.

#include <algorithm>
#include <cmath>
#include <numeric>
#include <unordered_set>

#include "bench/rows.h"
#include "tests/instr/plain_signals.h"
#ifdef FORMULA_WITH_HIGHWAY
#include <hwy/contrib/sort/vqsort.h>
#endif

namespace bench {
namespace {

const std::vector<std::size_t> kSortSizes = {100, 1000, 10000, 100000, 1000000};

template <class Sort>
Peer NumberSort(const char* name, Sort sort) {
  return Other(name, [sort](const Inputs& in, Out& out) {
    const auto numbers = Numbers(in[0]);
    out.numbers.assign(numbers.begin(), numbers.end());
    sort(out.numbers.data(), out.numbers.size());
  });
}

template <class Before>
Row PointSort(const char* name, int criterion, Before before) {
  return {name,
          "_Nuv_Array_CPArrSort_",
          kSortSizes,
          [](Random& random, std::size_t n) { return List(UniformPoints(random, n)); },
          {Other("std::sort",
                 [before](const Inputs& in, Out& out) {
                   const auto points = Points(in[0]);
                   out.points.assign(points.begin(), points.end());
                   std::sort(out.points.begin(), out.points.end(), before);
                 })},
          true,
          List(criterion)};
}

void AddSorts(std::vector<Row>& rows) {
  Row sort = {"Sort",
              "_Nuv_Array_CNArrSort_",
              kSortSizes,
              [](Random& random, std::size_t n) { return List(UniformNumbers(random, n), false); },
              {NumberSort("std::sort", [](double* a, std::size_t n) { std::sort(a, a + n); })},
              true};
#ifdef FORMULA_WITH_HIGHWAY
  sort.peers.push_back(NumberSort("vqsort", [](double* a, std::size_t n) {
    static const hwy::Sorter sorter;
    sorter(a, n, hwy::SortAscending());
  }));
  if (__builtin_cpu_supports("avx2")) {
    sort.peers.push_back(NumberSort("vqsort, AVX2", SortByAvx2));
  }
#endif
  rows.push_back(sort);
  rows.push_back({"IndexArray",
                  "_Nuv_Array_CNArrMathIndexArray_",
                  kSortSizes,
                  [](Random& random, std::size_t n) { return List(UniformNumbers(random, n)); },
                  {Other("std::sort",
                         [](const Inputs& in, Out& out) {
                           const auto numbers = Numbers(in[0]);
                           std::vector<std::uint32_t> indices(numbers.size());
                           std::iota(indices.begin(), indices.end(), 0U);
                           std::sort(indices.begin(), indices.end(),
                                     [&](std::uint32_t a, std::uint32_t b) {
                                       return numbers[a] < numbers[b];
                                     });
                           out.numbers.assign(indices.begin(), indices.end());
                         })},
                  true,
                  List(2)});
  rows.push_back(PointSort("point Sort, x", 0,
                           [](const CNuvPoint& a, const CNuvPoint& b) { return a.x < b.x; }));
  rows.push_back(PointSort("point Sort, distance", 4, [](const CNuvPoint& a, const CNuvPoint& b) {
    return a.x * a.x + a.y * a.y < b.x * b.x + b.y * b.y;
  }));
}

/// Arrays that share about a tenth of their elements.
void AddDifference(std::vector<Row>& rows) {
  rows.push_back({"Difference",
                  "_Nuv_Array_CNArrDiff_",
                  {1000, 100000},
                  [](Random& random, std::size_t n) {
                    const auto make = [&] {
                      CNuvObject object;
                      auto& array = static_cast<CNuvDoubleVector&>(object);
                      for (std::size_t i = 0; i < n; ++i) {
                        array.PushBack(static_cast<double>(random() % (n * 10)) / 8.0);
                      }
                      return object;
                    };
                    const CNuvObject first = make();
                    return List(first, make());
                  },
                  {Other("std::unordered_set",
                         [](const Inputs& in, Out& out) {
                           const auto second = Numbers(in[1]);
                           const std::unordered_set<double> set(second.begin(), second.end(),
                                                                second.size());
                           out.numbers.clear();
                           for (const double x : Numbers(in[0])) {
                             if (!set.contains(x)) out.numbers.push_back(x);
                           }
                         }),
                   Other("sort and search",
                         [](const Inputs& in, Out& out) {
                           out.copy.assign(Numbers(in[1]).begin(), Numbers(in[1]).end());
                           std::sort(out.copy.begin(), out.copy.end());
                           out.numbers.clear();
                           for (const double x : Numbers(in[0])) {
                             if (!std::binary_search(out.copy.begin(), out.copy.end(), x))
                               out.numbers.push_back(x);
                           }
                         })},
                  true});
}

/// Points whose gaps lie in two groups, or all over.
void AddClusters(std::vector<Row>& rows) {
  for (const bool many : {false, true}) {
    rows.push_back(
        {many ? "many clusters" : "few clusters",
         "_Nuv_Array_CPArrCluster1D_",
         {1000, 10000},
         [many](Random& random, std::size_t n) {
           CNuvObject object;
           auto& array = static_cast<CNuvPointVector&>(object);
           double at = 0.0;
           for (std::size_t i = 0; i < n; ++i) {
             const auto part = static_cast<double>(random() >> 11) * 0x1p-53;
             at += many ? part * static_cast<double>(n) : part + (random() % 4 == 0 ? 10.0 : 0.0);
             array.PushBack(CNuvPoint(at, 0.0));
           }
           return List(object, many ? 0.88 : 3.0);
         },
         {Other("plain loop",
                [many](const Inputs& in, Out& out) {
                  const auto points = Points(in[0]);
                  out.copy.assign(points.size(), 0.0);
                  for (std::size_t i = 0; i + 1 < points.size(); ++i) {
                    const double gap = points[i + 1].x - points[i].x;
                    out.copy[i] = std::max(i == 0 ? 0.0 : out.copy[i], gap);
                    out.copy[i + 1] = gap;
                  }
                  out.points.clear();
                  for (const std::size_t i : ClusterPlainly(out.copy, many ? 0.88 : 3.0)) {
                    out.points.push_back(points[i]);
                  }
                })},
         true});
  }
}

}  // namespace

CNuvObject UniformPoints(Random& random, std::size_t size) {
  std::uniform_real_distribution<double> number(0.0, 1.0);
  CNuvObject object;
  auto& array = static_cast<CNuvPointVector&>(object);
  array.Resize(size);
  for (std::size_t i = 0; i < size; ++i) {
    const double x = number(random);
    array[i] = CNuvPoint(x, number(random));
  }
  return object;
}

void AddOrderRows(std::vector<Row>& rows) {
  AddSorts(rows);
  AddDifference(rows);
  AddClusters(rows);
}

}  // namespace bench
