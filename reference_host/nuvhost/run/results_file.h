// ResultsFile: the results of runs as a file for other programs, CSV or JSON.
#pragma once

#include <string>

#include "reference_host/nuvhost/run/output_file.h"
#include "reference_host/nuvhost/run/runner.h"

namespace nuvhost {

/// It appears under its name once it is whole.
class ResultsFile {
 public:
  /// `name` ends in .csv or .json. Throws UserError for another name, and where the file cannot
  /// be written.
  ResultsFile(const std::string& name, const Program& program);

  void Add(const RunOutcome& run);
  /// Throws UserError where anything of the file could not be written.
  void Finish();

 private:
  void AddHeader();
  void AddRow(const RunOutcome& run);
  void AddJson(const RunOutcome& run);

  const Program& program_;
  bool as_json_;
  OutputFile file_;
  bool is_first_ = true;
};

}  // namespace nuvhost
