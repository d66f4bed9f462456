// Sandbox: where instructions that touch the outer world may be called with any values.
#pragma once

#include "reference_host/services/call_context.h"

namespace fuzz {

/// Moves the process into an empty folder of its own, which goes with it, where there are a file
/// "a" and a folder "b"; no desktop is there. Every few hundred times it makes folder and
/// environment as they were.
void EnterSandbox();

/// Whether a call stays in the sandbox, once its values are changed so that paths lead nowhere else
/// and nothing waits long.
bool Confine(const DescriptorRecord& descriptor, nuvhost::CallContext& call);

}  // namespace fuzz
