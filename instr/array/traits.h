// The five element types of the array instructions: what differs between them stands here, and
// what an instruction does with its array is written once for all.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "host/vectors.h"
#include "plugin/definition.h"
#include "plugin/inputs.h"

namespace formula {

/// An instruction's identifier as a template argument.
template <std::size_t kSize>
struct Identifier {
  constexpr Identifier(const char (&literal)[kSize]) { std::copy_n(literal, kSize, text); }
  char text[kSize];
};

/// The index, if an array of this size has such an element.
inline std::optional<std::size_t> IndexWithin(std::int32_t index, std::size_t size) {
  if (index < 0 || static_cast<std::size_t>(index) >= size) return std::nullopt;
  return static_cast<std::size_t>(index);
}

/// What all element types have in common, by the array and by the parameter of Run that one value
/// is. Each adds its category, the parameter of one value with its default, the parameter of an
/// array, and what "Create" says of new elements.
template <class V, class T>
struct ElementType {
  using Vector = V;
  using Element = typename V::value_type;
  using Value = T;

  /// Where a range may start in an array of this size.
  using RangeIndex = Truncated;
  static std::optional<std::size_t> RangeStart(RangeIndex index, std::size_t size) {
    return IndexWithin(index, size);
  }
};

struct BooleanElement : ElementType<CNuvBoolVector, bool> {
  static constexpr const char* kCategory = "Array: Boolean";
  static constexpr Parameter kValue = Boolean("val", false);
  static constexpr Parameter Array(const char* name) { return Booleans(name); }
  static constexpr const char* kCreateDescription =
      "Makes a new array with n elements initialized to false.";
};

struct NumberElement : ElementType<CNuvDoubleVector, double> {
  static constexpr const char* kCategory = "Array: Number";
  static constexpr Parameter kValue = Number("val", 0.0);
  static constexpr Parameter Array(const char* name) { return Numbers(name); }
  static constexpr const char* kCreateDescription =
      "Makes a new array with n elements initialized to zero.";
  /// Kept: among numbers alone, an empty range may start right behind the last element; saved
  /// programs take the rest of an array that may be used up.
  using RangeIndex = double;
  static std::optional<std::size_t> RangeStart(RangeIndex index, std::size_t size) {
    if (!(index > -1.0) || index >= static_cast<double>(size) + 1.0) return std::nullopt;
    return static_cast<std::size_t>(index);
  }
};

struct StringElement : ElementType<CNuvStringVector, const char*> {
  static constexpr const char* kCategory = "Array: String";
  static constexpr Parameter kValue = Text("val");
  static constexpr Parameter Array(const char* name) { return Texts(name); }
  static constexpr const char* kCreateDescription =
      "Makes a new array with n elements initialized to empty string.";
};

struct PointElement : ElementType<CNuvPointVector, CNuvPoint> {
  static constexpr const char* kCategory = "Array: Point";
  static constexpr Parameter kValue = Point("val", 0.0, 0.0);
  static constexpr Parameter Array(const char* name) { return Points(name); }
  static constexpr const char* kCreateDescription =
      "Makes a new array with n elements initialized to the default point(0, 0).";
};

struct LineElement : ElementType<CNuvLineVector, CNuvLine> {
  static constexpr const char* kCategory = "Array: Line";
  static constexpr Parameter kValue = Line("val", 0.0, 0.0);
  static constexpr Parameter Array(const char* name) { return Lines(name); }
  static constexpr const char* kCreateDescription =
      "Makes a new array with n elements initialized to the default line(0, 0).";
};

}  // namespace formula
