#include "nuvhost/showing/report.h"

#include <algorithm>

#include "nuvhost/error.h"
#include "nuvhost/system/console.h"
#include "nuvhost/text/names.h"
#include "nuvhost/text/text_table.h"
#include "nuvhost/values/value_text.h"

namespace nuvhost {
namespace {

using State = StepOutcome::State;

constexpr const char* kDoubtfulNote = "\n  * computed from the result of a failed step\n";

/// A step's result, or why there is none.
std::string ResultText(const Program& program, const StepOutcome& step, std::size_t result,
                       std::optional<int> decimals = std::nullopt) {
  const NuvAngleUnit unit = program.settings.angle_unit;
  switch (step.state) {
    case State::kNotRun: return "not run";
    case State::kFailed: return "failed";
    case State::kDoubtful: return "* " + ValueText(step.context->results[result], decimals, unit);
    case State::kSucceeded: break;
  }
  return ValueText(step.context->results[result], decimals, unit);
}

bool HasDoubtful(const RunOutcome& run) {
  return std::ranges::find(run.steps, State::kDoubtful, &StepOutcome::state) != run.steps.end();
}

/// Adds a step's results, the first beside its name.
void AddStep(TextTable& table, const Program& program, std::size_t number,
             const StepOutcome& outcome) {
  const Step& step = program.steps[number - 1];
  const DescriptorRecord& descriptor = *step.instruction->descriptor;
  std::vector<std::vector<std::string>> results;
  for (const ResultRecord& result : descriptor.results) {
    results.push_back({NameFromText(result.name), ResultText(program, outcome, results.size())});
  }
  if (const std::size_t drawn = outcome.record.annotations.size(); drawn > 0) {
    results.push_back({"", std::to_string(drawn) + (drawn == 1 ? " annotation" : " annotations")});
  }
  if (results.empty()) {
    const bool ran = outcome.state == State::kSucceeded || outcome.state == State::kDoubtful;
    results.push_back({"", ran ? "done" : ResultText(program, outcome, 0)});
  }
  std::vector<std::string> head{std::to_string(number), step.name, NameFromText(descriptor.name)};
  for (const std::vector<std::string>& result : results) {
    head.insert(head.end(), result.begin(), result.end());
    table.Add(std::move(head));
    head = {"", "", ""};
  }
}

/// The report of one run, or without one a table of its steps.
std::string RunText(const Program& program, const RunOutcome& run) {
  const bool has_report = !program.report.empty();
  TextTable table(has_report ? "lrl" : "rllll");
  if (!has_report) {
    table.SetHeader({"", "Step", "Instruction", "Result", "Value"});
    for (std::size_t i = 0; i < program.steps.size(); ++i) {
      if (!program.steps[i].generated) AddStep(table, program, i + 1, run.steps[i]);
    }
  }
  for (const ReportRow& row : program.report) {
    table.Add({row.label,
               ResultText(program, run.steps[row.value.step], row.value.result, row.decimals),
               row.unit});
  }
  return table.Text() + (HasDoubtful(run) ? kDoubtfulNote : "");
}

/// The program's title above all else.
std::string TitleText(const Program& program) {
  return program.title.empty() ? "" : program.title + "\n\n";
}

/// The report of each run, below its file's name where there are several.
class Reports final : public RunObserver {
 public:
  Reports(const Program& program, std::size_t runs)
      : program_(program), has_several_(runs > 1), text_(TitleText(program)) {}

  void RunEnded(std::size_t run, const RunOutcome& outcome) override {
    if (has_several_) {
      text_ += (run == 0 ? "" : "\n") + outcome.file + ": " + StateText(outcome.state) + '\n';
    }
    if (!outcome.steps.empty()) text_ += RunText(program_, outcome);
  }

  int Finish() override {
    Print(text_);
    return kExitSuccess;
  }

 private:
  const Program& program_;
  bool has_several_;
  std::string text_;
};

/// The reports of many runs, one row for each.
class ReportTable final : public RunObserver {
 public:
  explicit ReportTable(const Program& program)
      : program_(program), table_("l" + std::string(program.report.size(), 'r') + "l") {
    std::vector<std::string> head{"File"};
    for (const ReportRow& row : program.report) {
      head.push_back(row.unit.empty() ? row.label : row.label + " (" + row.unit + ")");
    }
    head.emplace_back("Status");
    table_.SetHeader(std::move(head));
  }

  void RunEnded(std::size_t /*run*/, const RunOutcome& outcome) override {
    has_doubtful_ = has_doubtful_ || HasDoubtful(outcome);
    std::vector<std::string> cells{outcome.file};
    for (const ReportRow& row : program_.report) {
      cells.push_back(outcome.steps.empty() ? "-"
                                            : ResultText(program_, outcome.steps[row.value.step],
                                                         row.value.result, row.decimals));
    }
    cells.emplace_back(StateText(outcome.state));
    table_.Add(std::move(cells));
  }

  int Finish() override {
    Print(TitleText(program_) + table_.Text() + (has_doubtful_ ? kDoubtfulNote : ""));
    return kExitSuccess;
  }

 private:
  const Program& program_;
  TextTable table_;
  bool has_doubtful_ = false;
};

}  // namespace

std::unique_ptr<RunObserver> MakeReport(const Program& program, std::size_t runs) {
  if (runs > 1 && !program.report.empty()) return std::make_unique<ReportTable>(program);
  return std::make_unique<Reports>(program, runs);
}

}  // namespace nuvhost
