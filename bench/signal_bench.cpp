// Smoothing, correlation, order and clustering beside the plain algorithms that give the same
// answers. Inputs rotate over at least a million elements, but for smoothing, whose work does not
// depend on them: a few small arrays stay in the cache.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <deque>
#include <functional>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "algorithm/cluster.h"
#include "algorithm/kernels.h"
#include "algorithm/sort.h"
#include "bench/ready_context.h"
#include "tests/instr/plain_signals.h"

namespace {

using Array = std::vector<double>;

std::size_t PoolSize(std::size_t size, bool rotates) {
  return std::max<std::size_t>(2, rotates ? (std::size_t{1} << 20) / size : 0);
}

Array Uniform(std::mt19937_64& random, std::size_t size, double below = 1.0) {
  std::uniform_real_distribution<double> number(0.0, below);
  Array array(size);
  for (double& x : array) x = number(random);
  return array;
}

CNuvObject Numbers(const Array& values) {
  CNuvDoubleVector vector;
  vector.Resize(values.size());
  std::ranges::copy(values, vector.GetStorage());
  CNuvObject object;
  object = vector;
  return object;
}

CNuvObject Points(const Array& x, const Array& y) {
  CNuvPointVector vector;
  for (std::size_t i = 0; i < x.size(); ++i) vector.PushBack(CNuvPoint(x[i], y[i]));
  CNuvObject object;
  object = vector;
  return object;
}

using Inputs = std::vector<CNuvObject>;

/// Runs the instruction over a pool of inputs.
void Ours(benchmark::State& state, const char* identifier, std::size_t size,
          const std::function<Inputs(std::mt19937_64&)>& make, int constant = 0,
          bool rotates = true) {
  const nuvhost::CatalogueEntry& instruction = *Loaded().FindIdentifier(identifier);
  std::mt19937_64 random(1);
  std::deque<Inputs> inputs;
  std::deque<ReadyContext> contexts;
  CNuvObject choice;
  choice = constant;
  for (std::size_t i = 0; i < PoolSize(size, rotates); ++i) {
    Inputs& values = inputs.emplace_back(make(random));
    contexts.emplace_back(values, instruction.descriptor->results.Size(), Inputs{choice});
  }
  std::size_t next = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(instruction.prototype->Execute(&contexts[next]));
    if (++next == contexts.size()) next = 0;
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(size));
}

/// Runs a function over a pool of what `make` gives it.
template <class Make, class Run>
void Over(benchmark::State& state, std::size_t size, Make make, Run run, bool rotates = true) {
  std::mt19937_64 random(1);
  std::deque<decltype(make(random))> pool;
  for (std::size_t i = 0; i < PoolSize(size, rotates); ++i) pool.push_back(make(random));
  std::size_t next = 0;
  for (auto _ : state) {
    run(pool[next]);
    benchmark::ClobberMemory();
    if (++next == pool.size()) next = 0;
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(size));
}

struct Pair {
  Array a, b, out;
};

// Smoothing.

void SmoothOurs(benchmark::State& state, int passes) {
  const auto size = static_cast<std::size_t>(state.range(0));
  Ours(
      state, "_Nuv_Array_CNArrMathSmooth_", size,
      [=](std::mt19937_64& random) {
        Inputs inputs{Numbers(Uniform(random, size)), {}, {}, {}};
        inputs[1] = passes;
        return inputs;
      },
      0, false);
}

void SmoothPlain(benchmark::State& state, int passes) {
  const auto size = static_cast<std::size_t>(state.range(0));
  Over(
      state, size,
      [=](std::mt19937_64& random) {
        return Pair{Uniform(random, size), {}, Array(size)};
      },
      [=](Pair& pair) {
        pair.out = pair.a;
        SmoothPlainly(pair.out, passes, false);
      });
}

// Circular correlation of a pattern with a search array.

void CorrelateOurs(benchmark::State& state) {
  const auto s = static_cast<std::size_t>(state.range(0));
  const auto t = static_cast<std::size_t>(state.range(1));
  Ours(state, "_Nuv_Array_CNArrMathCorrelateCircular_", s, [=](std::mt19937_64& random) {
    return Inputs{Numbers(Uniform(random, t)), Numbers(Uniform(random, s)), {}};
  });
}

