#include "reference_host/nuvhost/run/run.h"

#include <algorithm>
#include <new>
#include <stdexcept>

#include "reference_host/nuvhost/console.h"
#include "reference_host/nuvhost/error.h"
#include "reference_host/nuvhost/json_value.h"
#include "reference_host/nuvhost/run/lots.h"
#include "reference_host/nuvhost/run/overlay.h"
#include "reference_host/nuvhost/run/progress.h"
#include "reference_host/nuvhost/run/report.h"
#include "reference_host/nuvhost/run/results_file.h"

namespace nuvhost {
namespace {

/// A log entry's text on one line.
std::string OnOneLine(const std::string& bytes) {
  std::string line;
  for (const char c : Utf8FromBytes(bytes)) {
    line += c == '\n' ? "\\n" : c == '\r' ? "\\r" : std::string(1, c);
  }
  return line;
}

/// All that the steps of a run drew.
Drawing DrawingOf(const RunOutcome& run) {
  Drawing drawing;
  for (const StepOutcome& step : run.steps) {
    for (const Annotation& annotation : step.record.annotations) drawing.push_back(&annotation);
  }
  return drawing;
}

/// The runs of one program, and what they show.
class ProgramRuns {
 public:
  ProgramRuns(const Program& program, const RunOptions& options, const std::optional<Image>& image)
      : program_(program),
        image_(image),
        keep_going_(options.keep_going),
        lots_(PlanLots(program, options.data)),
        table_(program) {
    if (!options.overlay.empty()) {
      overlays_ = OverlayNames(options.overlay, lots_);
    }
    CheckFiles(options);
    UseLogFile(options.log);
    if (!overlays_.empty()) {
      const OutputFile trial(overlays_[0], kPicture);  // they all go to one folder
    }
    if (!options.results.empty()) results_.emplace(options.results, program);
  }

  int Carry() {
    if (!program_.title.empty()) output_ = program_.title + "\n\n";
    for (std::size_t i = 0; i < lots_.size(); ++i) {
      lot_ = i;
      const RunOutcome run = RunLot();
      // Without its data the only run shows nothing.
      if (run.state == RunOutcome::State::kUnreadable && lots_.size() == 1) return kExitWrongCall;
      if (results_) results_->Add(run);
      Show(run);
      if (!overlays_.empty() && run.state != RunOutcome::State::kUnreadable) Draw(run);
      if (run.state == RunOutcome::State::kUnreadable) {
        exit_code_ = kExitWrongCall;
      } else if (run.state == RunOutcome::State::kFailed) {
        exit_code_ = std::max(exit_code_, kExitWanting);
      }
    }
    progress_.Clear();
    if (ShowsTable()) output_ += table_.Text();
    try {
      if (results_) results_->Finish();
    } catch (const UserError&) {
      Print(output_);
      throw;
    }
    Print(output_);
    return exit_code_;
  }

 private:
  bool ShowsTable() const { return lots_.size() > 1 && !program_.report.empty(); }

  /// What is written must not take the place of a file that is still to be read, or of another.
  void CheckFiles(const RunOptions& options) const {
    const std::string& program = program_.source.Name();
    std::vector<NamedFile> read{{"the program", program}, {"the plug-in library", options.plugin}};
    const auto add_own = [&](const char* role, const std::string& file) {
      if (!file.empty()) read.push_back({role, BesideProgram(program, file)});
    };
    add_own("the image", program_.image);
    for (const Datum& datum : program_.data) add_own("the data file", datum.file);
    for (const Lot& lot : lots_) {
      for (const auto& [datum, file] : lot.replacements) read.push_back({"the data file", file});
    }
    std::vector<NamedFile> written{{"--log", options.log}, {"--results", options.results}};
    for (const std::string& name : overlays_) written.push_back({"--overlay", name});
    CheckWritten(written, read);
  }

  RunOutcome RunLot() {
    const Lot& lot = lots_[lot_];
    ShowProgress(0);
    Mistakes mistakes;
    std::vector<CNuvObject> data;
    try {
      data = LoadData(program_, lot.replacements, mistakes);
    } catch (const std::bad_alloc&) {
      mistakes.Add(lot.file, "too much data for the memory there is");
    } catch (const std::length_error&) {
      mistakes.Add(lot.file, "more data than an array may hold");
    }
    RunOutcome run;
    if (mistakes.Empty()) {
      run = RunSteps(program_, data, keep_going_, services_,
                     [this](std::size_t step, const StepOutcome& outcome) { Tell(step, outcome); });
    } else {
      run.state = RunOutcome::State::kUnreadable;
      run.errors = mistakes.Listing();
      for (const std::string& error : run.errors) Complain(error);
    }
    run.file = ValidUtf8(lot.file);
    return run;
  }

