// What a run's standard output shows: the program's report, or what every step gave.
#pragma once

#include <string>

#include "reference_host/nuvhost/run/runner.h"
#include "reference_host/nuvhost/run/text_table.h"

namespace nuvhost {

/// The report of one run, or without one a table of its steps.
std::string RunText(const Program& program, const RunOutcome& run);

/// The reports of many runs, one row for each.
class ReportTable {
 public:
  explicit ReportTable(const Program& program);
  void Add(const RunOutcome& run);
  std::string Text() const;

 private:
  const Program& program_;
  TextTable table_;
  bool has_doubtful_ = false;
};

/// "ok", "failed" or "unreadable".
const char* StateText(RunOutcome::State state);

}  // namespace nuvhost
