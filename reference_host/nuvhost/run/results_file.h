// ResultsFile: the results of runs as a file for other programs, CSV or JSON.
#pragma once

#include <filesystem>
#include <fstream>
#include <string>

#include "reference_host/nuvhost/run/runner.h"

namespace nuvhost {

/// Written beside its place under another name and moved there once it is whole, so that the
/// file's name never stands for half of it.
class ResultsFile {
 public:
  /// `name` ends in .csv or .json. Throws UserError for another name, and where the file cannot
  /// be written.
  ResultsFile(const std::string& name, const Program& program);
  ResultsFile(const ResultsFile&) = delete;
  ResultsFile& operator=(const ResultsFile&) = delete;
  ~ResultsFile();

  void Add(const RunOutcome& run);
  /// Throws UserError where anything of the file could not be written.
  void Finish();

 private:
  void AddHeader();
  void AddRow(const RunOutcome& run);
  void AddJson(const RunOutcome& run);

  const Program& program_;
  std::string name_;
  bool as_json_;
  std::filesystem::path path_;
  std::filesystem::path part_;
  std::ofstream file_;
  bool is_first_ = true;
};

}  // namespace nuvhost
