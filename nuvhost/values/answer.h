// What came of a call, as JSON.
#pragma once

#include <functional>

#include "nuvhost/values/json_value.h"
#include "reference_host/services/call_context.h"

namespace nuvhost {

/// A call's status, results and all that it left in the record, as docs/exec.md tells. `to_json`
/// writes the results.
Json AnswerToCall(
    std::int32_t status, const CallContext& context, const Record& record,
    const std::function<Json(const CNuvObject&)>& to_json = [](const CNuvObject& value) {
      return ToJson(value);
    });

}  // namespace nuvhost
