#include "plugin/call.h"

#include <new>
#include <optional>
#include <stdexcept>
#include <utility>

#include "host/std_str.h"

namespace formula {
namespace {

template <class Vector>
void Empty(CNuvObject& result) {
  if (result.GetType() == Vector::kType) static_cast<Vector&>(result).Resize(0);
}

void EmptyArrays(IXInstrContext& context, const Definition& definition) {
  CNuvObject** result = context.ResultValues();
  for (const Parameter& declared : definition.results) {
    switch (declared.type) {
      case NUV_PARAM_BOOLEAN_ARRAY: Empty<CNuvBoolVector>(**result); break;
      case NUV_PARAM_NUMBER_ARRAY: Empty<CNuvDoubleVector>(**result); break;
      case NUV_PARAM_STRING_ARRAY: Empty<CNuvStringVector>(**result); break;
      case NUV_PARAM_POINT_ARRAY: Empty<CNuvPointVector>(**result); break;
      case NUV_PARAM_LINE_ARRAY: Empty<CNuvLineVector>(**result); break;
      default: break;
    }
    ++result;
  }
}

}  // namespace

void CheckTextLength(std::size_t length) {
  if (length > kLongestText) throw std::length_error("text too long");
}

Status Call::Set(std::int32_t result, const std::string& text) {
  CheckTextLength(text.size());
  return Set(result, text.c_str());
}

void Call::WriteKept() {
  // A result that holds another type needs memory, so these are made before any is written.
  std::optional<CNuvObject> made[kMostResults];
  for (std::size_t i = 0; i < kMostResults; ++i) {
    const bool is_kept = (are_kept_ >> i & 1U) != 0;
    if (is_kept && results_[i]->GetType() != kept_[i].type) made[i].emplace(kept_[i].type);
  }
  for (std::size_t i = 0; i < kMostResults; ++i) {
    if ((are_kept_ >> i & 1U) == 0) continue;
    if (made[i]) *results_[i] = std::move(*made[i]);
    const auto [type, first, second] = kept_[i];
    const auto result = static_cast<std::int32_t>(i);
    switch (type) {
      case CNuvBool::kType: Assign(result, first != 0.0); break;
      case CNuvPoint::kType: Write(result, CNuvPoint(first, second)); break;
      case CNuvLine::kType: Write(result, CNuvLine(first, second)); break;
      default: Assign(result, first); break;
    }
  }
}

Status FailAfterException(IXInstrContext& context, const Definition& definition) noexcept {
  try {
    throw;
  } catch (const std::bad_alloc&) {
    EmptyArrays(context, definition);
  } catch (...) {
    // Nothing was written: what an array can refuse is asked of it first.
  }
  return Status::kFailure;
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
