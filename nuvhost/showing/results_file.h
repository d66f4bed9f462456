// The results of runs as a file for other programs: CSV, JSON, or JSON lines.
#pragma once

#include <memory>
#include <string>

#include "nuvhost/running/program_runs.h"
#include "nuvhost/running/run_observer.h"
#include "nuvhost/running/workers.h"

namespace nuvhost {

/// How the results file is asked for.
struct ResultsWords {
  std::string name;  ///< ends in .csv, .json or .jsonl
  bool resume = false;
  bool overwrite = false;
};

/// The runs whose results a file holds already. Throws UserError for a file that an earlier run of
/// this program over the same parts, in the same order, did not begin.
EarlierRuns ReadEarlier(const std::string& name, const Program& program, const RunPlan& plan);

/// What makes the rows of a results file of that name. It refers to the program. Throws UserError
/// for a name with another ending.
RowMaker MakeRows(const Program& program, const std::string& name);

/// Of a batch, CSV and JSON lines are under the file's name at once and grow with each part, behind
/// the earlier runs; all other files appear once they are whole. Throws UserError for a name with
/// another ending, and where the file cannot be written. It refers to the program.
std::unique_ptr<RunObserver> MakeResults(const Program& program, const RunPlan& plan,
                                         const ResultsWords& words, const EarlierRuns& earlier);

}  // namespace nuvhost
