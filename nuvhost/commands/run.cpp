// `nuvhost run`: a program is read, its runs are planned, and observers show what comes of them.

#include "nuvhost/commands/run.h"

#include <algorithm>
#include <optional>
#include <thread>

#include "nuvhost/error.h"
#include "nuvhost/library/catalogue.h"
#include "nuvhost/reading/source_text.h"
#include "nuvhost/running/program_runs.h"
#include "nuvhost/showing/page_file.h"
#include "nuvhost/showing/picture_files.h"
#include "nuvhost/showing/report.h"
#include "nuvhost/showing/results_file.h"
#include "nuvhost/showing/run_trace.h"
#include "nuvhost/showing/step_times.h"
#include "nuvhost/showing/step_trace.h"
#include "nuvhost/system/console.h"
#include "nuvhost/system/input_file.h"
#include "nuvhost/system/interrupt.h"
#include "nuvhost/system/output_file.h"

namespace nuvhost {
namespace {

/// What is written must not take the place of a file that is still to be read, or of another.
void CheckFiles(const RunOptions& options, const RunPlan& plan) {
  WrittenFiles written;
  written.Add({"--log", options.log});
  written.Add({"--results", options.results});
  written.Add({"--report", options.report});
  for (std::size_t run = 0; !options.overlay.empty() && run < plan.Size(); ++run) {
    written.Add({"--overlay", PictureName(options.overlay, plan, run)});
  }
  plan.VisitRead([&](const NamedFile& read) { written.CheckRead(read); });
  written.CheckRead({"the plug-in library", options.plugin});
}

/// Whether the program's own data are all that a run would read.
bool HasOwnDataAlone(const Program& program, const RunOptions& options) {
  return options.data.empty() && options.parts.empty() && options.part_column.empty() &&
         std::ranges::none_of(program.data, HoldsPart, &Datum::file);
}

/// How this program starts itself to carry out so many runs.
WorkerWords WorkersFor(const Program& program, const RunOptions& options, std::size_t runs) {
  const std::size_t jobs =
      options.jobs > 0 ? options.jobs : std::max(1u, std::thread::hardware_concurrency());
  const Telling telling{.results = options.trace,
                        .results_of_shown = program.report.empty(),
                        .drawings = !options.overlay.empty(),
                        .drawings_of_shown = !options.report.empty(),
                        .inputs = options.trace};
  const auto is_standard_input = [](const std::string& word) {
    return word == kStandardInput || word.ends_with(std::string("=") + kStandardInput);
  };
  if (std::min(jobs, runs) > 1 &&
      (std::ranges::any_of(options.data, is_standard_input) ||
       std::ranges::any_of(program.data, is_standard_input, &Datum::file))) {
    throw UserError("--jobs {}: data from standard input can be read by one process alone", jobs);
  }
  WorkerWords words{std::min(jobs, runs),
                    {"--plugin", options.plugin, "run", "--serve", telling.Word()}};
  if (options.keep_going) words.words.emplace_back("--keep-going");
  if (!options.until.empty()) words.words.push_back("--until=" + options.until);
  if (!options.results.empty()) words.words.push_back("--results=" + options.results);
  words.words.insert(words.words.end(), {"--", options.program});
  return words;
}

}  // namespace

int RunChecked(const Catalogue& catalogue, const Program& program, const RunOptions& options,
               const std::optional<Image>& image) {
  const RunPlan plan(program, {options.data, options.parts, options.part_column});
  if (!options.overlay.empty()) CheckPictureNames(options.overlay, plan);
  CheckFiles(options, plan);
  EarlierRuns earlier;
  if (options.resume) earlier = ReadEarlier(options.results, program, plan);
  UseLogFile(options.log);

  std::optional<InterruptWatch> watch;  // before a file is begun, so that none is left behind
  if (plan.Size() > 1) watch.emplace();
  Progress progress;
  RunObservers observers;
  if (options.trace) observers.push_back(std::make_unique<StepTrace>(program, plan, progress));
  observers.push_back(std::make_unique<RunTrace>(program, plan, progress));
  if (!options.overlay.empty()) {
    observers.push_back(
        std::make_unique<PictureFiles>(program, plan, image, options.overlay, progress));
  }
  if (!options.results.empty()) {
    observers.push_back(
        MakeResults(program, plan, {options.results, options.resume, options.overwrite}, earlier));
  }
  if (!options.report.empty()) {
    observers.push_back(std::make_unique<PageFile>(options.report, program, catalogue, image));
  }
  observers.push_back(MakeReport(program, plan.Size()));
  observers.push_back(MakeVerdict(program, plan.Size(), earlier));
  if (options.time) observers.push_back(std::make_unique<StepTimes>(program, progress));
  return RunAll(program, plan, options.keep_going, observers, earlier,
                WorkersFor(program, options, plan.Size() - earlier.count),
                watch ? &*watch : nullptr);
}

int RunProgram(const Catalogue& catalogue, const RunOptions& options) {
  std::string reason;
  std::optional<SourceText> source = ReadSource(options.program, reason);
  if (!source) throw UserError("cannot read {}: {}", options.program, reason);
  Mistakes mistakes;
  Program program = ReadProgram(catalogue, std::move(*source), mistakes);
  std::optional<Image> image;
  if (!options.overlay.empty() || !options.report.empty()) image = LoadImage(program, mistakes);
  if (!mistakes.Empty()) {
    if (HasOwnDataAlone(program, options))
      LoadData(program, {}, mistakes);  // what is wrong with these, too
    for (const std::string& mistake : mistakes.Listing()) {
      Complain(mistake + '\n');
    }
    return kExitWrongCall;
  }
  if (!options.until.empty()) EndWith(program, options.until);
  if (!options.serve.empty()) {
    ServeRuns(program, options.keep_going, Telling::Of(options.serve),
              options.results.empty() ? nullptr : MakeRows(program, options.results));
    return kExitSuccess;
  }
  return RunChecked(catalogue, program, options, image);
}

}  // namespace nuvhost
