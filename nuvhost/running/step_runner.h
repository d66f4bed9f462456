// StepRunner: executes a checked program's steps one after the other.
#pragma once

#include <array>
#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "nuvhost/reading/program.h"
#include "reference_host/services/call_context.h"
#include "reference_host/services/services.h"

namespace nuvhost {

/// What came of a step.
struct StepOutcome {
  enum class State {
    kNotRun,
    kSucceeded,
    kFailed,
    kDoubtful,  ///< succeeded, with a result of a failed or doubtful step as input
  };
  State state = State::kNotRun;
  std::int32_t status = 0;
  std::unique_ptr<CallContext> context;  ///< its results; null for a step that was not run
  Record record;                         ///< what it reported, drew and logged
  std::string caution;                   ///< why its results cannot be relied on; empty if they can
  std::string circumstances;  ///< of a step that failed: when it does, its inputs in short
  std::chrono::nanoseconds duration{0};  ///< of the instruction itself
};

/// Whether a step ran and did not fail.
bool HasResults(const StepOutcome& step);

/// What came of a run.
struct RunOutcome {
  enum class State {
    kSucceeded,   ///< every step, of a program that judges nothing
    kGood,        ///< every step, and every row of the report holds
    kBad,         ///< every step, and a row of the report does not hold
    kFailed,      ///< a step failed
    kUnreadable,  ///< the data could not be read
  };
  static constexpr std::size_t kStates = 5;
  using Counts = std::array<std::size_t, kStates>;  ///< how many came to what

  std::string file;  ///< the data file it was run over, or else the program's
  State state = State::kSucceeded;
  std::vector<std::string> errors;  ///< as they were told on standard error
  std::vector<StepOutcome> steps;   ///< as many as the program has; none for unreadable data
  std::string row;                  ///< as the results file holds it, where another process made it
};

/// Of so many runs at most more is shown than what came of them: of the first ones, or else of the
/// first that are not good.
inline constexpr std::size_t kMostShown = 100;

/// Told of every step that was run, at once, while its inputs are still there.
using StepListener = std::function<void(std::size_t step, const StepOutcome& outcome)>;

/// Runs the steps until one fails, or all of them. The program's settings hold meanwhile.
RunOutcome RunSteps(const Program& program, std::vector<CNuvObject> data, bool keep_going,
                    Services& services, const StepListener& listener);

/// 'step "mean" ("MeanArr", number 2)', 'step "half", expression "a / b", operator "/"'.
std::string DescribeStep(const Program& program, std::size_t step);
/// "ok", "good", "bad", "failed" or "unreadable".
const char* StateText(RunOutcome::State state);
/// The state of that text; nothing for another text.
std::optional<RunOutcome::State> StateOf(std::string_view text);
/// What came of a report's row: nothing where it has no limits, or its step no result.
std::optional<bool> Judged(const ReportRow& row, const RunOutcome& run);
/// What went wrong in a failed step, in its own words or else by its inputs: one text at least.
std::vector<std::string> FailureTexts(const StepOutcome& outcome);

}  // namespace nuvhost
