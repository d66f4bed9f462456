#include "nuvhost/showing/results_file.h"

#include <filesystem>
#include <optional>
#include <utility>

#include "nuvhost/error.h"
#include "nuvhost/showing/result_row.h"
#include "nuvhost/showing/results_reader.h"
#include "nuvhost/system/input_file.h"
#include "nuvhost/system/output_file.h"
#include "nuvhost/system/paths.h"
#include "nuvhost/system/stream_file.h"
#include "nuvhost/text/names.h"
#include "nuvhost/text/utf8.h"
#include "nuvhost/values/answer.h"
#include "nuvhost/values/json_value.h"

namespace nuvhost {
namespace {

using State = StepOutcome::State;

constexpr const char* kWhat = "results";

const char* StateText(State state) {
  switch (state) {
    case State::kNotRun: return "not run";
    case State::kSucceeded: return "ok";
    case State::kFailed: return "failed";
    case State::kDoubtful: return "after a failed step";
  }
  return "";
}

/// A step's outcome: its results by name, and all that it left in the record.
Json StepToJson(const Step& step, const StepOutcome& outcome) {
  const DescriptorRecord& descriptor = *step.instruction->descriptor;
  Json json{{"name", step.name},
            {"instr", TextToJson(descriptor.identifier)},
            {"state", StateText(outcome.state)}};
  if (outcome.state == State::kNotRun) return json;
  Json answer = AnswerToCall(outcome.status, *outcome.context, outcome.record);
  Json results = Json::array();
  for (std::size_t i = 0; i < descriptor.results.Size(); ++i) {
    results.push_back(
        {{"name", TextToJson(descriptor.results[i].name)}, {"value", std::move(answer["out"][i])}});
  }
  answer.erase("out");
  json["results"] = std::move(results);
  if (!outcome.caution.empty()) json["caution"] = outcome.caution;
  json.update(answer);
  return json;
}

std::string Text(const Json& json) {
  return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

Json RunToJson(const Program& program, const RunOutcome& run) {
  Json json{{"file", run.file}, {"status", StateText(run.state)}};
  if (!run.errors.empty()) json["errors"] = run.errors;
  json["report"] = Json::array();
  json["steps"] = Json::array();
  for (std::size_t i = 0; i < run.steps.size(); ++i) {
    if (program.steps[i].generated) continue;
    json["steps"].push_back(StepToJson(program.steps[i], run.steps[i]));
  }
  for (const ReportRow& row : program.report) {
    const StepOutcome* step = run.steps.empty() ? nullptr : &run.steps[row.value.step];
    const bool has_results = step != nullptr && HasResults(*step);
    Json shown{{"label", row.label},
               {"value", has_results ? ToJson(step->context->results[row.value.result]) : Json()}};
    if (!row.unit.empty()) shown["unit"] = row.unit;
    if (row.limits.least) shown["min"] = *row.limits.least;
    if (row.limits.most) shown["max"] = *row.limits.most;
    if (row.limits.expected) shown["expect"] = *row.limits.expected;
    if (const auto good = Judged(row, run)) shown["good"] = *good;
    json["report"].push_back(std::move(shown));
  }
  return json;
}

enum class Form { kCsv, kJson, kJsonLines };

Form FormOf(const std::string& name) {
  if (name.ends_with(".json")) return Form::kJson;
  if (name.ends_with(".jsonl")) return Form::kJsonLines;
  if (name.ends_with(".csv")) return Form::kCsv;
  throw UserError("--results {}: the file's name must end in .csv, .json or .jsonl", name);
}

/// A run as a file of that form holds it, unless it was made already.
std::string RowOf(const RowMaker& make, const RunOutcome& run) {
  return run.row.empty() ? make(run) : run.row;
}

/// A row for each run, in CSV or JSON lines, in a file of either kind.
template <class File>
class Rows final : public RunObserver {
 public:
  template <class... Words>
  Rows(const Program& program, bool has_header, const std::string& name, const Words&... words)
      : make_(MakeRows(program, name)), file_(name, words...) {
    if (FormOf(name) == Form::kCsv && !has_header) file_.Write(CsvHeader(ResultColumns(program)));
  }

  void RunEnded(std::size_t /*run*/, const RunOutcome& outcome) override {
    file_.Write(RowOf(make_, outcome));
  }

  int Finish() override {
    file_.Finish();
    return kExitSuccess;
  }

 private:
  RowMaker make_;
  File file_;
};

/// All that is known of the runs, in one JSON text.
class WholeJson final : public RunObserver {
 public:
  WholeJson(const Program& program, const std::string& name)
      : make_(MakeRows(program, name)), file_(name, kWhat) {
    file_.Write(fmt::format("{{\n\"program\": {},\n\"title\": {},\n\"runs\": [",
                            Text(program.source.Name()), Text(program.title)));
  }

  void RunEnded(std::size_t /*run*/, const RunOutcome& outcome) override {
    file_.Write(std::exchange(separator_, ",\n") + RowOf(make_, outcome));
  }

  int Finish() override {
    file_.Write("\n]\n}\n");
    file_.Finish();
    return kExitSuccess;
  }

 private:
  RowMaker make_;
  OutputFile file_;
  std::string separator_ = "\n";
};

/// Throws UserError where two records' names differ.
[[noreturn]] void FailToResume(const std::string& name, const std::string& reason) {
  throw UserError("--resume: {} was not begun by this run: {}", name, reason);
}

}  // namespace

EarlierRuns ReadEarlier(const std::string& name, const Program& program, const RunPlan& plan) {
  const Form form = FormOf(name);
  if (form == Form::kJson) throw UserError("--resume {}: results go on in .csv or .jsonl", name);
  EarlierRuns earlier;
  std::error_code error;
  const auto found = std::filesystem::status(PathFromUtf8(name), error).type();
  if (found == std::filesystem::file_type::not_found) return earlier;  // there is none yet
  ResultsReader reader(name);
  const std::vector<std::string> columns = ResultColumns(program);
  if (reader.Columns().empty()) {
    std::string reason;
    const std::optional<std::string> line = ReadBytes(name, reason);
    if (!line) throw UserError("cannot read {}: {}", name, reason);
    const std::string begin = form == Form::kCsv ? CsvHeader(columns) : R"({"part": ")";
    const std::size_t common = std::min(begin.size(), line->size());
    const bool is_half_header = line->substr(0, common) == begin.substr(0, common);
    if (!is_half_header) FailToResume(name, "it does not hold results");
    return earlier;
  }
  const std::string difference = DifferenceOf(reader.Columns(), columns);
  if (!difference.empty()) FailToResume(name, difference);
  std::vector<std::string> fields;
  for (; reader.Next(fields); ++earlier.count) {
    const std::string place =
        fmt::format("record {} is of part {}", reader.Records(), Quoted(fields[0]));
    if (earlier.count == plan.Size()) FailToResume(name, place + ", and no more parts are planned");
    const std::string planned = ValidUtf8(plan.Name(earlier.count));
    if (fields[0] != planned) FailToResume(name, place + ", and would be of " + Quoted(planned));
    const auto state = StateOf(fields[1]);
    if (!state) FailToResume(name, place + " with the status " + Quoted(fields[1]));
    ++earlier.states[static_cast<std::size_t>(*state)];
  }
  earlier.end = reader.End();
  return earlier;
}

RowMaker MakeRows(const Program& program, const std::string& name) {
  switch (FormOf(name)) {
    case Form::kJson:
      return [&program](const RunOutcome& run) { return Text(RunToJson(program, run)); };
    case Form::kCsv:
      return [&program](const RunOutcome& run) { return CsvLine(ResultCells(program, run)); };
    case Form::kJsonLines: break;
  }
  return [&program, columns = ResultColumns(program)](const RunOutcome& run) {
    return JsonLine(columns, ResultCells(program, run));
  };
}

std::unique_ptr<RunObserver> MakeResults(const Program& program, const RunPlan& plan,
                                         const ResultsWords& words, const EarlierRuns& earlier) {
  const Form form = FormOf(words.name);
  if (form == Form::kJson) return std::make_unique<WholeJson>(program, words.name);
  if (!plan.IsBatch() && !words.resume) {
    return std::make_unique<Rows<OutputFile>>(program, false, words.name, kWhat);
  }
  using Mode = StreamFile::Mode;
  const Mode mode = words.resume ? Mode::kGoOn : words.overwrite ? Mode::kOverwrite : Mode::kNew;
  return std::make_unique<Rows<StreamFile>>(program, earlier.end > 0, words.name, kWhat, mode,
                                            earlier.end);
}

}  // namespace nuvhost
