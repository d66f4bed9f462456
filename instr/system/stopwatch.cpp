// Stopwatches, whose start times live in the host's named data.

#include <cstdlib>
#include <memory>
#include <new>

#include "host/os.h"
#include "plugin/instruction.h"

namespace formula {
namespace {

constexpr std::uint32_t kStopwatches = 256;
constexpr const char* kTableName = "SystemTimers256";

struct FreeMemory {
  void operator()(double* memory) const { std::free(memory); }
};

/// The start times, 0 for a stopwatch that does not run: one table for all instructions of the
/// host's run, made when it is first wanted and the store's own from then on. Null where the host
/// keeps nothing.
double* Table(Call& call) {
  IXNamedDataStore* store = call.NamedData();
  if (store == nullptr) return nullptr;
  if (void* found = store->LookUp(kTableName)) return static_cast<double*>(found);
  std::unique_ptr<double, FreeMemory> table(
      static_cast<double*>(std::calloc(kStopwatches, sizeof(double))));
  if (table == nullptr) throw std::bad_alloc();
  store->Store(kTableName, table.get());
  return table.release();
}

/// The start time of the stopwatch that the constant names; null where there is none.
double* StartTime(Call& call) {
  const auto index = static_cast<std::uint32_t>(call.ConstantInteger(0));
  if (index >= kStopwatches) return nullptr;
  double* const table = Table(call);
  return table == nullptr ? nullptr : table + index;
}

constexpr Constant kIndex{
    .group = "Parameters", .name = "index", .has_range = true, .minimum = 0, .maximum = 255};

}  // namespace

struct CSystemStopwatchStart final : Instruction<CSystemStopwatchStart> {
  static constexpr Definition kDefinition{
      .category = "IO: System",
      .name = "Stopwatch Start ",
      .identifier = "_Nuv_System_CSystemStopwatchStart_",
      .help = 460220,
      .description =
          "Starts the stopwatch at index. If the stopwatch is already running it will be "
          "restarted.",
      .constants = {kIndex},
  };
  static Status Run(Call& call) {
    double* start = StartTime(call);
    if (start == nullptr) return Status::kFailure;
    *start = CNuvOs::GetMSecTime();
    return Status::kSuccess;
  }
};

struct CSystemStopwatchStop final : Instruction<CSystemStopwatchStop> {
  static constexpr Definition kDefinition{
      .category = "IO: System",
      .name = "Stopwatch Stop ",
      .identifier = "_Nuv_System_CSystemStopwatchStop_",
      .help = 460221,
      .description =
          "Stops the stopwatch at index. If the stopwatch is not running it returns zero.",
      .constants = {kIndex},
      .results = {Number("elapsed ms")},
  };
  static Status Run(Call& call) {
    double* start = StartTime(call);
    if (start == nullptr) return Status::kFailure;
    call.Set(0, *start == 0.0 ? 0.0 : CNuvOs::GetMSecTime() - *start);
    *start = 0.0;
    return Status::kSuccess;
  }
};

template struct Instructions<CSystemStopwatchStart, CSystemStopwatchStop>;

}  // namespace formula
