#include "nuvhost/running/step_runner.h"

#include <fmt/format.h>

#include <algorithm>

#include "nuvhost/reference/entries.h"
#include "nuvhost/running/lost_digits.h"
#include "nuvhost/text/names.h"
#include "nuvhost/text/utf8.h"
#include "nuvhost/values/value_text.h"

namespace nuvhost {
namespace {

/// The host's settings as a program wants them, and as they were at the end.
class SettingsInForce {
 public:
  explicit SettingsInForce(const Settings& settings) {
    CNuvSetting& current = CNuvSetting::Inst();
    before_ = {current.GetAngleUnit(), current.GetDefaultAnnotationColor(),
               current.GetVectorLimit()};
    Apply(settings);
  }
  SettingsInForce(const SettingsInForce&) = delete;
  SettingsInForce& operator=(const SettingsInForce&) = delete;
  ~SettingsInForce() { Apply(before_); }

 private:
  static void Apply(const Settings& settings) {
    CNuvSetting& current = CNuvSetting::Inst();
    current.SetAngleUnit(settings.angle_unit);
    current.SetDefaultAnnotationColor(settings.default_color);
    current.SetVectorLimit(settings.max_array_elements);
  }

  Settings before_;
};

using State = StepOutcome::State;

/// 'numerator 1, denominator 0', of a call's first inputs.
std::string InputsText(const DescriptorRecord& descriptor, const std::vector<CNuvObject>& inputs) {
  constexpr std::size_t kShownInputs = 8;
  std::string text;
  for (std::size_t i = 0; i < inputs.size(); ++i) {
    if (i == kShownInputs) return fmt::format("{} and {} more", text, inputs.size() - i);
    const std::size_t declared = std::min(i, descriptor.inputs.Size() - 1);
    text +=
        fmt::format("{}{} {}", i == 0 ? "" : ", ", NameFromText(descriptor.inputs[declared].name),
                    ValueText(inputs[i], std::nullopt, CNuvSetting::Inst().GetAngleUnit()));
  }
  return text;
}

/// ", as it does where the array is empty; its inputs were numbers []": what is known of a failure
/// that has no message.
std::string Circumstances(const DescriptorRecord& descriptor,
                          const std::vector<CNuvObject>& inputs) {
  std::string text;
  const Entry* const entry = FindEntry(TextOrEmpty(descriptor.identifier));
  const std::string condition = entry == nullptr ? "" : entry->SilentFailure();
  if (!condition.empty()) text += ", as it does " + condition;
  if (!inputs.empty()) text += "; its inputs were " + InputsText(descriptor, inputs);
  return text;
}

/// Runs one step, whose earlier ones' outcomes are there.
StepOutcome RunStep(const Step& step, std::vector<CNuvObject>& data,
                    const std::vector<StepOutcome>& earlier, Services& services) {
  StepOutcome outcome;
  outcome.context = std::make_unique<CallContext>(*step.instruction->descriptor, services);
  CallContext& context = *outcome.context;
  context.constants = step.constants;
  bool is_doubtful = false;
  context.inputs.resize(std::max(context.inputs.size(), step.inputs.size()));
  for (std::size_t i = 0; i < step.inputs.size(); ++i) {
    const Argument& argument = step.inputs[i];
    if (const auto* value = std::get_if<CNuvObject>(&argument)) {
      context.inputs[i] = *value;
    } else if (const auto* number = std::get_if<UseNumber>(&argument)) {
      context.inputs[i] = std::move(data[number->use]);  // each use is of one input
    } else {
      const auto& reference = std::get<StepResult>(argument);
      const StepOutcome& source = earlier[reference.step];
      context.inputs[i] = source.context->results[reference.result];
      is_doubtful = is_doubtful || source.state != State::kSucceeded;
    }
  }
  const auto begin = std::chrono::steady_clock::now();
  outcome.status = context.Execute(*step.instruction->prototype);
  outcome.duration = std::chrono::steady_clock::now() - begin;
  outcome.record = services.Take();
  if (outcome.status != 0) {
    outcome.circumstances = Circumstances(*step.instruction->descriptor, context.inputs);
  } else if (const auto caution = LostDigits(*step.instruction->descriptor, context.inputs)) {
    outcome.caution = *caution;
  }
  outcome.state = outcome.status != 0 ? State::kFailed
                  : is_doubtful       ? State::kDoubtful
                                      : State::kSucceeded;
  return outcome;
}

/// The verdict on a part all of whose steps succeeded.
RunOutcome::State Verdict(const Program& program, const RunOutcome& run) {
  const bool is_bad = std::ranges::any_of(
      program.report, [&](const ReportRow& row) { return !Judged(row, run).value_or(true); });
  return is_bad ? RunOutcome::State::kBad : RunOutcome::State::kGood;
}

}  // namespace

RunOutcome RunSteps(const Program& program, std::vector<CNuvObject> data, bool keep_going,
                    Services& services, const StepListener& listener) {
  const SettingsInForce settings(program.settings);
  services.Take();
  RunOutcome run;
  run.steps.resize(program.steps.size());
  for (const std::size_t i : RunOrder(program)) {
    run.steps[i] = RunStep(program.steps[i], data, run.steps, services);
    listener(i, run.steps[i]);
    run.steps[i].context->inputs.clear();  // nobody asks for them, and they may be large
    if (run.steps[i].state != State::kFailed) continue;
    run.state = RunOutcome::State::kFailed;
    for (const std::string& text : FailureTexts(run.steps[i])) {
      run.errors.push_back(DescribeStep(program, i) + ": " + text);
    }
    if (!keep_going) break;
  }
  if (run.state == RunOutcome::State::kSucceeded && program.Judges())
    run.state = Verdict(program, run);
  return run;
}

std::string DescribeStep(const Program& program, std::size_t step) {
  if (const auto& generated = program.steps[step].generated) return generated->origin;
  const DescriptorRecord& descriptor = *program.steps[step].instruction->descriptor;
  return fmt::format("step \"{}\" (\"{}\", number {})", program.steps[step].name,
                     NameFromText(descriptor.name), step + 1);
}

std::optional<RunOutcome::State> StateOf(std::string_view text) {
  for (std::size_t i = 0; i < RunOutcome::kStates; ++i) {
    const auto state = static_cast<RunOutcome::State>(i);
    if (StateText(state) == text) return state;
  }
  return std::nullopt;
}

bool HasResults(const StepOutcome& step) {
  return step.state == State::kSucceeded || step.state == State::kDoubtful;
}

const char* StateText(RunOutcome::State state) {
  switch (state) {
    case RunOutcome::State::kSucceeded: return "ok";
    case RunOutcome::State::kGood: return "good";
    case RunOutcome::State::kBad: return "bad";
    case RunOutcome::State::kFailed: return "failed";
    case RunOutcome::State::kUnreadable: return "unreadable";
  }
  return "";
}

std::optional<bool> Judged(const ReportRow& row, const RunOutcome& run) {
  if (!row.limits.Judge() || run.steps.empty()) return std::nullopt;
  const StepOutcome& step = run.steps[row.value.step];
  if (!HasResults(step)) return std::nullopt;
  return Hold(row.limits, step.context->results[row.value.result]);
}

std::vector<std::string> FailureTexts(const StepOutcome& outcome) {
  std::vector<std::string> texts;
  for (const Message& message : outcome.record.messages) {
    if (message.severity == NUV_SEVERITY_WARNING) continue;
    texts.push_back(Utf8FromBytes(message.source) + ": " + Utf8FromBytes(message.text));
  }
  if (texts.empty()) {
    texts.push_back("failed without a message" + outcome.circumstances);
  }
  return texts;
}

}  // namespace nuvhost
