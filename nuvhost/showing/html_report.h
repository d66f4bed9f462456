// The report page: what came of many parts, for the people who look at it.
#pragma once

#include <string>

#include "nuvhost/showing/page_data.h"

namespace nuvhost {

/// How many parts that are not good the page shows with their pictures; the others stand in its
/// table alone.
inline constexpr std::size_t kMostPictures = 50;

/// One HTML page that needs nothing else and fetches nothing: the verdict, the parts that are not
/// good, a chart and the statistics of each characteristic, all parts, the program's graph. Equal
/// data give equal bytes. Without a script only the table of all parts is missing.
std::string ReportPage(const PageData& page);

}  // namespace nuvhost
