// Inputs that an array result would end: a result may be the same object as an input, and what it
// holds is gone once it becomes an array.
#pragma once

#include "host/context.h"
#include "host/instr_plugin.h"
#include "plugin/definition.h"

namespace formula {

/// Whether a result that holds something else than it is declared to is one of the inputs.
bool EndsAnInput(IXInstrContext& context, const Definition& definition);

/// Executes an instruction with copies in the places of all inputs that are results.
Status ExecuteOnCopies(IXInstrPlugin& instruction, IXInstrContext& context,
                       const Definition& definition);

}  // namespace formula
