// `nuvhost run`: a program is read, its runs are planned, and observers show what comes of them.

#include "nuvhost/commands/run.h"

#include "nuvhost/error.h"
#include "nuvhost/library/catalogue.h"
#include "nuvhost/reading/source_text.h"
#include "nuvhost/running/program_runs.h"
#include "nuvhost/showing/page_file.h"
#include "nuvhost/showing/picture_files.h"
#include "nuvhost/showing/report.h"
#include "nuvhost/showing/results_file.h"
#include "nuvhost/showing/run_trace.h"
#include "nuvhost/system/console.h"
#include "nuvhost/system/output_file.h"

namespace nuvhost {
namespace {

/// What is written must not take the place of a file that is still to be read, or of another.
void CheckFiles(const Program& program, const RunOptions& options,
                const std::vector<PlannedRun>& runs, const std::vector<std::string>& pictures) {
  std::vector<NamedFile> read = FilesRead(program, runs);
  read.push_back({"the plug-in library", options.plugin});
  std::vector<NamedFile> written{
      {"--log", options.log}, {"--results", options.results}, {"--report", options.report}};
  for (const std::string& name : pictures) written.push_back({"--overlay", name});
  CheckWritten(written, read);
}

}  // namespace

int RunChecked(const Catalogue& catalogue, const Program& program, const RunOptions& options,
               const std::optional<Image>& image) {
  const std::vector<PlannedRun> runs = PlanRuns(program, options.data);
  std::vector<std::string> pictures;
  if (!options.overlay.empty()) pictures = PictureNames(options.overlay, runs);
  CheckFiles(program, options, runs, pictures);
  UseLogFile(options.log);

  Progress progress;
  RunObservers observers;
  observers.push_back(std::make_unique<RunTrace>(program, runs, progress));
  if (!pictures.empty()) {
    observers.push_back(std::make_unique<PictureFiles>(program, image, pictures, progress));
  }
  if (!options.results.empty()) {
    observers.push_back(std::make_unique<ResultsFile>(options.results, program));
  }
  if (!options.report.empty()) {
    observers.push_back(std::make_unique<PageFile>(options.report, program, catalogue, image));
  }
  observers.push_back(MakeReport(program, runs.size()));
  observers.push_back(MakeVerdict(program));
  return RunAll(program, runs, options.keep_going, observers);
}

int RunProgram(const Catalogue& catalogue, const RunOptions& options) {
  std::string reason;
  std::optional<SourceText> source = ReadSource(options.program, reason);
  if (!source) throw UserError("cannot read {}: {}", options.program, reason);
  Mistakes mistakes;
  const Program program = ReadProgram(catalogue, std::move(*source), mistakes);
  std::optional<Image> image;
  if (!options.overlay.empty() || !options.report.empty()) image = LoadImage(program, mistakes);
  if (!mistakes.Empty()) {
    if (options.data.empty()) LoadData(program, {}, mistakes);  // what is wrong with these, too
    for (const std::string& mistake : mistakes.Listing()) {
      Complain(mistake + '\n');
    }
    return kExitWrongCall;
  }
  return RunChecked(catalogue, program, options, image);
}

}  // namespace nuvhost
