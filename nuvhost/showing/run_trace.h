// RunTrace: what happens in a run, told on standard error as it happens.
#pragma once

#include <chrono>

#include "nuvhost/running/run_observer.h"
#include "nuvhost/running/run_plan.h"
#include "nuvhost/system/progress.h"

namespace nuvhost {

/// Tells what steps report and log, how they fail and what is wrong with the data; on a terminal
/// also how far the runs have come. It refers to what it is given.
class RunTrace final : public RunObserver {
 public:
  RunTrace(const Program& program, const RunPlan& plan, Progress& progress)
      : program_(program), plan_(plan), progress_(progress) {}

  void StepRan(std::size_t run, std::size_t step, const StepOutcome& outcome) override;
  void RunEnded(std::size_t run, const RunOutcome& outcome) override;
  int Finish() override;

 private:
  using Clock = std::chrono::steady_clock;

  void Tell(std::size_t run, std::size_t step, const StepOutcome& outcome);
  void ShowProgress(std::size_t run, std::size_t steps);

  const Program& program_;
  const RunPlan& plan_;
  Progress& progress_;
  std::size_t steps_ = 0;  ///< that have run
  Clock::time_point begin_ = Clock::now();
  std::size_t ended_ = 0;
  std::size_t not_good_ = 0;
};

}  // namespace nuvhost
