// Results files of several runs of a program, joined as if one run had written them.
#pragma once

#include <string>
#include <vector>

#include "nuvhost/showing/page_data.h"

namespace nuvhost {

/// The parts of all files, in this order, with their numbers for the characteristics; a file is
/// read record by record. Throws UserError for a file that cannot be read or holds no results, for
/// one of other columns than the first, and for a part that stands in two files.
PageData JoinResults(const std::vector<std::string>& files);

/// Tables of the characteristics, whose statistics are there, and of the parts that are not good,
/// at most kMostShown.
std::string JoinedText(const PageData& page);

}  // namespace nuvhost
