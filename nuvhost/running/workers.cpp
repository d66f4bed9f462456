#include "nuvhost/running/workers.h"

#include <algorithm>
#include <iostream>
#include <new>
#include <stdexcept>

#include "nuvhost/reading/source_text.h"
#include "nuvhost/system/console.h"
#include "nuvhost/system/paths.h"
#include "nuvhost/text/utf8.h"
#include "nuvhost/values/answer.h"
#include "nuvhost/values/json_value.h"

namespace nuvhost {
namespace {

/// The runs that a worker is asked for ahead of the one that is waited for.
constexpr std::size_t kAhead = 8;
/// The longest question that so many may wait with.
constexpr std::size_t kLongestAhead = 4096 / kAhead;

std::string Line(const Json& json) {
  return json.dump(-1, ' ', false, Json::error_handler_t::replace) + '\n';
}

// The question: a run's name, and its files, as bytes.
std::string QuestionOf(const RunPlan& plan, std::size_t run) {
  Json question{{"name", Utf8FromBytes(plan.Name(run))}, {"files", Json::array()}};
  for (const auto& [datum, file] : plan.Files(run)) {
    Json json{datum, Utf8FromBytes(file.name)};
    if (file.rows) {
      for (const std::uint64_t part :
           {file.rows->header_end, file.rows->begin, file.rows->end, file.rows->line}) {
        json.push_back(part);
      }
    }
    question["files"].push_back(std::move(json));
  }
  return Line(question);
}

Replacements FilesOf(const Json& question) {
  Replacements files;
  for (const Json& json : question.at("files")) {
    DataFile& file = files[json.at(0).get<std::size_t>()];
    file.name = BytesFromUtf8(json.at(1).get_ref<const std::string&>());
    if (json.size() > 2) file.rows = {json.at(2), json.at(3), json.at(4), json.at(5)};
  }
  return files;
}

/// Whether the report shows a result.
bool IsShown(const Program& program, const StepResult& result) {
  return std::ranges::find(program.report, result, &ReportRow::value) != program.report.end();
}

/// Leaves out of an outcome what is shown only where everything is.
void Shorten(const Program& program, RunOutcome& run) {
  for (std::size_t i = 0; i < run.steps.size(); ++i) {
    run.steps[i].record.annotations.clear();
    if (run.steps[i].context == nullptr) continue;
    const auto& results = program.steps[i].instruction->descriptor->results;
    for (std::size_t j = 0; j < results.Size(); ++j) {
      const bool is_array = results[j].type >= NUV_PARAM_BOOLEAN_ARRAY;
      if (is_array && !IsShown(program, {i, j})) run.steps[i].context->results[j] = CNuvObject();
    }
  }
}

/// The answer: what came of a run, with the inputs of its steps where they are wanted.
std::string AnswerOf(const RunOutcome& run, std::vector<Json>& inputs) {
  Json answer{{"state", static_cast<int>(run.state)}, {"errors", run.errors}};
  answer["steps"] = Json::array();
  for (std::size_t i = 0; i < run.steps.size(); ++i) {
    const StepOutcome& step = run.steps[i];
    Json json{{"state", static_cast<int>(step.state)}};
    if (step.context != nullptr) {
      json.update(AnswerToCall(step.status, *step.context, step.record));
      json["caution"] = step.caution;
      json["circumstances"] = step.circumstances;
      json["duration"] = step.duration.count();
      if (!inputs.empty()) json["in"] = std::move(inputs[i]);
    }
    answer["steps"].push_back(std::move(json));
  }
  return Line(answer);
}

StepOutcome StepOf(const Step& step, const Json& json, Services& services) {
  const DescriptorRecord& descriptor = *step.instruction->descriptor;
  StepOutcome outcome;
  outcome.state = static_cast<StepOutcome::State>(json.at("state").get<int>());
  if (!json.contains("status")) return outcome;
  outcome.status = json.at("status");
  outcome.caution = json.at("caution");
  outcome.circumstances = json.at("circumstances");
  outcome.duration = std::chrono::nanoseconds(json.at("duration").get<std::int64_t>());
  outcome.context = std::make_unique<CallContext>(descriptor, services);
  outcome.context->constants = step.constants;
  TakeAnswer(json, descriptor, *outcome.context, outcome.record);
  if (!json.contains("in")) return outcome;
  outcome.context->inputs.clear();
  for (const Json& input : json.at("in")) {
    const std::size_t declared =
        std::min(outcome.context->inputs.size(), descriptor.inputs.Size() - 1);
    outcome.context->inputs.push_back(FromJson(input, descriptor.inputs[declared].type));
  }
  return outcome;
}

RunOutcome OutcomeOf(const Program& program, const Json& answer, Services& services) {
  RunOutcome run;
  run.state = static_cast<RunOutcome::State>(answer.at("state").get<int>());
  run.errors = answer.at("errors").get<std::vector<std::string>>();
  const Json& steps = answer.at("steps");
  for (std::size_t i = 0; i < steps.size(); ++i) {
    run.steps.push_back(StepOf(program.steps.at(i), steps[i], services));
  }
  return run;
}

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
    workers_.push_back({std::make_unique<Partner>(ProgramPath(), words.words), first + i});
    Ask(workers_.back());
  }
}