Pair CorrelatePair(benchmark::State& state, std::mt19937_64& random) {
  const auto s = static_cast<std::size_t>(state.range(0));
  return {Uniform(random, static_cast<std::size_t>(state.range(1))), Uniform(random, s), Array(s)};
}

/// One table's lanes, with what the instruction prepares.
void CorrelateLanes(benchmark::State& state, const formula::Kernels& kernels) {
  Over(
      state, static_cast<std::size_t>(state.range(0)),
      [&](std::mt19937_64& random) { return CorrelatePair(state, random); },
      [&](Pair& pair) {
        const std::size_t t = pair.a.size();
        Array circle = pair.b;
        circle.resize(pair.b.size() + t + formula::kCorrelationPadding);
        std::copy_n(pair.b.begin(), t, circle.begin() + static_cast<std::ptrdiff_t>(pair.b.size()));
        const double mean =
            std::accumulate(pair.a.begin(), pair.a.end(), 0.0) / static_cast<double>(t);
        Array differences = pair.a;
        for (double& x : differences) x -= mean;
        kernels.correlate(pair.out.data(), circle.data(), pair.b.size(), differences.data(), t,
                          1.0);
      });
}

void CorrelatePlain(benchmark::State& state) {
  Over(
      state, static_cast<std::size_t>(state.range(0)),
      [&](std::mt19937_64& random) { return CorrelatePair(state, random); },
      [](Pair& pair) { CorrelatePlainly(pair.a, pair.b, pair.out); });
}

// Order.

void SortOurs(benchmark::State& state) {
  const auto size = static_cast<std::size_t>(state.range(0));
  Ours(state, "_Nuv_Array_CNArrSort_", size, [=](std::mt19937_64& random) {
    return Inputs{Numbers(Uniform(random, size)), {}};
  });
}

/// By one table's lanes, or by digits where it has none that pay.
void SortTable(benchmark::State& state, const formula::Kernels& kernels) {
  const auto size = static_cast<std::size_t>(state.range(0));
  std::vector<std::uint64_t> scratch(size);
  Over(
      state, size,
      [=](std::mt19937_64& random) {
        return Pair{Uniform(random, size), {}, Array(size)};
      },
      [&](Pair& pair) {
        formula::SortNumbers(pair.out.data(), pair.a.data(), size, false, scratch.data(), kernels);
      });
}

void SortPlain(benchmark::State& state) {
  const auto size = static_cast<std::size_t>(state.range(0));
  Over(
      state, size,
      [=](std::mt19937_64& random) {
        return Pair{Uniform(random, size), {}, {}};
      },
      [](Pair& pair) {
        pair.out = pair.a;
        std::sort(pair.out.begin(), pair.out.end());
      });
}

void IndexOurs(benchmark::State& state) {
  const auto size = static_cast<std::size_t>(state.range(0));
  Ours(
      state, "_Nuv_Array_CNArrMathIndexArray_", size,
      [=](std::mt19937_64& random) { return Inputs{Numbers(Uniform(random, size))}; }, 2);
}

void IndexPlain(benchmark::State& state) {
  const auto size = static_cast<std::size_t>(state.range(0));
  Over(
      state, size,
      [=](std::mt19937_64& random) {
        return Pair{Uniform(random, size), {}, Array(size)};
      },
      [](Pair& pair) {
        std::vector<std::uint32_t> indices(pair.a.size());
        std::iota(indices.begin(), indices.end(), 0U);
        const double* in = pair.a.data();
        std::sort(indices.begin(), indices.end(),
                  [in](std::uint32_t a, std::uint32_t b) { return in[a] < in[b]; });
        std::ranges::copy(indices, pair.out.begin());
      });
}

void PointSortOurs(benchmark::State& state, int criterion) {
  const auto size = static_cast<std::size_t>(state.range(0));
  Ours(
      state, "_Nuv_Array_CPArrSort_", size,
      [=](std::mt19937_64& random) {
        return Inputs{Points(Uniform(random, size), Uniform(random, size))};
      },
      criterion);
}

