// ResultsFile: the results of runs as a file for other programs, CSV or JSON.
#pragma once

#include <string>

#include "nuvhost/running/run_observer.h"
#include "nuvhost/system/output_file.h"

namespace nuvhost {

/// It appears under its name once it is whole. It refers to the program.
class ResultsFile final : public RunObserver {
 public:
  /// `name` ends in .csv or .json. Throws UserError for another name, and where the file cannot
  /// be written.
  ResultsFile(const std::string& name, const Program& program);

  void RunEnded(std::size_t run, const RunOutcome& outcome) override;
  /// Throws UserError where anything of the file could not be written.
  int Finish() override;

 private:
  void AddHeader();
  void AddRow(const RunOutcome& run);
  void AddJson(const RunOutcome& run, bool is_first);

  const Program& program_;
  bool as_json_;
  OutputFile file_;
};

}  // namespace nuvhost
