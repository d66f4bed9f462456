// The categories that instructions have, and which of them touch the outer world.
#pragma once

#include <algorithm>
#include <iterator>
#include <string_view>

namespace nuvhost {

struct Category {
  std::string_view name;
  /// Its instructions act on files, dialogs, keys or time, which arbitrary values must not reach.
  bool touches_outer_world = false;
};

inline constexpr Category kCategories[] = {
    {"IO: Annotations"}, {"Array: Boolean"},    {"Array: Line"}, {"Array: Number"},
    {"Array: Point"},    {"Array: String"},     {"Boolean"},     {"Geometric"},
    {"Numeric"},         {"Statistics"},        {"String"},      {"IO: System", true},
    {"Trigonometric"},   {"IO: Keyboard", true}};

/// The category of that name; null for any other name.
constexpr const Category* FindCategory(std::string_view name) {
  const auto* found = std::ranges::find(kCategories, name, &Category::name);
  return found == std::end(kCategories) ? nullptr : found;
}

constexpr bool TouchesOuterWorld(std::string_view category) {
  const Category* found = FindCategory(category);
  return found != nullptr && found->touches_outer_world;
}

}  // namespace nuvhost
