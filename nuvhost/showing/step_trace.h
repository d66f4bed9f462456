// StepTrace: what goes into each step and what comes out of it, told on standard error.
#pragma once

#include "nuvhost/running/run_observer.h"
#include "nuvhost/running/run_plan.h"
#include "nuvhost/system/progress.h"

namespace nuvhost {

/// It refers to what it is given.
class StepTrace final : public RunObserver {
 public:
  StepTrace(const Program& program, const RunPlan& plan, Progress& progress)
      : program_(program), plan_(plan), progress_(progress) {}

  void StepRan(std::size_t run, std::size_t step, const StepOutcome& outcome) override;

 private:
  const Program& program_;
  const RunPlan& plan_;
  Progress& progress_;
};

}  // namespace nuvhost
