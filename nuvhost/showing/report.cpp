#include "nuvhost/showing/report.h"

#include <algorithm>
#include <cstdlib>
#include <numeric>

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

/// A row's value in its decimals; in full where these would show a bad number as a good one.
std::string RowText(const Program& program, const ReportRow& row, const RunOutcome& run) {
  const StepOutcome& step = run.steps[row.value.step];
  std::string text = ResultText(program, step, row.value.result, row.decimals);
  if (!row.decimals || Judged(row, run).value_or(true)) return text;
  CNuvObject shown;
  shown = std::strtod(text.c_str(), nullptr);
  return Hold(row.limits, shown) ? ResultText(program, step, row.value.result) : text;
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
  TextTable table(has_report ? "lrlll" : "rllll");
  if (!has_report) {
    table.SetHeader({"", "Step", "Instruction", "Result", "Value"});
    for (std::size_t i = 0; i < program.steps.size(); ++i) {
      if (!program.steps[i].generated) AddStep(table, program, i + 1, run.steps[i]);
    }
  }
  for (const ReportRow& row : program.report) {
    const std::optional<bool> good = Judged(row, run);
    table.Add({row.label, RowText(program, row, run), row.unit, LimitsText(row.limits),
               !good   ? ""
               : *good ? "good"
                       : "bad"});
  }
  return table.Text() + (HasDoubtful(run) ? kDoubtfulNote : "");
}

/// The program's title above all else.
std::string TitleText(const Program& program) {
  return program.title.empty() ? "" : program.title + "\n\n";
}

/// What is shown of each of many parts: of up to kMostShown all, of more those that are not good,
/// up to kMostShown, so that it stays short and needs no more memory however many there are.
class ShownParts {
 public:
  /// Whether the next part is shown, as far as is known now; then Add it.
  bool Takes(RunOutcome::State state) {
    ++parts_;
    const bool is_good = state <= RunOutcome::State::kGood;
    if (!is_good) ++not_good_;
    if (parts_ == kMostShown + 1) {
      std::erase_if(shown_, [](const Shown& one) { return one.is_good; });
    }
    next_is_good_ = is_good;
    return (!is_good || parts_ <= kMostShown) && shown_.size() < kMostShown;
  }
  void Add(std::vector<std::string> cells) { shown_.push_back({next_is_good_, std::move(cells)}); }

  struct Shown {
    bool is_good;
    std::vector<std::string> cells;
  };
  const std::vector<Shown>& All() const { return shown_; }

  /// A line on those that are not shown; empty where all are.
  std::string RestText() const {
    if (parts_ == shown_.size()) return "";
    const std::size_t good = parts_ - not_good_;
    const std::size_t others = not_good_ - shown_.size();
    return fmt::format("\n  not shown: {}{}\n", good > 0 ? fmt::format("{} good parts", good) : "",
                       others > 0 ? fmt::format("{}{} others", good > 0 ? ", " : "", others) : "");
  }

 private:
  std::vector<Shown> shown_;
  std::size_t parts_ = 0;
  std::size_t not_good_ = 0;
  bool next_is_good_ = false;
};

/// The report of each run, below its file's name where there are several.
class Reports final : public RunObserver {
 public:
  Reports(const Program& program, std::size_t runs) : program_(program), has_several_(runs > 1) {}

  void RunEnded(std::size_t /*run*/, const RunOutcome& outcome) override {
    if (!shown_.Takes(outcome.state)) return;
    std::string text;
    if (has_several_) text += OnOneLine(outcome.file) + ": " + StateText(outcome.state) + '\n';
    if (!outcome.steps.empty()) text += RunText(program_, outcome);
    shown_.Add({std::move(text)});
  }

  int Finish() override {
    Print(TitleText(program_));
    const char* separator = "";
    for (const ShownParts::Shown& part : shown_.All()) {
      Print(separator + part.cells[0]);
      separator = "\n";
    }
    Print(shown_.RestText());
    return kExitSuccess;
  }

