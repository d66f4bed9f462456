#include "nuvhost/running/program_runs.h"

#include <algorithm>
#include <exception>
#include <new>
#include <stdexcept>

#include "nuvhost/error.h"
#include "nuvhost/reading/source_text.h"
#include "nuvhost/system/console.h"
#include "nuvhost/system/interrupt.h"
#include "nuvhost/text/utf8.h"

namespace nuvhost {
namespace {

using State = RunOutcome::State;

RunOutcome RunOne(const Program& program, const RunPlan& plan, std::size_t index, bool keep_going,
                  Services& services, const StepListener& listener) {
  Mistakes mistakes;
  std::vector<CNuvObject> data;
  try {
    data = LoadData(program, plan.Files(index), mistakes);
  } catch (const std::bad_alloc&) {
    mistakes.Add(plan.Name(index), "too much data for the memory there is");
  } catch (const std::length_error&) {
    mistakes.Add(plan.Name(index), "more data than an array may hold");
  }
  RunOutcome run;
  if (mistakes.Empty()) {
    run = RunSteps(program, data, keep_going, services, listener);
  } else {
    run.state = State::kUnreadable;
    run.errors = mistakes.Listing();
  }
  run.file = ValidUtf8(plan.Name(index));
  return run;
}

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

int RunAll(const Program& program, const RunPlan& plan, bool keep_going,
           const RunObservers& observers) {
  Services services;
  std::optional<InterruptWatch> watch;
  if (plan.Size() > 1) watch.emplace();
  int exit_code = kExitSuccess;
  std::size_t run = 0;
  for (; run < plan.Size() && !(watch && watch->HasHappened()); ++run) {
    for (const auto& observer : observers) observer->RunBegins(run);
    const auto listener = [&](std::size_t step, const StepOutcome& outcome) {
      for (const auto& observer : observers) observer->StepRan(run, step, outcome);
    };
    const RunOutcome outcome = RunOne(program, plan, run, keep_going, services, listener);
    for (const auto& observer : observers) observer->RunEnded(run, outcome);
    if (plan.Size() == 1 && outcome.state == State::kUnreadable) return kExitWrongCall;
    exit_code = std::max(exit_code, ExitCode(outcome.state));
  }
  exit_code = std::max(exit_code, Finish(observers));
  if (!watch || !watch->HasHappened()) return exit_code;
  Complain(fmt::format("interrupted: {} of {} were run\n", run, plan.Size()));
  return kExitInterrupted;
}

}  // namespace nuvhost
