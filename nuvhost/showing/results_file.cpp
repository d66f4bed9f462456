#include "nuvhost/showing/results_file.h"

#include "nuvhost/error.h"
#include "nuvhost/text/names.h"
#include "nuvhost/text/utf8.h"
#include "nuvhost/values/answer.h"
#include "nuvhost/values/json_value.h"
#include "nuvhost/values/value_text.h"

namespace nuvhost {
namespace {

using State = StepOutcome::State;

/// A field as RFC 4180 has it.
std::string Field(const std::string& text) {
  if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
  std::string quoted = "\"";
  for (const char c : text) quoted += c == '"' ? "\"\"" : std::string(1, c);
  return quoted + '"';
}

/// The columns that a result of a type takes, by what follows its name; none for an array.
std::vector<const char*> ColumnsOf(std::uint32_t type) {
  switch (type) {
    case NUV_PARAM_POINT: return {".x", ".y"};
    case NUV_PARAM_LINE: return {".a", ".d"};
    default: return type < NUV_PARAM_BOOLEAN_ARRAY ? std::vector{""} : std::vector<const char*>{};
  }
}

/// The fields of a value that is no array.
std::vector<std::string> FieldsOf(const CNuvObject& value) {
  switch (value.GetType()) {
    case NUV_OBJ_BOOL: return {static_cast<bool>(value) ? "true" : "false"};
    case NUV_OBJ_DOUBLE: return {NumberText(static_cast<double>(value))};
    case NUV_OBJ_STRING: return {Field(Utf8FromBytes(static_cast<const char*>(value)))};
    case NUV_OBJ_POINT: {
      const auto& point = static_cast<const CNuvPoint&>(value);
      return {NumberText(point.x), NumberText(point.y)};
    }
    case NUV_OBJ_LINE: {
      const auto& line = static_cast<const CNuvLine&>(value);
      return {NumberText(line.a), NumberText(line.d)};
    }
    default: return {};
  }
}

bool HasResults(const StepOutcome& step) {
  return step.state == State::kSucceeded || step.state == State::kDoubtful;
}

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

/// Whether a file of that name is JSON rather than CSV.
bool IsJsonName(const std::string& name) {
  if (name.ends_with(".json")) return true;
  if (name.ends_with(".csv")) return false;
  throw UserError("--results {}: the file's name must end in .csv or .json", name);
}

}  // namespace

ResultsFile::ResultsFile(const std::string& name, const Program& program)
    : program_(program), as_json_(IsJsonName(name)), file_(name, "results") {
  if (as_json_) {
    const Json title(program.title);
    const Json file(program.source.Name());
    const auto dump = [](const Json& json) {
      return json.dump(-1, ' ', false, Json::error_handler_t::replace);
    };
    file_.Write(
        fmt::format("{{\n\"program\": {},\n\"title\": {},\n\"runs\": [", dump(file), dump(title)));
  } else {
    AddHeader();
  }
}

void ResultsFile::RunEnded(std::size_t run, const RunOutcome& outcome) {
  as_json_ ? AddJson(outcome, run == 0) : AddRow(outcome);
}

void ResultsFile::AddHeader() {
  std::string row = "file,status";
  for (const Step& step : program_.steps) {
    for (const ResultRecord& result : step.instruction->descriptor->results) {
      for (const char* part : ColumnsOf(result.type)) {
        row += ',' + Field(step.name + '.' + NameFromText(result.name) + part);
      }
    }
  }
  file_.Write(row + '\n');
}

// A result that a failed step did not compute is an empty field.
void ResultsFile::AddRow(const RunOutcome& run) {
  std::string row = Field(run.file) + ',' + StateText(run.state);
  for (std::size_t i = 0; i < program_.steps.size(); ++i) {
    const TStdVector<ResultRecord>& results = program_.steps[i].instruction->descriptor->results;
    const bool has_results = i < run.steps.size() && HasResults(run.steps[i]);
    for (std::size_t j = 0; j < results.Size(); ++j) {
      std::vector<std::string> fields(ColumnsOf(results[j].type).size());
      if (has_results && !fields.empty()) fields = FieldsOf(run.steps[i].context->results[j]);
      for (const std::string& field : fields) row += ',' + field;
    }
  }
  file_.Write(row + '\n');
}

void ResultsFile::AddJson(const RunOutcome& run, bool is_first) {
  Json json{{"file", run.file}, {"status", StateText(run.state)}};
  if (!run.errors.empty()) json["errors"] = run.errors;
  json["report"] = Json::array();
  json["steps"] = Json::array();
  for (std::size_t i = 0; i < run.steps.size(); ++i) {
    json["steps"].push_back(StepToJson(program_.steps[i], run.steps[i]));
  }
  for (const ReportRow& row : program_.report) {
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
  file_.Write((is_first ? "\n" : ",\n") +
              json.dump(-1, ' ', false, Json::error_handler_t::replace));
}

int ResultsFile::Finish() {
  if (as_json_) file_.Write("\n]\n}\n");
  file_.Finish();
  return kExitSuccess;
}

}  // namespace nuvhost
