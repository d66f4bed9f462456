#include "plugin/call.h"

#include <utility>

#include "host/std_str.h"

namespace formula {

Status Call::Set(std::int32_t result, std::string_view text) {
  CNuvObject& object = *results_[result];
  if (object.GetType() != NUV_OBJ_STRING) return Set(result, CStdStr(text));
  static_cast<CNuvString&>(object).Str() = text;
  return Status::kSuccess;
}

Status Call::Set(std::int32_t result, CStdStr&& text) {
  static_cast<CNuvString&>(*results_[result]).Str() = std::move(text);
  return Status::kSuccess;
}

Status Call::Fail(const char* source, const char* text) {
  Report(NUV_SEVERITY_ERROR, source, text);
  return Status::kFailure;
}

void Call::Warn(const char* source, const char* text) {
  Report(NUV_SEVERITY_WARNING, source, text);
}

void Call::Report(NuvSeverity severity, const char* source, const char* text) {
  Messages().Report(severity, CStdStr(source), CStdStr(text));
}

}  // namespace formula
