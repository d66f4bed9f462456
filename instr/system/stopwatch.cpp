// Stopwatches, whose start times live in the host's named data.

#include <atomic>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <new>
#include <optional>

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
  static std::mutex first_use;
  const std::lock_guard lock(first_use);
  if (void* found = store->LookUp(kTableName)) return static_cast<double*>(found);
  std::unique_ptr<double, FreeMemory> table(
      static_cast<double*>(std::calloc(kStopwatches, sizeof(double))));
  if (table == nullptr) throw std::bad_alloc();
  store->Store(kTableName, table.get());
  return table.release();
}

/// A start time, which several threads may read and write.
using StartTime = std::atomic_ref<double>;

/// That of the stopwatch that the constant names; none where there is no such stopwatch.
std::optional<StartTime> FindStartTime(Call& call) {
  const auto index = static_cast<std::uint32_t>(call.ConstantInteger(0));
  if (index >= kStopwatches) return std::nullopt;
  double* const table = Table(call);
  if (table == nullptr) return std::nullopt;
  return StartTime(table[index]);
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
    const std::optional<StartTime> start = FindStartTime(call);
    if (!start) return Status::kFailure;
    start->store(CNuvOs::GetMSecTime());
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
    const std::optional<StartTime> start = FindStartTime(call);
    if (!start) return Status::kFailure;
    const double started = start->exchange(0.0);
    return call.Set(0, started == 0.0 ? 0.0 : CNuvOs::GetMSecTime() - started);
  }
};

template struct Instructions<CSystemStopwatchStart, CSystemStopwatchStop>;

}  // namespace formula
