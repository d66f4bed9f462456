#include "nuvhost/running/workers.h"

#include <new>
#include <stdexcept>

#include "nuvhost/error.h"
#include "nuvhost/reading/source_text.h"
#include "nuvhost/system/paths.h"
#include "nuvhost/text/utf8.h"

namespace nuvhost {
namespace {

RunOutcome Crashed(const Program& program, const std::string& name) {
  RunOutcome run;
  run.state = RunOutcome::State::kFailed;
  run.errors.push_back(name +
                       ": the process that ran this part ended before it was done; it crashed "
                       "or was killed");
  run.steps.resize(program.steps.size());
  return run;
}

}  // namespace

Workers::Workers(const Program& program, const RunPlan& plan, std::size_t first,
                 const WorkerWords& words, Services& services)
    : program_(program),
      plan_(plan),
      words_(words),
      services_(services),
      first_(first),
      next_(first) {
  for (std::size_t i = 0; i < words.jobs; ++i) {
    Ask(workers_.emplace_back(words_, first + i));
  }
}

void Workers::Ask(Worker& worker) {
  if (worker.unread > worker.most_unread / 2) return;  // many at once, or none
  std::string questions;
  for (; worker.next < plan_.Size(); worker.next += words_.jobs) {
    const bool is_shown = worker.next - first_ < kMostShown;
    const std::string question = Framed(Pack(plan_, worker.next, is_shown));
    const bool fits = worker.unread + question.size() <= worker.most_unread;
    if (!fits && !worker.asked.empty()) break;
    questions += question;
    worker.asked.push_back(question.size());
    worker.unread += question.size();
  }
  worker.process->Send(questions);
}

RunOutcome Workers::Next(const StepListener& listener) {
  const std::size_t run_number = next_;
  Worker& worker = workers_[(run_number - first_) % words_.jobs];
  if (!worker.is_ready && !worker.process->Read()) {
    throw UserError(
        "a process for --jobs ended before it took a part, which says nothing of parts; try fewer");
  }
  worker.is_ready = true;
  const std::optional<std::string_view> answer = worker.process->Read();
  ++next_;
  RunOutcome run;
  if (answer) {
    run = UnpackOutcome(program_, *answer, services_);
    for (const std::size_t i : RunOrder(program_)) {
      if (run.steps.empty()) break;
      for (const LogEntry& entry : run.steps[i].record.log) {
        CNuvLog::Instance().Log(entry.level, entry.text.c_str());
      }
    }
    services_.Take();
    worker.unread -= worker.asked.front();
    worker.asked.pop_front();
  } else {
    run = Crashed(program_, plan_.Name(run_number));
    worker = Worker(words_, run_number + words_.jobs);
  }
  run.file = ValidUtf8(plan_.Name(run_number));
  Ask(worker);
  for (const std::size_t i : RunOrder(program_)) {
    if (!run.steps.empty() && run.steps[i].context != nullptr) listener(i, run.steps[i]);
  }
  return run;
}

void ServeRuns(const Program& program, bool keep_going, const Telling& telling,
               const RowMaker& make_row) {
  LeaveInterruptsToParent();
  ExpectTheWorst();
  PrivateOutput output;  // what else is printed would spoil the answers
  output.Write(Framed(""));
  Services services;
  std::size_t not_good = 0;
  while (const std::optional<std::string> message = ReadMessage()) {
    const Question question = UnpackQuestion(*message);
    std::vector<std::string> inputs(program.steps.size());
    const auto listener = [&](std::size_t step, const StepOutcome& outcome) {
      if (telling.inputs) inputs[step] = PackInputs(outcome);
    };
    RunOutcome run =
        RunOver(program, question.name, question.files, keep_going, services, listener);
    if (make_row) run.row = make_row(run);
    const bool is_good = run.state <= RunOutcome::State::kGood;
    const bool is_shown = question.is_shown || (!is_good && ++not_good <= kMostShown);
    output.Write(Framed(Pack(program, run, is_shown, telling, inputs)));
  }
}

RunOutcome RunOver(const Program& program, const std::string& name, const Replacements& files,
                   bool keep_going, Services& services, const StepListener& listener) {
  Mistakes mistakes;
  std::vector<CNuvObject> data;
  try {
    data = LoadData(program, files, mistakes);
  } catch (const std::bad_alloc&) {
    mistakes.Add(name, "too much data for the memory there is");
  } catch (const std::length_error&) {
    mistakes.Add(name, "more data than an array may hold");
  }
  RunOutcome run;
  if (mistakes.Empty()) {
    run = RunSteps(program, std::move(data), keep_going, services, listener);
  } else {
    run.state = RunOutcome::State::kUnreadable;
    run.errors = mistakes.Listing();
  }
  run.file = ValidUtf8(name);
  return run;
}

}  // namespace nuvhost
