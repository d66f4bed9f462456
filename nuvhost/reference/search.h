// Search: the instructions in whose descriptors and entries words occur.
#pragma once

#include <string>
#include <vector>

#include "nuvhost/library/catalogue.h"

namespace nuvhost {

/// The instructions with all words, in whatever case, best first: a word counts most as the name,
/// then within the name, the identifier, a parameter's name, the description and the summary, the
/// entry. Without words, all in their order.
std::vector<const CatalogueEntry*> Search(const Catalogue& catalogue,
                                          const std::vector<std::string>& words);

}  // namespace nuvhost
