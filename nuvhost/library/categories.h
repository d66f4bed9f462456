// The categories that instructions have.
#pragma once

#include <algorithm>
#include <iterator>
#include <string_view>

namespace nuvhost {

struct Category {
  std::string_view name;
};

inline constexpr Category kCategories[] = {
    {"IO: Annotations"}, {"Array: Boolean"}, {"Array: Line"},   {"Array: Number"}, {"Array: Point"},
    {"Array: String"},   {"Boolean"},        {"Geometric"},     {"Numeric"},       {"Statistics"},
    {"String"},          {"IO: System"},     {"Trigonometric"}, {"IO: Keyboard"}};

/// The category of that name; null for any other name.
constexpr const Category* FindCategory(std::string_view name) {
  const auto* found = std::ranges::find(kCategories, name, &Category::name);
  return found == std::end(kCategories) ? nullptr : found;
}

}  // namespace nuvhost