void Workers::Ask(Worker& worker) {
  const std::size_t jobs = words_.jobs;
  while (worker.asked < plan_.Size() && worker.asked < next_ + kAhead * jobs) {
    const std::string question = QuestionOf(plan_, worker.asked);
    if (question.size() > kLongestAhead && worker.asked >= next_ + jobs) return;
    worker.process->Send(question);
    worker.asked += jobs;
  }
}

RunOutcome Workers::Next(const StepListener& listener) {
  const std::size_t run_number = next_;
  Worker& worker = workers_[(run_number - first_) % words_.jobs];
  const std::optional<std::string> line = worker.process->ReadLine();
  ++next_;
  RunOutcome run;
  if (line) {
    run = OutcomeOf(program_, ParseJson(*line), services_);
    for (const std::size_t i : RunOrder(program_)) {
      if (run.steps.empty()) break;
      for (const LogEntry& entry : run.steps[i].record.log) {
        CNuvLog::Instance().Log(entry.level, entry.text.c_str());
      }
    }
    services_.Take();
  } else {
    run = Crashed(program_, plan_.Name(run_number));
    worker.process = std::make_unique<Partner>(ProgramPath(), words_.words);
    worker.asked = run_number + words_.jobs;
  }
  run.file = ValidUtf8(plan_.Name(run_number));
  Ask(worker);
  for (const std::size_t i : RunOrder(program_)) {
    if (!run.steps.empty() && run.steps[i].context != nullptr) listener(i, run.steps[i]);
  }
  return run;
}

void ServeRuns(const Program& program, bool keep_going, bool in_full) {
  LeaveInterruptsToParent();
  ExpectTheWorst();
  Services services;
  for (std::string line; std::getline(std::cin, line);) {
    const Json question = ParseJson(line);
    std::vector<Json> inputs;
    if (in_full) inputs.resize(program.steps.size());
    const auto listener = [&](std::size_t step, const StepOutcome& outcome) {
      if (!in_full) return;
      inputs[step] = Json::array();
      for (const CNuvObject& input : outcome.context->inputs) inputs[step].push_back(ToJson(input));
    };
    const std::string name = BytesFromUtf8(question.at("name").get_ref<const std::string&>());
    RunOutcome run = RunOver(program, name, FilesOf(question), keep_going, services, listener);
    if (!in_full) Shorten(program, run);
    Print(AnswerOf(run, inputs));
    FlushOutput();
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
    run = RunSteps(program, data, keep_going, services, listener);
  } else {
    run.state = RunOutcome::State::kUnreadable;
    run.errors = mistakes.Listing();
  }
  run.file = ValidUtf8(name);
  return run;
}

}  // namespace nuvhost
