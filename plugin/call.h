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
#include "plugin/definition.h"
#include "plugin/overlay.h"

namespace formula {

/// No text result is longer than 1 GiB.
constexpr std::size_t kLongestText = std::size_t{1} << 30;
/// Ends the instruction with a failure where a text of that length cannot be a result: to be asked
/// before the text is made.
void CheckTextLength(std::size_t length);

/// What Run works with beside its inputs. Results and constants go by their position in the
/// Definition.
///
/// Where memory runs out, the instruction fails and no result is new: each is as it was, or an
/// empty array. Neither Run nor its author has to see to that: of several results, those that are
/// one value are kept until Run has ended, and the arrays, which are filled in place, are emptied
/// where it does not end.
class Call {
 public:
  /// `has_several`: whether the instruction has several results.
  Call(IXInstrContext& context, bool has_several)
      : context_(context), results_(context.ResultValues()), has_several_(has_several) {}

  /// The values of constant parameters.
  bool ConstantBoolean(std::int32_t constant) const {
    return static_cast<bool>(*context_.ConstantValues()[constant]);
  }
  std::int32_t ConstantInteger(std::int32_t constant) const {
    return static_cast<int>(*context_.ConstantValues()[constant]);
  }

  /// Each writes a result and gives success, so that a Run may end with it. The value written is
  /// the host's own: nothing of this library stays in it.
  Status Set(std::int32_t result, bool value) {
    return has_several_ ? Keep(result, {CNuvBool::kType, value ? 1.0 : 0.0, 0.0})
                        : Assign(result, value);
  }
  Status Set(std::int32_t result, double value) {
    return has_several_ ? Keep(result, {CNuvDouble::kType, value, 0.0}) : Assign(result, value);
  }
  Status Set(std::int32_t result, std::int32_t value) {
    return Set(result, static_cast<double>(value));
  }
  // By value: it may be an element of an array that the result holds until now.
  Status Set(std::int32_t result, CNuvPoint value) {
    return has_several_ ? Keep(result, {CNuvPoint::kType, value.x, value.y}) : Write(result, value);
  }
  Status Set(std::int32_t result, CNuvLine value) {
    return has_several_ ? Keep(result, {CNuvLine::kType, value.a, value.d}) : Write(result, value);
  }
  /// A copy of any value, of an instruction's one result; so are texts.
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

  /// Writes the results that were kept, all of them or, where memory is short, none.
  void WriteKept();

 private:
  /// A result that is one value: a boolean or a number, a point's or a line's two numbers.
  struct Kept {
    NUV_OBJ_TYPE type;
    double first;
    double second;
  };

  Status Keep(std::int32_t result, const Kept& value) {
    kept_[result] = value;
    are_kept_ |= 1U << result;
    return Status::kSuccess;
  }
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
  bool has_several_;
  std::uint32_t are_kept_ = 0;  // a bit for each of them
  Kept kept_[kMostResults];     // those whose bits are set
};

/// Gives failure for the exception that is being handled. Where it is that memory ran out, the
/// array results are emptied, which may have been written in part.
Status FailAfterException(IXInstrContext& context, const Definition& definition) noexcept;

}  // namespace formula
