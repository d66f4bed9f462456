// The plan: the runs that a command line asks for, one for each data file.
#pragma once

#include <string>
#include <vector>

#include "nuvhost/reading/data.h"
#include "nuvhost/system/output_file.h"

namespace nuvhost {

/// One run: the name under which it is reported, and the files in place of the program's own.
struct PlannedRun {
  std::string file;
  Replacements replacements;
};

/// The runs for the words behind --data: one for each FILE, one for all NAME=FILE together, one
/// over the program's own data for no words. Throws UserError for words that do not fit the
/// program.
std::vector<PlannedRun> PlanRuns(const Program& program, const std::vector<std::string>& words);

/// Every file that the runs read.
std::vector<NamedFile> FilesRead(const Program& program, const std::vector<PlannedRun>& runs);

}  // namespace nuvhost
