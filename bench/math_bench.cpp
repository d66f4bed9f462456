// The number-array instructions beside the plain loops that give the same bits, and beside memcpy
// where memory is the limit. What depends on the values rotates over at least a million elements;
// what does not stays with a few arrays, so that small ones are in the cache.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <deque>
#include <random>
#include <vector>

#include "bench/ready_context.h"

namespace {

using Array = std::vector<double>;

std::size_t PoolSize(std::size_t size, bool rotates) {
  return std::max<std::size_t>(2, rotates ? (std::size_t{1} << 20) / size : 0);
}

Array Uniform(std::mt19937_64& random, std::size_t size) {
  std::uniform_real_distribution<double> number(0.0, 1.0);
  Array array(size);
  for (double& x : array) x = number(random);
  return array;
}

/// What a row computes: the instruction with inputs of its own, `arrays` of them arrays from
/// `first_array` on, and the plain loop from one or two arrays into an output.
struct Workload {
  const char* label;
  const char* identifier;
  std::vector<double> constants;  ///< behind the arrays
  std::size_t arrays;
  std::size_t first_array;
  void (*plain)(const Array& a, const Array& b, Array& out);
  bool rotates = false;
};

void Ours(benchmark::State& state, const Workload& work) {
  const auto size = static_cast<std::size_t>(state.range(0));
  const nuvhost::CatalogueEntry& instruction = *Loaded().FindIdentifier(work.identifier);
  std::mt19937_64 random(1);
  std::deque<std::vector<CNuvObject>> inputs;
  std::deque<ReadyContext> contexts;
  for (std::size_t i = 0; i < PoolSize(size, work.rotates); ++i) {
    std::vector<CNuvObject>& values = inputs.emplace_back();
    for (std::size_t k = 0; k < work.first_array; ++k) values.emplace_back() = 1.0;
    for (std::size_t k = 0; k < work.arrays; ++k) {
      CNuvDoubleVector vector;
      vector.Resize(size);
      std::ranges::copy(Uniform(random, size), vector.GetStorage());
      values.emplace_back() = vector;
    }
    for (const double constant : work.constants) values.emplace_back() = constant;
    contexts.emplace_back(values, instruction.descriptor->results.Size());
  }
  std::size_t next = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(instruction.prototype->Execute(&contexts[next]));
    if (++next == contexts.size()) next = 0;
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void Plain(benchmark::State& state, const Workload& work) {
  const auto size = static_cast<std::size_t>(state.range(0));
  std::mt19937_64 random(1);
  struct Case {
    Array a, b, out;
  };
  std::deque<Case> pool;
  for (std::size_t i = 0; i < PoolSize(size, work.rotates); ++i) {
    Case& item = pool.emplace_back();
    item.a = Uniform(random, size);
    if (work.arrays == 2) item.b = Uniform(random, size);
    item.out.resize(size);
  }
  std::size_t next = 0;
  for (auto _ : state) {
    work.plain(pool[next].a, pool[next].b, pool[next].out);
    benchmark::DoNotOptimize(pool[next].out.data());
    benchmark::ClobberMemory();
    if (++next == pool.size()) next = 0;
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

template <class Function>
void Map(const Array& a, Array& out, Function function) {
  for (std::size_t i = 0; i < a.size(); ++i) out[i] = function(a[i]);
}

void Largest(const Array& a, const Array& /*b*/, Array& out) {
  std::size_t best = 0;
  double value = a[0];
  for (std::size_t i = 1; i < a.size(); ++i) {
    if (a[i] > value) value = a[best = i];
  }
  out[0] = value + static_cast<double>(best);
}

void Smallest(const Array& a, const Array& /*b*/, Array& out) {
  std::size_t best = 0;
  double value = a[0];
  for (std::size_t i = 1; i < a.size(); ++i) {
    if (value > a[i]) value = a[best = i];
  }
  out[0] = value + static_cast<double>(best);
}

void Both(const Array& a, const Array& /*b*/, Array& out) {
  std::size_t most = 0;
  std::size_t least = 0;
  for (std::size_t i = 1; i < a.size(); ++i) {
    if (a[i] > a[most]) most = i;
    if (a[i] < a[least]) least = i;
  }
  out[0] = static_cast<double>(most + least);
}

void Sum(const Array& a, const Array& /*b*/, Array& out) {
  double sum = 0.0;
  for (const double x : a) sum += x;
  out[0] = sum;
}

void Powers(const Array& a, const Array& /*b*/, Array& out) {
  double sum = 0.0;
  double squares = 0.0;
  for (const double x : a) {
    sum += x;
    squares += x * x;
  }
  out[0] = sum + squares;
}

void Sorted(const Array& a, const Array& /*b*/, Array& out) {
  out = a;
  std::sort(out.begin(), out.end());
}

/// The bytes that one array in and one out move; Add moves half as much again.
void Copy(const Array& a, const Array& /*b*/, Array& out) {
  std::memcpy(out.data(), a.data(), a.size() * sizeof(double));
}

const Workload kElementWise[] = {
    {"Memcpy", nullptr, {}, 1, 0, Copy},
    {"Add",
     "_Nuv_Array_CNArrMathAdd_",
     {},
     2,
     0,
     [](const Array& a, const Array& b, Array& out) {
       for (std::size_t i = 0; i < a.size(); ++i) out[i] = a[i] + b[i];
     }},
    {"ConstMulAdd",
     "_Nuv_Array_CNArrMathConstMulAdd_",
     {1.5, 2.5},
     1,
     0,
     [](const Array& a, const Array&, Array& out) {
       Map(a, out, [](double x) { return x * 1.5 + 2.5; });
     }},
    {"Threshold",
     "_Nuv_Array_CNArrMathThreshold_",
     {0.5, 2.0, 1.0},
     1,
     0,
     [](const Array& a, const Array&, Array& out) {
       Map(a, out, [](double x) { return x >= 0.5 ? 2.0 : 1.0; });
     }},
    {"ClipLow",
     "_Nuv_Array_CNArrMathClipLow_",
     {0.5, 0.25},
     1,
     0,
     [](const Array& a, const Array&, Array& out) {
       Map(a, out, [](double x) { return x < 0.5 ? 0.25 : x; });
     }},
    {"Reverse",
     "_Nuv_Array_CNArrReverse_",
     {},
     1,
     0,
     [](const Array& a, const Array&, Array& out) {
       for (std::size_t i = 0; i < a.size(); ++i) out[i] = a[a.size() - 1 - i];
     }},
    {"Extrema", "_Nuv_Array_CNArrMathExtrema_", {}, 1, 0, Both, true},
    {"Maximum", "_Nuv_Array_CNArrMathMaximum_", {}, 1, 0, Largest, true},
    {"Minimum", "_Nuv_Array_CNArrMathMinimum_", {}, 1, 0, Smallest, true},
    {"MaxArr", "_Nuv_Numeric_CMaxArr_", {}, 1, 0, Largest, true},
    {"MinArr", "_Nuv_Numeric_CMinArr_", {}, 1, 0, Smallest, true},
    {"SumArr", "_Nuv_Numeric_CSumArr_", {}, 1, 0, Sum},
    {"MeanAndVariance", "_Nuv_Array_CNMeanAndVar_", {}, 1, 0, Powers},
    {"VarianceArr", "_Nuv_Numeric_CVarianceArr_", {}, 1, 0, Powers},
    {"CpkArr", "_Nuv_Number-Stat_CCpkArr_", {}, 1, 2, Powers},
};
const Workload kSort = {"Sort", "_Nuv_Array_CNArrSort_", {0.0}, 1, 0, Sorted, true};

void Register(const Workload& work, std::initializer_list<std::int64_t> sizes) {
  for (const std::int64_t size : sizes) {
    const std::string label = work.label;
    if (work.identifier != nullptr) {
      benchmark::RegisterBenchmark((label + "/ours").c_str(), Ours, work)->Arg(size);
    }
    benchmark::RegisterBenchmark((label + "/plain").c_str(), Plain, work)->Arg(size);
  }
}

const bool registered = [] {
  for (const Workload& work : kElementWise) Register(work, {1000, 100000, 1000000});
  Register(kSort, {100, 1000, 10000, 100000, 1000000});
  return true;
}();

}  // namespace
