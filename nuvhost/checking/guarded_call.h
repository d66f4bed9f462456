// GuardedCall: one call whose every array ends where access ends, for the time of the call alone.
#pragma once

#include <string>

#include "nuvhost/system/guarded_memory.h"
#include "reference_host/services/call_context.h"

namespace nuvhost::check {

/// What a call did with what it was handed.
struct GuardedEnd {
  std::int32_t status = 0;
  std::string complaint;  ///< "" for nothing
};

/// Executes with a context whose pointer arrays, values, and the elements and texts of inputs and
/// constants each end just before memory without access. The context and all of these are gone
/// after the call. What lies before them is `fill`. What Execute throws passes through.
GuardedEnd ExecuteGuarded(CallContext& values, IXInstrPlugin& object, GuardedMemory& memory,
                          unsigned char fill);

}  // namespace nuvhost::check
