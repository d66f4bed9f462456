// Inputs: how the parameters of an instruction's Run are read from the values of a call.
//
// Run takes one parameter for each input that its Definition declares, in their order:
//
//   bool                            a boolean
//   double                          a number
//   Truncated, HostInteger,         a number, by what it stands for
//   Color, Radians
//   std::string_view, const char*   a text; ended by a zero byte, whichever is taken
//   CNuvPoint, CNuvLine             a point, a line
//   const CNuvDoubleVector&, ...    an array
//   const CNuvObject&               a value of any type, as it is
//   Repeated<T>                     a last input that may be given any number of times
//
// A result object may be an input of the same call. So numbers, points and lines are read before
// Run begins; texts, arrays and what repeats are read in place, and changed once a result that is
// the same object is written. None is gone while an array result is filled (copied_inputs.h).
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <type_traits>

#include "host/integer.h"
#include "host/nuv_object.h"
#include "host/setting.h"
#include "plugin/definition.h"

namespace formula {

/// A number that stands for an index, a position, a count or a character: truncated toward zero.
struct Truncated {
  std::int32_t value;
  operator std::int32_t() const { return value; }
};
/// A number as the host converts it to a 32-bit integer.
struct HostInteger {
  std::int32_t value;
  operator std::int32_t() const { return value; }
};
/// A number that stands for a colour, 0x00BBGGRR.
struct Color {
  std::uint32_t value;
  operator std::uint32_t() const { return value; }
};
/// An angle in the user's preferred unit, in radians.
struct Radians {
  double value;
  operator double() const { return value; }
};

/// The input that a parameter stands for: its type, and how its value is read.
template <class T>
struct Input;

template <>
struct Input<bool> {
  static constexpr bool Accepts(NuvParamType type) { return type == NUV_PARAM_BOOLEAN; }
  static bool Read(const CNuvObject& value) { return static_cast<bool>(value); }
};

struct NumberInput {
  static constexpr bool Accepts(NuvParamType type) { return type == NUV_PARAM_NUMBER; }
};
template <>
struct Input<double> : NumberInput {
  static double Read(const CNuvObject& value) { return static_cast<double>(value); }
};
template <>
struct Input<Truncated> : NumberInput {
  static Truncated Read(const CNuvObject& value) {
    return {NuvTruncate(static_cast<double>(value))};
  }
};
template <>
struct Input<HostInteger> : NumberInput {
  static HostInteger Read(const CNuvObject& value) { return {static_cast<int>(value)}; }
};
template <>
struct Input<Color> : NumberInput {
  static Color Read(const CNuvObject& value) {
    return {NuvTruncateLow32(static_cast<double>(value))};
  }
};
template <>
struct Input<Radians> : NumberInput {
  static Radians Read(const CNuvObject& value) {
    return {CNuvAngleTr::ToRad(static_cast<double>(value))};
  }
};

template <>
struct Input<const char*> {
  static constexpr bool Accepts(NuvParamType type) { return type == NUV_PARAM_STRING; }
  static const char* Read(const CNuvObject& value) { return static_cast<const char*>(value); }
};
template <>
struct Input<std::string_view> : Input<const char*> {
  static std::string_view Read(const CNuvObject& value) { return static_cast<const char*>(value); }
};

/// What the host holds as an object of its own: a point, a line, an array.
template <class T, NuvParamType Type>
struct HeldInput {
  static constexpr bool Accepts(NuvParamType type) { return type == Type; }
  static const T& Read(const CNuvObject& value) { return static_cast<const T&>(value); }
};
template <>
struct Input<CNuvPoint> : HeldInput<CNuvPoint, NUV_PARAM_POINT> {};
template <>
struct Input<CNuvLine> : HeldInput<CNuvLine, NUV_PARAM_LINE> {};
template <>
struct Input<const CNuvBoolVector&> : HeldInput<CNuvBoolVector, NUV_PARAM_BOOLEAN_ARRAY> {};
template <>
struct Input<const CNuvDoubleVector&> : HeldInput<CNuvDoubleVector, NUV_PARAM_NUMBER_ARRAY> {};
template <>
struct Input<const CNuvStringVector&> : HeldInput<CNuvStringVector, NUV_PARAM_STRING_ARRAY> {};
template <>
struct Input<const CNuvPointVector&> : HeldInput<CNuvPointVector, NUV_PARAM_POINT_ARRAY> {};
template <>
struct Input<const CNuvLineVector&> : HeldInput<CNuvLineVector, NUV_PARAM_LINE_ARRAY> {};

template <>
struct Input<const CNuvObject&> {
  static constexpr bool Accepts(NuvParamType /*type*/) { return true; }
  static const CNuvObject& Read(const CNuvObject& value) { return value; }
};

/// The values given for an input that may be given any number of times, none included.
template <class T>
class Repeated {
 public:
  using value_type = T;

  Repeated(CNuvObject* const* values, std::int32_t size) : values_(values), size_(size) {}

  std::int32_t Size() const { return size_; }
  T operator[](std::int64_t index) const { return Input<T>::Read(*values_[index]); }

 private:
  CNuvObject* const* values_;
  std::int32_t size_;
};

/// A parameter of Run in the place of an input: whether the Definition declares it so, and its
/// value among the inputs of a call.
template <class T>
struct Place {
  static constexpr bool Fits(const Definition& definition, std::size_t index) {
    const bool repeats = definition.repeatable && index + 1 == definition.inputs.size();
    return !repeats && Input<T>::Accepts(definition.inputs.begin()[index].type);
  }
  static T Read(CNuvObject* const* inputs, std::size_t index, std::int32_t /*count*/) {
    return Input<T>::Read(*inputs[index]);
  }
};
template <class T>
struct Place<Repeated<T>> {
  static constexpr bool Fits(const Definition& definition, std::size_t index) {
    return definition.repeatable && index + 1 == definition.inputs.size() &&
           Input<T>::Accepts(definition.inputs.begin()[index].type);
  }
  static Repeated<T> Read(CNuvObject* const* inputs, std::size_t index, std::int32_t count) {
    const auto first = static_cast<std::int32_t>(index);
    return {inputs + first, std::max(count, first) - first};
  }
};

/// Whether a parameter of Run is read while Run writes results.
template <class T>
inline constexpr bool kReadInPlace =
    std::is_reference_v<T> || std::is_same_v<T, const char*> || std::is_same_v<T, std::string_view>;
template <class T>
inline constexpr bool kReadInPlace<Repeated<T>> = true;

}  // namespace formula
