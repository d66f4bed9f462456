// What a run's standard output shows: the program's report, or what every step gave.
#pragma once

#include "nuvhost/running/program_runs.h"
#include "nuvhost/running/run_observer.h"

namespace nuvhost {

/// Below a table in which bad values stand behind an exclamation mark.
inline constexpr const char* kBadNote = "\n  ! not within its limits\n";

/// "Bore (mm), 12.95 to 13.05": what stands above a row's values.
std::string HeadText(const std::string& label, const std::string& unit, const Limits& limits);

/// How many parts came to what, in one line: "500 parts: 388 good, 110 bad, 2 failed".
std::string VerdictText(const RunOutcome::Counts& parts);

/// Prints, at the end, the program's title and the report of each run, or without one a table of
/// its steps; the reports of many runs as one table, a row for each. Of more than kMostShown runs
/// at most as many that are not good are shown. It refers to the program.
std::unique_ptr<RunObserver> MakeReport(const Program& program, std::size_t runs);

/// Prints, at the end, how many runs came to what, in one line; earlier ones count. Of one run that
/// the program does not judge nothing, unless more were to come.
std::unique_ptr<RunObserver> MakeVerdict(const Program& program, std::size_t runs,
                                         const EarlierRuns& earlier);

}  // namespace nuvhost
