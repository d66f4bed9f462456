// The runs of a program, one after the other.
#pragma once

#include "nuvhost/running/run_observer.h"
#include "nuvhost/running/run_plan.h"

namespace nuvhost {

/// Runs a program without mistakes as planned, tells the observers, and gives the worst of the
/// exit codes. Of several runs, Ctrl-C ends all behind the one at hand: the observers finish, and
/// the exit code is kExitInterrupted. Where the data of the only run cannot be read, they are not
/// told to finish, so that nothing is shown of it. Throws what the first observer threw that could
/// not finish, once all others have.
int RunAll(const Program& program, const RunPlan& plan, bool keep_going,
           const RunObservers& observers);

}  // namespace nuvhost
