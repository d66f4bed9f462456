// Questions and answers: what the processes of a run hand each other.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "nuvhost/running/run_plan.h"
#include "nuvhost/running/step_runner.h"

namespace nuvhost {

/// What a process tells of a run beyond states, messages and the results that the report shows.
struct Telling {
  bool results = false;           ///< the other results
  bool results_of_shown = false;  ///< of those runs that may be shown
  bool drawings = false;          ///< else how many there are
  bool drawings_of_shown = false;
  bool inputs = false;

  /// As one word of a command line, and back.
  std::string Word() const;
  static Telling Of(std::string_view word);
};

/// Which run is asked for.
struct Question {
  std::string name;
  bool is_shown = false;  ///< however it ends, as one of the first
  Replacements files = {};
};

std::string Pack(const RunPlan& plan, std::size_t run, bool is_shown);
Question UnpackQuestion(std::string_view bytes);

/// A run's outcome, with each step's inputs as PackInputs made them; empty ones where they are not
/// told.
std::string Pack(const Program& program, const RunOutcome& run, bool is_shown,
                 const Telling& telling, const std::vector<std::string>& inputs);
std::string PackInputs(const StepOutcome& step);
/// Without the name of its file; results that are not told are empty. Throws ValueError for bytes
/// that are no answer.
RunOutcome UnpackOutcome(const Program& program, std::string_view bytes, Services& services);

}  // namespace nuvhost