  void Show(const RunOutcome& run) {
    if (ShowsTable()) {
      table_.Add(run);
    } else if (lots_.size() == 1) {
      output_ += RunText(program_, run);
    } else {
      output_ += (lot_ == 0 ? "" : "\n") + run.file + ": " + StateText(run.state) + '\n';
      if (!run.steps.empty()) output_ += RunText(program_, run);
    }
  }

  /// Writes the run's picture. One that cannot be written loses nothing of the other runs.
  void Draw(const RunOutcome& run) {
    const std::string& name = overlays_[lot_];
    const Overlay overlay = DrawOverlay(DrawingOf(run), image_, program_.settings.default_color);
    try {
      OutputFile file(name, kPicture);
      file.Write(overlay.svg);
      file.Finish();
    } catch (const UserError& error) {
      Complain(error.what());
      exit_code_ = kExitWrongCall;
    }
    if (overlay.left_out == 0) return;
    Complain(name + ": left out " + std::to_string(overlay.left_out) +
             (overlay.left_out == 1 ? " figure or point" : " figures or points") +
             " with numbers that are not finite or beyond 1e9");
  }

  /// What a step reported and logged, and how it failed, at once.
  void Tell(std::size_t step, const StepOutcome& outcome) {
    const std::string place = lots_[lot_].file + ": " + DescribeStep(program_, step) + ": ";
    const bool failed = outcome.state == StepOutcome::State::kFailed;
    for (const LogEntry& entry : outcome.record.log) {
      Complain(place + "log: " + OnOneLine(entry.text));
    }
    for (const ProgramEvent& event : outcome.record.events) {
      Complain(place + "event " + std::to_string(event.code) + ", value " +
               std::to_string(event.value));
    }
    for (const Message& message : outcome.record.messages) {
      const bool is_warning = message.severity == NUV_SEVERITY_WARNING;
      if (failed && !is_warning) continue;
      Complain(place + (is_warning ? "warning: " : "message: ") + Utf8FromBytes(message.source) +
               ": " + Utf8FromBytes(message.text));
    }
    if (failed) {
      for (const std::string& text : FailureTexts(outcome)) Complain(place + text);
    }
    ShowProgress(step + 1);
  }

  void Complain(const std::string& line) {
    progress_.Clear();
    nuvhost::Complain(line + '\n');
  }

  void ShowProgress(std::size_t steps) {
    const std::string of_files =
        std::to_string(lot_ + 1) + " of " + std::to_string(lots_.size()) + " files, ";
    progress_.Show((lots_.size() > 1 ? of_files : "") + std::to_string(steps) + " of " +
                   std::to_string(program_.steps.size()) + " steps");
  }

  static constexpr const char* kPicture = "the picture";

  const Program& program_;
  const std::optional<Image>& image_;
  bool keep_going_;
  std::vector<Lot> lots_;
  std::size_t lot_ = 0;
  std::optional<ResultsFile> results_;
  std::vector<std::string> overlays_;  ///< a file for each run; none unless wanted
  Services services_;
  Progress progress_;
  ReportTable table_;
  std::string output_;
  int exit_code_ = kExitSuccess;
};

}  // namespace

int RunChecked(const Program& program, const RunOptions& options,
               const std::optional<Image>& image) {
  return ProgramRuns(program, options, image).Carry();
}

int RunProgram(const Catalogue& catalogue, const RunOptions& options) {
  std::string reason;
  std::optional<SourceText> source = ReadSource(options.program, reason);
  if (!source) throw UserError("cannot read " + options.program + ": " + reason);
  Mistakes mistakes;
  const Program program = ReadProgram(catalogue, std::move(*source), mistakes);
  std::optional<Image> image;
  if (!options.overlay.empty()) image = LoadImage(program, mistakes);
  if (!mistakes.Empty()) {
    if (options.data.empty()) LoadData(program, {}, mistakes);  // what is wrong with these, too
    for (const std::string& mistake : mistakes.Listing()) {
      Complain(mistake + '\n');
    }
    return kExitWrongCall;
  }
  return RunChecked(program, options, image);
}

}  // namespace nuvhost
