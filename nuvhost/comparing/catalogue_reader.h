// CatalogueReader: a catalogue of instructions as `nuvhost describe --all --json` prints it.
#pragma once

#include <optional>

#include "nuvhost/reading/source_text.h"
#include "nuvhost/values/json_value.h"

namespace nuvhost {

/// The list of a catalogue's instructions, of which each has all members that hosts read, of their
/// kinds, and an identifier of its own. Members that are not known are left as they are. Nothing,
/// and mistakes at their places, where the text is anything else.
std::optional<Json> ReadCatalogue(const SourceText& source, Mistakes& mistakes);

}  // namespace nuvhost
