// `nuvhost report`: results files are joined, and shown as if one run had written them.

#include "nuvhost/showing/report.h"

#include "nuvhost/commands/commands.h"
#include "nuvhost/running/program_runs.h"
#include "nuvhost/showing/html_report.h"
#include "nuvhost/showing/joined_results.h"
#include "nuvhost/showing/page_file.h"
#include "nuvhost/showing/page_statistics.h"
#include "nuvhost/system/console.h"
#include "nuvhost/system/output_file.h"

namespace nuvhost {

int Report(const Catalogue& catalogue, const ReportOptions& options) {
  WrittenFiles written;
  written.Add({"--log", options.log});
  written.Add({"--report", options.report});
  for (const std::string& name : options.results) written.CheckRead({"the results", name});
  written.CheckRead({"the plug-in library", options.plugin});
  UseLogFile(options.log);
  const auto file = options.report.empty() ? nullptr : OpenPage(options.report);

  PageData page = JoinResults(options.results);
  Summarise(page, catalogue);
  RunOutcome::Counts counts{};
  for (const PartResult& part : page.parts) ++counts[static_cast<std::size_t>(part.state)];
  const std::string text = JoinedText(page);
  Print(text + (text.empty() ? "" : "\n") + VerdictText(counts));
  if (file) {
    file->Write(ReportPage(page));
    file->Finish();
  }
  return ExitCode(counts);
}

}  // namespace nuvhost
