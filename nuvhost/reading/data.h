// The data of one run: read from the files that a program names, or from others in their place.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "nuvhost/reading/program.h"
#include "nuvhost/reading/source_text.h"

namespace nuvhost {

/// A file in place of a datum's own, by the datum's position.
using Replacements = std::map<std::size_t, std::string>;

/// The value of each of the program's uses of data. Mistakes leave values that are of no use.
std::vector<CNuvObject> LoadData(const Program& program, const Replacements& replacements,
                                 Mistakes& mistakes);

/// A file's name as a program written beside it means it.
std::string BesideProgram(const std::string& program, const std::string& file);

}  // namespace nuvhost
