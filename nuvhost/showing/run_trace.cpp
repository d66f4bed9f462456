#include "nuvhost/showing/run_trace.h"

#include <algorithm>
#include <cmath>

#include "nuvhost/error.h"
#include "nuvhost/text/names.h"
#include "nuvhost/text/utf8.h"

namespace nuvhost {
void RunTrace::StepRan(std::size_t run, std::size_t step, const StepOutcome& outcome) {
  const Record& record = outcome.record;
  const bool is_silent = record.log.empty() && record.events.empty() && record.messages.empty() &&
                         outcome.caution.empty() && outcome.state != StepOutcome::State::kFailed;
  if (!is_silent) Tell(run, step, outcome);
  if (plan_.Size() == 1) ShowProgress(run, ++steps_);
}

void RunTrace::Tell(std::size_t run, std::size_t step, const StepOutcome& outcome) {
  const std::string place = OnOneLine(plan_.Name(run)) + ": " + DescribeStep(program_, step) + ": ";
  const bool failed = outcome.state == StepOutcome::State::kFailed;
  for (const LogEntry& entry : outcome.record.log) {
    progress_.Complain(fmt::format("{}log: {}", place, OnOneLine(Utf8FromBytes(entry.text))));
  }
  for (const ProgramEvent& event : outcome.record.events) {
    progress_.Complain(fmt::format("{}event {}, value {}", place, event.code, event.value));
  }
  for (const Message& message : outcome.record.messages) {
    const bool is_warning = message.severity == NUV_SEVERITY_WARNING;
    if (failed && !is_warning) continue;
    progress_.Complain(place + (is_warning ? "warning: " : "message: ") +
                       Utf8FromBytes(message.source) + ": " + Utf8FromBytes(message.text));
  }
  if (!outcome.caution.empty()) progress_.Complain(place + "warning: " + outcome.caution);
  if (failed) {
    for (const std::string& text : FailureTexts(outcome)) progress_.Complain(place + text);
  }
}

void RunTrace::RunEnded(std::size_t run, const RunOutcome& outcome) {
  ++ended_;
  const bool is_good = outcome.state <= RunOutcome::State::kGood;
  if (!is_good) ++not_good_;
  const bool ran = std::ranges::any_of(
      outcome.steps, [](const StepOutcome& step) { return step.context != nullptr; });
  if (!ran) {
    for (const std::string& error : outcome.errors) progress_.Complain(error);
  }
  if (plan_.Size() > 1) ShowProgress(run, program_.steps.size());
}

int RunTrace::Finish() {
  progress_.Clear();
  return kExitSuccess;
}

void RunTrace::ShowProgress(std::size_t run, std::size_t steps) {
  if (!progress_.IsDue()) return;
  if (plan_.Size() == 1) {
    return progress_.Show(fmt::format("{} of {} steps", steps, program_.steps.size()));
  }
  std::string text = fmt::format("{} of {} parts", run + 1, plan_.Size());
  if (ended_ > 0) {
    const std::chrono::duration<double> elapsed = Clock::now() - begin_;
    const double rate = static_cast<double>(ended_) / elapsed.count();
    const auto left = static_cast<double>(plan_.Size() - run - 1) / rate;
    text += fmt::format(", {:.{}f} a second, {:.0f} s left, {} not good", rate, rate < 10 ? 1 : 0,
                        std::ceil(left), not_good_);
  }
  progress_.Show(text);
}

}  // namespace nuvhost
