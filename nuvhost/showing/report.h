// What a run's standard output shows: the program's report, or what every step gave.
#pragma once

#include "nuvhost/running/program_runs.h"
#include "nuvhost/running/run_observer.h"

namespace nuvhost {

/// Prints, at the end, the program's title and the report of each run, or without one a table of
/// its steps; the reports of many runs as one table, a row for each. Of more than 100 runs at most
/// 100 that are not good are shown. It refers to the program.
std::unique_ptr<RunObserver> MakeReport(const Program& program, std::size_t runs);

/// Prints, at the end, how many runs came to what, in one line; earlier ones count.
std::unique_ptr<RunObserver> MakeVerdict(const Program& program, const EarlierRuns& earlier);

}  // namespace nuvhost
