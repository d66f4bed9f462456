// Workers: processes side by side that carry out runs, and what they are in such a process.
#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "nuvhost/running/run_messages.h"
#include "nuvhost/running/run_plan.h"
#include "nuvhost/running/step_runner.h"
#include "nuvhost/system/child_process.h"
#include "nuvhost/system/paths.h"

namespace nuvhost {

/// How the processes are started.
struct WorkerWords {
  std::size_t jobs = 1;
  /// The command line that has this program serve runs.
  std::vector<std::string> words;
};

/// Hands the runs to the processes in turn and takes their outcomes in the plan's order. A process
/// that ends before it answers makes its run a failed one, and another takes its place.
class Workers {
 public:
  /// Of a plan whose runs from `first` on are wanted. It refers to what it is given.
  Workers(const Program& program, const RunPlan& plan, std::size_t first, const WorkerWords& words,
          Services& services);

  /// The outcome of the next run in order. The listener hears of its steps. Throws UserError where
  /// a process ends before it can take a run.
  RunOutcome Next(const StepListener& listener);

 private:
  struct Worker {
    Worker(const WorkerWords& words, std::size_t run)
        : process(std::make_unique<Partner>(ProgramPath(), words.words)),
          next(run),
          most_unread(process->MostUnread()) {}

    std::unique_ptr<Partner> process;
    std::size_t next;               ///< the first of its runs that it was not asked for yet
    std::deque<std::size_t> asked;  ///< the sizes of the questions without an answer
    std::size_t unread = 0;         ///< their sum
    std::size_t most_unread;
    bool is_ready = false;  ///< it has said so, which comes before all answers
  };

  /// Keeps a few of its runs waiting with a worker.
  void Ask(Worker& worker);

  const Program& program_;
  const RunPlan& plan_;
  const WorkerWords& words_;
  Services& services_;
  std::vector<Worker> workers_;
  std::size_t first_;
  std::size_t next_;
};

/// A run as the results file holds it.
using RowMaker = std::function<std::string(const RunOutcome& run)>;

/// Carries out the runs that it is asked for on standard input, until that ends; makes their rows
/// where that is wanted.
void ServeRuns(const Program& program, bool keep_going, const Telling& telling,
               const RowMaker& make_row);

/// Reads the data and runs the steps over them; an outcome in any case.
RunOutcome RunOver(const Program& program, const std::string& name, const Replacements& files,
                   bool keep_going, Services& services, const StepListener& listener);

}  // namespace nuvhost
