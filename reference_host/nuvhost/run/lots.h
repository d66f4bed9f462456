// Lots: the runs that a command line asks for, one for each data file.
#pragma once

#include <string>
#include <vector>

#include "reference_host/nuvhost/run/data.h"

namespace nuvhost {

/// One run: the name under which it is reported, and the files in place of the program's own.
struct Lot {
  std::string file;
  Replacements replacements;
};

/// The runs for the words behind --data: one for each FILE, one for all NAME=FILE together, one
/// over the program's own data for no words. Throws UserError for words that do not fit the
/// program.
std::vector<Lot> PlanLots(const Program& program, const std::vector<std::string>& words);

}  // namespace nuvhost
