// Descriptors from definitions: the one place that knows how the host's records are filled.
#pragma once

#include "host/records.h"
#include "plugin/definition.h"

namespace formula {

/// Fills the record from scratch, whatever it held. Throws std::bad_alloc and then leaves the
/// record as it was.
void BuildDescriptor(DescriptorRecord& record, const Definition& definition);

/// Empties the record: destroys its parameters, constants and results and frees their storage;
/// texts and numbers stay.
void ClearDescriptor(DescriptorRecord& record) noexcept;

}  // namespace formula