 private:
  const Program& program_;
  bool has_several_;
  ShownParts shown_;
};

/// The reports of many runs, one row for each.
class ReportTable final : public RunObserver {
 public:
  explicit ReportTable(const Program& program)
      : program_(program), table_("l" + std::string(program.report.size(), 'r') + "l") {
    std::vector<std::string> head{"Part"};
    for (const ReportRow& row : program.report) {
      head.push_back(HeadText(row.label, row.unit, row.limits));
    }
    head.emplace_back("Status");
    table_.SetHeader(std::move(head));
  }

  void RunEnded(std::size_t /*run*/, const RunOutcome& outcome) override {
    if (!shown_.Takes(outcome.state)) return;
    has_doubtful_ = has_doubtful_ || HasDoubtful(outcome);
    std::vector<std::string> cells{OnOneLine(outcome.file)};
    for (const ReportRow& row : program_.report) {
      if (outcome.steps.empty()) {
        cells.emplace_back("-");
        continue;
      }
      const bool is_bad = !Judged(row, outcome).value_or(true);
      has_bad_ = has_bad_ || is_bad;
      cells.push_back((is_bad ? "! " : "") + RowText(program_, row, outcome));
    }
    cells.emplace_back(StateText(outcome.state));
    shown_.Add(std::move(cells));
  }

  int Finish() override {
    for (const ShownParts::Shown& part : shown_.All()) table_.Add(part.cells);
    Print(TitleText(program_) + table_.Text() + shown_.RestText() +
          (has_doubtful_ ? kDoubtfulNote : "") + (has_bad_ ? kBadNote : ""));
    return kExitSuccess;
  }

 private:
  const Program& program_;
  TextTable table_;
  ShownParts shown_;
  bool has_doubtful_ = false;
  bool has_bad_ = false;
};

/// Of a program that judges nothing it is printed for several parts only.
class VerdictLine final : public RunObserver {
 public:
  VerdictLine(bool is_wanted, const EarlierRuns& earlier)
      : is_wanted_(is_wanted), counts_(earlier.states) {}

  void RunEnded(std::size_t /*run*/, const RunOutcome& outcome) override {
    ++counts_[static_cast<std::size_t>(outcome.state)];
  }

  int Finish() override {
    const std::size_t parts = std::accumulate(counts_.begin(), counts_.end(), std::size_t{0});
    if (is_wanted_ || parts > 1) Print("\n" + VerdictText(counts_));
    return kExitSuccess;
  }

 private:
  bool is_wanted_;  ///< even for one run
  RunOutcome::Counts counts_;
};

}  // namespace

std::string HeadText(const std::string& label, const std::string& unit, const Limits& limits) {
  std::string text = label;
  if (!unit.empty()) text += " (" + unit + ")";
  if (limits.Judge()) text += ", " + LimitsText(limits);
  return text;
}

std::string VerdictText(const RunOutcome::Counts& parts) {
  const std::size_t all = std::accumulate(parts.begin(), parts.end(), std::size_t{0});
  std::string line = fmt::format("{} part{}:", all, all == 1 ? "" : "s");
  const char* separator = " ";
  for (std::size_t state = 0; state < parts.size(); ++state) {
    if (parts[state] == 0) continue;
    line += fmt::format("{}{} {}", separator, parts[state],
                        StateText(static_cast<RunOutcome::State>(state)));
    separator = ", ";
  }
  return line + '\n';
}

std::unique_ptr<RunObserver> MakeReport(const Program& program, std::size_t runs) {
  if (runs > 1 && !program.report.empty()) return std::make_unique<ReportTable>(program);
  return std::make_unique<Reports>(program, runs);
}

std::unique_ptr<RunObserver> MakeVerdict(const Program& program, std::size_t runs,
                                         const EarlierRuns& earlier) {
  return std::make_unique<VerdictLine>(program.Judges() || runs > 1, earlier);
}

}  // namespace nuvhost
