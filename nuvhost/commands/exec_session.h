// ExecSession: answers calls as JSON lines, for scripts and tests in any language.
//
// One request a line, one answer a line:
//   {"instr": NAME, "const": [..], "in": [..], "prev": [..], "count": N}
//   {"set": {"angleUnit": "radians"|"degrees", "defaultColor": 0}}
// docs/exec.md tells the whole protocol.
#pragma once

#include <string>
#include <string_view>

#include "nuvhost/library/catalogue.h"
#include "nuvhost/values/json_value.h"
#include "reference_host/services/call_context.h"
#include "reference_host/services/services.h"

namespace nuvhost {

/// One process's worth of calls: the services' state lasts from line to line.
class ExecSession {
 public:
  explicit ExecSession(const Catalogue& catalogue) : catalogue_(catalogue) {}

  /// The answer to one request, without a line end; {"error": ..} where it cannot be carried out.
  std::string Answer(std::string_view line);

 private:
  Json Respond(const Json& request);
  Json Call(const Json& request);

  const Catalogue& catalogue_;
  Services services_;
};

}  // namespace nuvhost
