#include "plugin/call.h"

#include <stdexcept>

#include "host/std_str.h"

namespace formula {

void CheckTextLength(std::size_t length) {
  if (length > kLongestText) throw std::length_error("text too long");
}

Status Call::Set(std::int32_t result, const std::string& text) {
  CheckTextLength(text.size());
  return Set(result, text.c_str());
}

Status Call::Fail(const char* source, const char* text) {
  Report(NUV_SEVERITY_ERROR, source, text);
  return Status::kFailure;
}

void Call::Warn(const char* source, const char* text) {
  Report(NUV_SEVERITY_WARNING, source, text);
}

void Call::Report(NuvSeverity severity, const char* source, const char* text) {
  if (auto* messages = Messages()) messages->Report(severity, CStdStr(source), CStdStr(text));
}

}  // namespace formula
