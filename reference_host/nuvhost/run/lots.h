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

/// Where each run's picture goes: for one run to the name itself, for several to OUT-DATAFILE.svg
/// for OUT.svg. Throws UserError for a name that does not end in .svg, and where two runs would
/// write one file.
std::vector<std::string> OverlayNames(const std::string& name, const std::vector<Lot>& lots);

}  // namespace nuvhost
