#include "nuvhost/running/run_messages.h"

#include <algorithm>

#include "nuvhost/error.h"
#include "nuvhost/values/json_value.h"
#include "nuvhost/values/packed.h"

namespace nuvhost {
namespace {

/// Whether the report shows a result.
bool IsShown(const Program& program, const StepResult& result) {
  return std::ranges::find(program.report, result, &ReportRow::value) != program.report.end();
}

template <class List, class PutOne>
void PutList(Packer& packer, const List& list, PutOne put) {
  packer.Put(list.size());
  for (const auto& one : list) put(one);
}

template <class One, class TakeOne>
void TakeList(Unpacker& unpacker, std::vector<One>& list, TakeOne take) {
  for (std::size_t left = unpacker.TakeCount(); left > 0; --left) list.push_back(take());
}

void PutRecord(Packer& packer, const Record& record, bool drawings) {
  PutList(packer, record.messages, [&](const Message& message) {
    packer.Put(message.severity);
    packer.Put(message.source);
    packer.Put(message.text);
  });
  PutList(packer, record.events, [&](const ProgramEvent& event) {
    packer.Put(event.code);
    packer.Put(event.value);
  });
  PutList(packer, record.log, [&](const LogEntry& entry) {
    packer.Put(entry.level);
    packer.Put(entry.text);
  });
  PutList(packer, record.annotations, [&](const Annotation& annotation) {
    packer.Put(drawings ? Dump(ToJson(annotation)) : "");
  });
}

Record TakeRecord(Unpacker& unpacker) {
  Record record;
  TakeList(unpacker, record.messages, [&] {
    Message message{unpacker.Take<std::int32_t>(), unpacker.TakeText(), {}};
    message.text = unpacker.TakeText();
    return message;
  });
  TakeList(unpacker, record.events, [&] {
    const auto code = unpacker.Take<std::int32_t>();
    return ProgramEvent{code, unpacker.Take<std::int32_t>()};
  });
  TakeList(unpacker, record.log, [&] {
    const auto level = unpacker.Take<LEVEL>();
    return LogEntry{level, unpacker.TakeText()};
  });
  TakeList(unpacker, record.annotations, [&] {
    const std::string json = unpacker.TakeText();
    return json.empty() ? Annotation{} : AnnotationFromJson(ParseJson(json));
  });
  return record;
}

}  // namespace

std::string Telling::Word() const {
  std::string word = "short";
  if (results) word += "+results";
  if (results_of_shown) word += "+shown";
  if (drawings) word += "+drawings";
  if (drawings_of_shown) word += "+pictures";
  if (inputs) word += "+inputs";
  return word;
}

Telling Telling::Of(std::string_view word) {
  const auto has = [&](const char* part) { return word.find(part) != word.npos; };
  return {has("+results"), has("+shown"), has("+drawings"), has("+pictures"), has("+inputs")};
}

std::string Pack(const RunPlan& plan, std::size_t run, bool is_shown) {
  Packer packer;
  packer.Put(plan.Name(run));
  packer.Put(is_shown);
  PutList(packer, plan.Files(run), [&](const auto& replaced) {
    const auto& [datum, file] = replaced;
    packer.Put(datum);
    packer.Put(file.name);
    packer.Put(file.rows.has_value());
    if (!file.rows) return;
    for (const std::uint64_t part :
         {file.rows->header_end, file.rows->begin, file.rows->end, file.rows->line}) {
      packer.Put(part);
    }
    packer.Put(file.rows->separator);
  });
  return packer.Bytes();
}

Question UnpackQuestion(std::string_view bytes) {
  Unpacker unpacker(bytes);
  Question question{unpacker.TakeText()};
  question.is_shown = unpacker.Take<bool>();
  for (std::size_t count = unpacker.TakeCount(); count > 0; --count) {
    DataFile& file = question.files[unpacker.Take<std::size_t>()];
    file.name = unpacker.TakeText();
    if (!unpacker.Take<bool>()) continue;
    RowsOfPart& rows = file.rows.emplace();
    for (std::uint64_t* part : {&rows.header_end, &rows.begin, &rows.end, &rows.line}) {
      *part = unpacker.Take<std::uint64_t>();
    }
    rows.separator = unpacker.Take<char>();
  }
  return question;
}

std::string PackInputs(const StepOutcome& step) {
  Packer packer;
  PutList(packer, step.context->inputs, [&](const CNuvObject& input) { packer.Put(input); });
  return packer.Bytes();
}

std::string Pack(const Program& program, const RunOutcome& run, bool is_shown,
                 const Telling& telling, const std::vector<std::string>& inputs) {
  const bool results = telling.results || (telling.results_of_shown && is_shown);
  const bool drawings = telling.drawings || (telling.drawings_of_shown && is_shown);
  Packer packer;
  packer.Put(run.state);
  packer.Put(run.row);
  PutList(packer, run.errors, [&](const std::string& error) { packer.Put(error); });
  packer.Put(run.steps.size());
  for (std::size_t i = 0; i < run.steps.size(); ++i) {
    const StepOutcome& step = run.steps[i];
    packer.Put(step.state);
    packer.Put(step.context != nullptr);
    if (step.context == nullptr) continue;
    packer.Put(step.status);
    packer.Put(step.caution);
    packer.Put(step.circumstances);
    packer.Put(step.duration.count());
    packer.Put(step.context->results.size());
    for (std::size_t j = 0; j < step.context->results.size(); ++j) {
      const bool is_told = results || IsShown(program, {i, j});
      packer.Put(is_told ? step.context->results[j] : CNuvObject());
    }
    PutList(packer, step.context->marks, [&](const CallContext::Mark& mark) {
      packer.Put(mark.result);
      packer.Put(mark.value);
    });
    PutRecord(packer, step.record, drawings);
    packer.Put(inputs[i]);
  }
  return packer.Bytes();
}

RunOutcome UnpackOutcome(const Program& program, std::string_view bytes, Services& services) {
  Unpacker unpacker(bytes);
  RunOutcome run;
  run.state = unpacker.Take<RunOutcome::State>();
  run.row = unpacker.TakeText();
  TakeList(unpacker, run.errors, [&] { return unpacker.TakeText(); });
  run.steps.resize(unpacker.TakeCount());
  for (std::size_t i = 0; i < run.steps.size(); ++i) {
    StepOutcome& step = run.steps[i];
    step.state = unpacker.Take<StepOutcome::State>();
    if (!unpacker.Take<bool>()) continue;
    step.status = unpacker.Take<std::int32_t>();
    step.caution = unpacker.TakeText();
    step.circumstances = unpacker.TakeText();
    step.duration = std::chrono::nanoseconds(unpacker.Take<std::chrono::nanoseconds::rep>());
    step.context = std::make_unique<CallContext>(services);
    TakeList(unpacker, step.context->results, [&] { return unpacker.TakeValue(); });
    TakeList(unpacker, step.context->marks, [&] {
      const auto result = unpacker.Take<std::int32_t>();
      return CallContext::Mark{result, unpacker.Take<std::int32_t>()};
    });
    step.record = TakeRecord(unpacker);
    const std::string inputs = unpacker.TakeText();
    if (inputs.empty()) continue;
    step.context->constants = program.steps.at(i).constants;
    Unpacker packed(inputs);
    TakeList(packed, step.context->inputs, [&] { return packed.TakeValue(); });
  }
  return run;
}

}  // namespace nuvhost
