#include "plugin/call.h"

#include "host/services.h"
#include "host/std_str.h"

namespace formula {

Status Call::Fail(const char* source, const char* text) {
  auto* messages = static_cast<IXMessageService*>(context_.Service(NUV_SERVICE_MESSAGE));
  messages->Report(NUV_SEVERITY_ERROR, CStdStr(source), CStdStr(text));
  return Status::kFailure;
}

}  // namespace formula
