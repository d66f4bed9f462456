#include "nuvhost/running/program_runs.h"

#include <algorithm>
#include <exception>
#include <optional>

#include "nuvhost/error.h"
#include "nuvhost/reading/source_text.h"
#include "nuvhost/system/console.h"
#include "nuvhost/text/utf8.h"

namespace nuvhost {
namespace {

using State = RunOutcome::State;

int ExitCode(State state) {
  switch (state) {
    case State::kSucceeded:
    case State::kGood: break;
    case State::kBad:
    case State::kFailed: return kExitFailed;
    case State::kUnreadable: return kExitWrongCall;
  }
  return kExitSuccess;
}

int Finish(const RunObservers& observers) {
  int exit_code = kExitSuccess;
  std::exception_ptr failure;
  for (const auto& observer : observers) {
    try {
      exit_code = std::max(exit_code, observer->Finish());
    } catch (const UserError&) {
      if (failure == nullptr) failure = std::current_exception();
    }
  }
  if (failure != nullptr) std::rethrow_exception(failure);
  return exit_code;
}

}  // namespace

int ExitCode(const RunOutcome::Counts& runs) {
  int exit_code = kExitSuccess;
  for (std::size_t i = 0; i < runs.size(); ++i) {
    if (runs[i] > 0) exit_code = std::max(exit_code, ExitCode(static_cast<State>(i)));
  }
  return exit_code;
}

int RunAll(const Program& program, const RunPlan& plan, bool keep_going,
           const RunObservers& observers, const EarlierRuns& earlier, const WorkerWords& words,
           const InterruptWatch* watch) {
  Services services;
  int exit_code = ExitCode(earlier.states);
  std::size_t run = earlier.count;
  std::optional<Workers> workers;
  if (words.jobs > 1) workers.emplace(program, plan, run, words, services);
  for (; run < plan.Size() && !(watch != nullptr && watch->HasHappened()); ++run) {
    for (const auto& observer : observers) observer->RunBegins(run);
    const auto listener = [&](std::size_t step, const StepOutcome& outcome) {
      for (const auto& observer : observers) observer->StepRan(run, step, outcome);
    };
    const RunOutcome outcome =
        workers ? workers->Next(listener)
                : RunOver(program, plan.Name(run), plan.Files(run), keep_going, services, listener);
    for (const auto& observer : observers) observer->RunEnded(run, outcome);
    if (plan.Size() == 1 && outcome.state == State::kUnreadable) return kExitWrongCall;
    exit_code = std::max(exit_code, ExitCode(outcome.state));
  }
  exit_code = std::max(exit_code, Finish(observers));
  if (watch == nullptr || !watch->HasHappened()) return exit_code;
  Complain(fmt::format("interrupted: {} of {} were run\n", run, plan.Size()));
  return kExitInterrupted;
}

}  // namespace nuvhost
