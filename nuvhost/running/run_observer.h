// RunObserver: who is told what happens while a program runs over its data.
#pragma once

#include <memory>
#include <vector>

#include "nuvhost/error.h"
#include "nuvhost/running/step_runner.h"

namespace nuvhost {

/// Told of each run, by its place in the plan, and of its steps, as they happen.
class RunObserver {
 public:
  RunObserver() = default;
  RunObserver(const RunObserver&) = delete;
  RunObserver& operator=(const RunObserver&) = delete;
  virtual ~RunObserver() = default;

  virtual void RunBegins(std::size_t /*run*/) {}
  virtual void StepRan(std::size_t /*run*/, std::size_t /*step*/, const StepOutcome& /*outcome*/) {}
  /// Also told of a run whose data could not be read.
  virtual void RunEnded(std::size_t /*run*/, const RunOutcome& /*outcome*/) {}
  /// All runs have ended: completes what shows them together, and gives the exit code for what
  /// could not be shown. Throws UserError where nothing of it could.
  virtual int Finish() { return kExitSuccess; }
};

/// In the order in which they are told.
using RunObservers = std::vector<std::unique_ptr<RunObserver>>;

}  // namespace nuvhost
