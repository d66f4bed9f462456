// Carrying out a checked program: what `nuvhost run` does once a program has no mistakes.
#pragma once

#include "nuvhost/commands/commands.h"
#include "nuvhost/drawing/image.h"
#include "nuvhost/reading/program.h"

namespace nuvhost {

/// Runs a program without mistakes over its data, shows what came of it and writes the results and
/// what was drawn, over the image, and the report page, whose statistics the catalogue's
/// instructions compute; the exit code. Throws UserError for options that do not fit the
/// program.
int RunChecked(const Catalogue& catalogue, const Program& program, const RunOptions& options,
               const std::optional<Image>& image = std::nullopt);

}  // namespace nuvhost
