// The array instructions beside the plain way: an edited copy beside memcpy of the bytes it writes,
// and the difference beside two nested loops and beside std::unordered_set.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <deque>
#include <functional>
#include <random>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

#include "bench/ready_context.h"

namespace {

using Inputs = std::vector<CNuvObject>;

CNuvObject Numbers(std::size_t size) {
  CNuvObject object;
  auto& array = static_cast<CNuvDoubleVector&>(object);
  array.Resize(size);
  for (std::size_t i = 0; i < size; ++i) array[i] = static_cast<double>(i) / 3.0;
  return object;
}

CNuvObject Number(double value) {
  CNuvObject object;
  object = value;
  return object;
}

struct Edit {
  const char* identifier;
  Inputs (*inputs)(std::size_t size);
};

const Edit kEdits[] = {
    {"CNArrInsert",
     [](std::size_t n) {
       return Inputs{Numbers(n), Number(static_cast<double>(n / 2)), Number(1)};
     }},
    {"CNArrErase",
     [](std::size_t n) {
       return Inputs{Numbers(n), Number(static_cast<double>(n / 2))};
     }},
    {"CNArrEraseRange",
     [](std::size_t n) {
       return Inputs{Numbers(n), Number(static_cast<double>(n / 2)),
                     Number(static_cast<double>(n / 2 + 10))};
     }},
    {"CNArrAppend",
     [](std::size_t n) {
       return Inputs{Numbers(n), Number(1)};
     }},
    {"CNArrAppendRep",
     [](std::size_t n) {
       return Inputs{Numbers(n), Number(10), Number(1)};
     }},
    {"CNArrConcatArr",
     [](std::size_t n) {
       return Inputs{Numbers(n / 2), Numbers(n / 2)};
     }},
    {"CNArrGetRange",
     [](std::size_t n) {
       return Inputs{Numbers(n + 10), Number(5), Number(static_cast<double>(n))};
     }},
};

const nuvhost::CatalogueEntry& Find(const char* name) {
  return Loaded().Find("_Nuv_Array_" + std::string(name) + "_");
}

void EditOurs(benchmark::State& state, const Edit& edit) {
  Inputs inputs = edit.inputs(static_cast<std::size_t>(state.range(0)));
  ReadyContext context(inputs);
  IXInstrPlugin* instruction = Find(edit.identifier).prototype;
  for (auto _ : state) {
    benchmark::DoNotOptimize(instruction->Execute(&context));
    benchmark::ClobberMemory();
  }
}

void EditMemcpy(benchmark::State& state, const Edit& edit) {
  Inputs inputs = edit.inputs(static_cast<std::size_t>(state.range(0)));
  ReadyContext context(inputs);
  Find(edit.identifier).prototype->Execute(&context);
  const auto& written = static_cast<const CNuvDoubleVector&>(*context.ResultValue(0));
  std::vector<double> source(written.Size());
  std::vector<double> target(written.Size());
  for (auto _ : state) {
    std::memcpy(target.data(), source.data(), source.size() * sizeof(double));
    benchmark::DoNotOptimize(target.data());
    benchmark::ClobberMemory();
  }
}

struct NumberKind {
  using Vector = CNuvDoubleVector;
  static constexpr const char* kInstruction = "CNArrDiff";
  static double Make(std::uint64_t n) { return static_cast<double>(n) / 8.0; }
  static std::size_t Hash(double value) { return std::hash<double>()(value); }
};

struct PointKind {
  using Vector = CNuvPointVector;
  static constexpr const char* kInstruction = "CPArrDiff";
  static CNuvPoint Make(std::uint64_t n) {
    return {static_cast<double>(n % 1021) / 8.0, static_cast<double>(n / 1021)};
  }
  static std::size_t Hash(const CNuvPoint& point) {
    return std::hash<double>()(point.x) * 31 + std::hash<double>()(point.y);
  }
};

struct StringKind {
  using Vector = CNuvStringVector;
  static constexpr const char* kInstruction = "CSArrDiff";
  static CNuvString Make(std::uint64_t n) { return CNuvString("part " + std::to_string(n)); }
  static std::size_t Hash(const CNuvString& text) {
    return std::hash<std::string_view>()(std::string_view(text));
  }
};

/// Pairs of arrays that share about a tenth of their elements, a million elements in all.
template <class Kind>
std::deque<Inputs> Pairs(std::size_t size) {
  std::mt19937_64 random(size);
  std::deque<Inputs> pairs;
  while (pairs.size() * 2 * size < 1000000) {
    Inputs& pair = pairs.emplace_back(2);
    for (CNuvObject& object : pair) {
      auto& array = static_cast<typename Kind::Vector&>(object);
      for (std::size_t i = 0; i < size; ++i) array.PushBack(Kind::Make(random() % (size * 10)));
    }
  }
  return pairs;
}

template <class Kind>
void DifferenceOurs(benchmark::State& state) {
  std::deque<Inputs> pairs = Pairs<Kind>(static_cast<std::size_t>(state.range(0)));
  ReadyContext context(pairs.front());
  IXInstrPlugin* instruction = Find(Kind::kInstruction).prototype;
  std::size_t next = 0;
  for (auto _ : state) {
    context.Give(pairs[next++ % pairs.size()]);
    benchmark::DoNotOptimize(instruction->Execute(&context));
  }
}

/// Runs `contains(begin, end)`'s answer over the first array of each pair.
template <class Kind, class MakeContains>
void DifferencePlain(benchmark::State& state, MakeContains make_contains) {
  std::deque<Inputs> pairs = Pairs<Kind>(static_cast<std::size_t>(state.range(0)));
  std::size_t next = 0;
  typename Kind::Vector result;
  for (auto _ : state) {
    const Inputs& pair = pairs[next++ % pairs.size()];
    const auto& first = static_cast<const typename Kind::Vector&>(pair[0]);
    const auto& second = static_cast<const typename Kind::Vector&>(pair[1]);
    const auto contains = make_contains(second.GetStorage(), second.GetStorage() + second.Size());
    result.Resize(0);
    for (std::size_t i = 0; i < first.Size(); ++i) {
      if (!contains(first[i])) result.PushBack(first[i]);
    }
    benchmark::DoNotOptimize(result.GetStorage());
    benchmark::ClobberMemory();
  }
}

template <class Kind>
void DifferenceLoops(benchmark::State& state) {
  using Element = typename Kind::Vector::value_type;
  DifferencePlain<Kind>(state, [](const Element* begin, const Element* end) {
    return [=](const Element& value) { return std::find(begin, end, value) != end; };
  });
}

template <class Kind>
void DifferenceUnorderedSet(benchmark::State& state) {
  using Element = typename Kind::Vector::value_type;
  DifferencePlain<Kind>(state, [](const Element* begin, const Element* end) {
    const auto hash = [](const Element& value) { return Kind::Hash(value); };
    std::unordered_set<Element, decltype(hash)> set(begin, end,
                                                    static_cast<std::size_t>(end - begin), hash);
    return [set = std::move(set)](const Element& value) { return set.contains(value); };
  });
}

template <class Kind>
void RegisterDifference() {
  const std::string label = std::string(Kind::kInstruction) + "/";
  for (const int size : {1000, 100000}) {
    for (auto* row :
         {benchmark::RegisterBenchmark((label + "ours").c_str(), DifferenceOurs<Kind>),
          benchmark::RegisterBenchmark((label + "set").c_str(), DifferenceUnorderedSet<Kind>),
          benchmark::RegisterBenchmark((label + "loops").c_str(), DifferenceLoops<Kind>)}) {
      row->Arg(size)->Unit(benchmark::kMicrosecond);
    }
  }
}

const bool registered = [] {
  for (const Edit& edit : kEdits) {
    const std::string label = edit.identifier;
    for (const int size : {1000, 100000, 1000000}) {
      benchmark::RegisterBenchmark((label + "/ours").c_str(), EditOurs, edit)->Arg(size);
      benchmark::RegisterBenchmark((label + "/memcpy").c_str(), EditMemcpy, edit)->Arg(size);
    }
  }
  RegisterDifference<NumberKind>();
  RegisterDifference<PointKind>();
  RegisterDifference<StringKind>();
  return true;
}();

}  // namespace
