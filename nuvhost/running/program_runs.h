// The runs of a program, one after the other.
#pragma once

#include "nuvhost/running/run_observer.h"
#include "nuvhost/running/run_plan.h"
#include "nuvhost/running/workers.h"
#include "nuvhost/system/interrupt.h"

namespace nuvhost {

/// Runs of the plan, from its beginning, that were carried out at another time.
struct EarlierRuns {
  std::size_t count = 0;
  RunOutcome::Counts states{};
  std::uint64_t end = 0;  ///< where their results end in the file
};

/// The worst of the exit codes of runs.
int ExitCode(const RunOutcome::Counts& runs);

/// Runs a program without mistakes as planned, tells the observers, and gives the worst of the exit
/// codes, the earlier runs' included. A Ctrl-C that is watched for ends all runs behind the one at
/// hand: the observers finish, and the exit code is kExitInterrupted. With several jobs they are
/// carried out in as many processes. Where the data of the only run cannot be read, they are not
/// told to finish, so that nothing is shown of it. Throws what the first observer threw that could
/// not finish, once all others have.
int RunAll(const Program& program, const RunPlan& plan, bool keep_going,
           const RunObservers& observers, const EarlierRuns& earlier = {},
           const WorkerWords& words = {}, const InterruptWatch* watch = nullptr);

}  // namespace nuvhost
