// Call: one execution of an instruction, with its values and the host's services.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "host/context.h"
#include "host/instr_plugin.h"
#include "host/services.h"
#include "host/setting.h"
#include "host/std_str.h"
#include "plugin/overlay.h"

namespace formula {

/// No text result is longer than 1 GiB.
constexpr std::size_t kLongestText = std::size_t{1} << 30;
/// Ends the instruction with a failure where a text of that length cannot be a result: to be asked
/// before the text is made.
void CheckTextLength(std::size_t length);

/// What Run works with beside its inputs. Results and constants go by their position in the
/// Definition.
class Call {
 public:
  explicit Call(IXInstrContext& context) : context_(context), results_(context.ResultValues()) {}

  /// The values of constant parameters.
  bool ConstantBoolean(std::int32_t constant) const {
    return static_cast<bool>(*context_.ConstantValues()[constant]);
  }
  std::int32_t ConstantInteger(std::int32_t constant) const {
    return static_cast<int>(*context_.ConstantValues()[constant]);
  }

  /// Each writes a result and gives success, so that a Run may end with it. The value written is
  /// the host's own: nothing of this library stays in it.
  Status Set(std::int32_t result, bool value) { return Assign(result, value); }
  Status Set(std::int32_t result, double value) { return Assign(result, value); }
  Status Set(std::int32_t result, std::int32_t value) { return Assign(result, int{value}); }
  // By value: it may be an element of an array that the result holds until now.
  Status Set(std::int32_t result, CNuvPoint value) { return Write(result, value); }
  Status Set(std::int32_t result, CNuvLine value) { return Write(result, value); }
  /// A copy of any value.
  Status Set(std::int32_t result, const CNuvObject& value) { return Assign(result, value); }
  /// A text ends at its first zero byte, and fails beyond 1 GiB. It may be a part of an input or
  /// of the result.
  Status Set(std::int32_t result, const char* text) { return Assign(result, text); }
  Status Set(std::int32_t result, const std::string& text);
  Status Set(std::int32_t result, std::string_view text) { return Set(result, std::string(text)); }

  /// Writes an angle in radians in the user's preferred unit.
  Status SetAngle(std::int32_t result, double radians) {
    return Set(result, CNuvAngleTr::ToPrefs(radians, true));
  }
  /// An array result, to be filled in place.
  CNuvDoubleVector& NumbersResult(std::int32_t result) {
    return ArrayResult<CNuvDoubleVector>(result);
  }
  template <class Vector>
  Vector& ArrayResult(std::int32_t result) {
    return static_cast<Vector&>(*results_[result]);
  }

  /// Reports an error to the user and gives failure.
  Status Fail(const char* source, const char* text);
  /// Reports a warning to the user; the instruction goes on.
  void Warn(const char* source, const char* text);

  /// Sets a display attribute of a result.
  void Mark(std::int32_t result, std::int32_t value) { context_.MarkResult(result, value); }
  // A host may lack a service: then what is reported, raised or drawn is dropped.

  /// The overlay of the current image.
  Overlay Annotations() {
    return Overlay(static_cast<IXAnnotationService*>(context_.Service(NUV_SERVICE_ANNOTATION)));
  }
  /// What is kept under names for the life of the host's program run; null where the host keeps
  /// nothing.
  IXNamedDataStore* NamedData() {
    return static_cast<IXNamedDataStore*>(context_.Service(NUV_SERVICE_NAMED_DATA));
  }
  /// Calls the event handler of the controlling application.
  void RaiseEvent(std::int32_t code, std::int32_t value) {
    if (auto* messages = Messages()) messages->RaiseProgramEvent(code, value);
  }

 private:
  template <class Value>
  Status Assign(std::int32_t result, const Value& value) {
    *results_[result] = value;
    return Status::kSuccess;
  }
  template <class Value>
  Status Write(std::int32_t result, const Value& value) {
    static_cast<Value&>(*results_[result]) = value;
    return Status::kSuccess;
  }
  IXMessageService* Messages() {
    return static_cast<IXMessageService*>(context_.Service(NUV_SERVICE_MESSAGE));
  }
  void Report(NuvSeverity severity, const char* source, const char* text);

  IXInstrContext& context_;
  CNuvObject** results_;
};

}  // namespace formula
