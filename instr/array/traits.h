// The five element types of the array instructions: what differs between them stands here, and
// what an instruction does with its array is written once for all.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "plugin/call.h"
#include "plugin/definition.h"

namespace formula {

/// The index, if an array of this size has such an element.
inline std::optional<std::size_t> IndexWithin(std::int32_t index, std::size_t size) {
  if (index < 0 || static_cast<std::size_t>(index) >= size) return std::nullopt;
  return static_cast<std::size_t>(index);
}

/// What all element types have in common. Each adds its category, the parameter of one value with
/// its default, the parameter of an array, and how a value is read.
template <class V>
struct ElementType {
  using Vector = V;
  using Element = typename V::value_type;

  static const Vector& Input(const Call& call, std::int32_t input) {
    return call.Array<Vector>(input);
  }
  /// Where a range may start in an array of this size.
  static std::optional<std::size_t> RangeStart(double index, std::size_t size) {
    return IndexWithin(NuvTruncate(index), size);
  }
};

struct BooleanElement : ElementType<CNuvBoolVector> {
  static constexpr const char* kCategory = "Array: Boolean";
  static constexpr Parameter kValue = Boolean("val", false);
  static constexpr Parameter Array(const char* name) { return Booleans(name); }
  static bool Value(const Call& call, std::int32_t input) { return call.Boolean(input); }
};

struct NumberElement : ElementType<CNuvDoubleVector> {
  static constexpr const char* kCategory = "Array: Number";
  static constexpr Parameter kValue = Number("val", 0.0);
  static constexpr Parameter Array(const char* name) { return Numbers(name); }
  static double Value(const Call& call, std::int32_t input) { return call.Number(input); }
  /// Kept: among numbers alone, an empty range may start right behind the last element; saved
  /// programs take the rest of an array that may be used up.
  static std::optional<std::size_t> RangeStart(double index, std::size_t size) {
    if (!(index > -1.0) || index >= static_cast<double>(size) + 1.0) return std::nullopt;
    return static_cast<std::size_t>(index);
  }
};

struct StringElement : ElementType<CNuvStringVector> {
  static constexpr const char* kCategory = "Array: String";
  static constexpr Parameter kValue = Text("val");
  static constexpr Parameter Array(const char* name) { return Texts(name); }
  static const char* Value(const Call& call, std::int32_t input) { return call.CString(input); }
};

struct PointElement : ElementType<CNuvPointVector> {
  static constexpr const char* kCategory = "Array: Point";
  static constexpr Parameter kValue = Point("val", 0.0, 0.0);
  static constexpr Parameter Array(const char* name) { return Points(name); }
  static CNuvPoint Value(const Call& call, std::int32_t input) { return call.Point(input); }
};

struct LineElement : ElementType<CNuvLineVector> {
  static constexpr const char* kCategory = "Array: Line";
  static constexpr Parameter kValue = Line("val", 0.0, 0.0);
  static constexpr Parameter Array(const char* name) { return Lines(name); }
  static CNuvLine Value(const Call& call, std::int32_t input) { return call.Line(input); }
};

}  // namespace formula