template <class Before>
void PointSortPlain(benchmark::State& state, Before before) {
  const auto size = static_cast<std::size_t>(state.range(0));
  struct Case {
    CNuvObject points;
    CNuvPointVector out;
  };
  Over(
      state, size,
      [=](std::mt19937_64& random) {
        return Case{Points(Uniform(random, size), Uniform(random, size)), {}};
      },
      [=](Case& item) {
        item.out = static_cast<const CNuvPointVector&>(std::as_const(item.points));
        std::sort(item.out.GetStorage(), item.out.GetStorage() + item.out.Size(), before);
      });
}

// Clustering.

/// Few clusters: two groups of gaps. Many: values all over, a little more than half of them alone.
template <auto kCluster>
void Cluster(benchmark::State& state, bool many) {
  const auto size = static_cast<std::size_t>(state.range(0));
  Over(
      state, size,
      [=](std::mt19937_64& random) {
        Array values = Uniform(random, size, many ? static_cast<double>(size) : 1.0);
        for (double& x : values) {
          if (!many && random() % 4 == 0) x += 10.0;
        }
        return values;
      },
      [=](const Array& values) {
        benchmark::DoNotOptimize(kCluster(values, many ? 0.88 : 3.0).data());
      });
}

void Register(const std::string& label, const std::function<void(benchmark::State&)>& run,
              std::initializer_list<std::vector<std::int64_t>> arguments) {
  auto* registered = benchmark::RegisterBenchmark(label.c_str(), run);
  for (const std::vector<std::int64_t>& row : arguments) registered->Args(row);
}

const bool registered = [] {
  for (const int passes : {1, 10}) {
    const std::string label = "Smooth" + std::to_string(passes);
    const auto run = [passes](auto function) {
      return [=](benchmark::State& state) { function(state, passes); };
    };
    Register(label + "/ours", run(SmoothOurs), {{1000}, {100000}, {1000000}});
    Register(label + "/plain", run(SmoothPlain), {{1000}, {100000}, {1000000}});
  }

  const std::initializer_list<std::vector<std::int64_t>> correlations = {
      {1000, 50}, {2000, 200}, {4000, 500}};
  Register("CorrelateCircular/ours", CorrelateOurs, correlations);
  Register(
      "CorrelateCircular/base",
      [](benchmark::State& state) { CorrelateLanes(state, formula::kBaseKernels); }, correlations);
  Register("CorrelateCircular/plain", CorrelatePlain, correlations);

  const std::initializer_list<std::vector<std::int64_t>> sorts = {{30},    {100},    {1000},
                                                                  {10000}, {100000}, {1000000}};
  Register("Sort/ours", SortOurs, sorts);
  Register(
      "Sort/base", [](benchmark::State& state) { SortTable(state, formula::kBaseKernels); }, sorts);
  Register("Sort/plain", SortPlain, sorts);
  Register("IndexArray/ours", IndexOurs, sorts);
  Register("IndexArray/plain", IndexPlain, sorts);
  Register(
      "PointSortX/ours", [](benchmark::State& state) { PointSortOurs(state, 0); }, sorts);
  Register(
      "PointSortX/plain",
      [](benchmark::State& state) {
        PointSortPlain(state, [](const CNuvPoint& a, const CNuvPoint& b) { return a.x < b.x; });
      },
      sorts);
  Register(
      "PointSortDistance/ours", [](benchmark::State& state) { PointSortOurs(state, 4); }, sorts);
  Register(
      "PointSortDistance/plain",
      [](benchmark::State& state) {
        PointSortPlain(state, [](const CNuvPoint& a, const CNuvPoint& b) {
          return a.x * a.x + a.y * a.y < b.x * b.x + b.y * b.y;
        });
      },
      sorts);

  for (const bool many : {false, true}) {
    const std::string label = many ? "ClusterMany" : "ClusterFew";
    const auto run = [many](auto function) {
      return [=](benchmark::State& state) { function(state, many); };
    };
    Register(label + "/ours", run(Cluster<formula::LargestCluster>), {{1000}, {10000}, {100000}});
    Register(label + "/plain", run(Cluster<ClusterPlainly>), {{1000}, {10000}});
  }
  return true;
}();

}  // namespace
