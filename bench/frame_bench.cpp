// What the frame costs: one call through the context, and making, describing and releasing the
// library's prototypes.

#include <benchmark/benchmark.h>

#include <cstddef>
#include <vector>

#include "bench/ready_context.h"
#include "plugin/catalogue.h"
#include "plugin/imp_instr_plugin_lib.h"

namespace {

/// The bare virtual call that the calls below are measured against: a slot that does nothing.
void BareVirtualCall(benchmark::State& state) {
  IXInstrPlugin* instruction = Loaded().Find("Numeric: Add").prototype;
  for (auto _ : state) {
    benchmark::DoNotOptimize(instruction);
    benchmark::DoNotOptimize(instruction->Reserved8());
  }
}
BENCHMARK(BareVirtualCall);

void Execute(benchmark::State& state, const char* name, std::size_t count) {
  const nuvhost::CatalogueEntry& instruction = Loaded().Find(name);
  std::vector<CNuvObject> inputs(count);
  for (std::size_t i = 0; i < count; ++i) inputs[i] = 1.5 + static_cast<double>(i);
  ReadyContext context(inputs);
  for (auto _ : state) benchmark::DoNotOptimize(instruction.prototype->Execute(&context));
}
BENCHMARK_CAPTURE(Execute, Add2, "Numeric: Add", 2);
BENCHMARK_CAPTURE(Execute, Add10, "Numeric: Add", 10);
BENCHMARK_CAPTURE(Execute, Divide, "Divide", 2);
BENCHMARK_CAPTURE(Execute, Greater, "Greater", 2);

/// The library's object and its descriptors, for the first instructions of the catalogue.
class PartLibrary final : public CImpInstrPluginLib {
 public:
  explicit PartLibrary(std::size_t count) {
    Reserve(count);
    [&]<class... I>(formula::InstructionList<I...>) {
      std::size_t left = count;
      ((left > 0 ? (Register(formula::NewInstruction<I>()), --left) : 0), ...);
    }(formula::Catalogue());
  }
  const LibraryInfo* GetLibInfo() override { return nullptr; }
};

void RegisterInitRelease(benchmark::State& state) {
  const auto count = static_cast<std::size_t>(state.range(0));
  for (auto _ : state) {
    PartLibrary library(count);
    benchmark::DoNotOptimize(library.InitPlugins());
    library.ReleasePlugins();
  }
  state.SetComplexityN(state.range(0));
}
BENCHMARK(RegisterInitRelease)->DenseRange(10, 80, 10)->Complexity();

}  // namespace
