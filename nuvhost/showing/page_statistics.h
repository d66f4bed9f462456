// The statistics of the report page, computed by the library's own instructions.
#pragma once

#include "nuvhost/library/catalogue.h"
#include "nuvhost/showing/page_data.h"

namespace nuvhost {

/// Fills in the statistics of every characteristic. "MeanArr", "VarianceArr", "CpArr" and "CpkArr"
/// are given the values less the first and scaled by a power of two: so no digits are lost, and no
/// spread is taken for none, whatever the unit. What a library lacks is left out.
void Summarise(PageData& page, const Catalogue& catalogue);

}  // namespace nuvhost
