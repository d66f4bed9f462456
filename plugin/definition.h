// Definition: what an instruction shows in the host's catalogue, as constant data.
//
// An instruction states its Definition once, with the functions below for its parameters; the
// builder (descriptor_builder.h) turns it into the host's records.
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>

#include "host/records.h"

namespace formula {

/// A short constant list; one element too many does not compile.
template <class T, std::size_t Capacity>
class ConstantList {
 public:
  constexpr ConstantList() = default;
  constexpr ConstantList(std::initializer_list<T> items) {
    for (const T& item : items) items_[size_++] = item;
  }
  constexpr std::size_t size() const { return size_; }
  constexpr const T* begin() const { return items_; }
  constexpr const T* end() const { return items_ + size_; }

 private:
  T items_[Capacity] = {};
  std::size_t size_ = 0;
};

/// An input or a result. An input's default: for a number `first`, for a boolean whether that is
/// not zero, for a point or a line the pair, for a text `text`; an array's is always empty.
struct Parameter {
  NuvParamType type = NUV_PARAM_NUMBER;
  const char* name = nullptr;
  const char* description = nullptr;
  double first = 0.0;
  double second = 0.0;
  const char* text = "";
};

/// A choice of a constant parameter: the key that the instruction receives, and its label.
struct Choice {
  std::int32_t key = 0;
  const char* label = nullptr;
};

/// A constant parameter. The range belongs to an integer, the choices to a choice.
struct Constant {
  NuvParamType type = NUV_PARAM_INTEGER;
  const char* group = nullptr;
  const char* name = nullptr;
  const char* description = nullptr;
  std::int32_t default_value = 0;
  bool has_range = false;
  std::int32_t minimum = 0;
  std::int32_t maximum = 0;
  ConstantList<Choice, 6> choices = {};
};

/// No instruction has more results.
inline constexpr std::size_t kMostResults = 16;

/// An instruction for the catalogue. `repeatable`: the last input may be given any number of
/// times.
struct Definition {
  const char* category = nullptr;
  const char* name = nullptr;
  const char* identifier = nullptr;
  std::uint32_t help = 0;
  const char* description = nullptr;
  bool repeatable = false;
  ConstantList<Constant, 4> constants = {};
  ConstantList<Parameter, 8> inputs = {};
  ConstantList<Parameter, kMostResults> results = {};
};

// Parameters by type. Inputs state their default; results, and arrays, have none.
constexpr Parameter Number(const char* name, const char* description = nullptr) {
  return {.type = NUV_PARAM_NUMBER, .name = name, .description = description};
}
constexpr Parameter Number(const char* name, double value, const char* description = nullptr) {
  return {.type = NUV_PARAM_NUMBER, .name = name, .description = description, .first = value};
}
constexpr Parameter Boolean(const char* name, const char* description = nullptr) {
  return {.type = NUV_PARAM_BOOLEAN, .name = name, .description = description};
}
constexpr Parameter Boolean(const char* name, bool value, const char* description = nullptr) {
  return {.type = NUV_PARAM_BOOLEAN,
          .name = name,
          .description = description,
          .first = value ? 1.0 : 0.0};
}
/// The default of a text input that states no other: the host's mark for a text never set.
inline constexpr const char* kUnsetText = "***Empty***";

constexpr Parameter Text(const char* name, const char* description = nullptr,
                         const char* value = kUnsetText) {
  return {.type = NUV_PARAM_STRING, .name = name, .description = description, .text = value};
}
constexpr Parameter Point(const char* name, const char* description = nullptr) {
  return {.type = NUV_PARAM_POINT, .name = name, .description = description};
}
constexpr Parameter Point(const char* name, double x, double y, const char* description = nullptr) {
  return {
      .type = NUV_PARAM_POINT, .name = name, .description = description, .first = x, .second = y};
}
constexpr Parameter Line(const char* name, const char* description = nullptr) {
  return {.type = NUV_PARAM_LINE, .name = name, .description = description};
}
constexpr Parameter Line(const char* name, double angle, double distance,
                         const char* description = nullptr) {
  return {.type = NUV_PARAM_LINE,
          .name = name,
          .description = description,
          .first = angle,
          .second = distance};
}
constexpr Parameter Booleans(const char* name, const char* description = nullptr) {
  return {.type = NUV_PARAM_BOOLEAN_ARRAY, .name = name, .description = description};
}
constexpr Parameter Numbers(const char* name, const char* description = nullptr) {
  return {.type = NUV_PARAM_NUMBER_ARRAY, .name = name, .description = description};
}
constexpr Parameter Texts(const char* name, const char* description = nullptr) {
  return {.type = NUV_PARAM_STRING_ARRAY, .name = name, .description = description};
}
constexpr Parameter Points(const char* name, const char* description = nullptr) {
  return {.type = NUV_PARAM_POINT_ARRAY, .name = name, .description = description};
}
constexpr Parameter Lines(const char* name, const char* description = nullptr) {
  return {.type = NUV_PARAM_LINE_ARRAY, .name = name, .description = description};
}

}  // namespace formula
