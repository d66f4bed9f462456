#include "plugin/call.h"

#include "host/std_str.h"

namespace formula {

Status Call::Fail(const char* source, const char* text) {
  Report(NUV_SEVERITY_ERROR, source, text);
  return Status::kFailure;
}

void Call::Warn(const char* source, const char* text) {
  Report(NUV_SEVERITY_WARNING, source, text);
}

void Call::Report(NuvSeverity severity, const char* source, const char* text) {
  auto* messages = static_cast<IXMessageService*>(context_.Service(NUV_SERVICE_MESSAGE));
  messages->Report(severity, CStdStr(source), CStdStr(text));
}

}  // namespace formula
