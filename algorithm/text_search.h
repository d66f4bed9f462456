// TextSearch: where one text stands in another.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace formula {

/// The occurrences of `what` in `text`, both of which must outlive the search.
///
/// All calls together, each from the end of what the last one found, take time linear in the
/// lengths. Positions where the first and the last character fit are compared until the
/// comparisons have cost `budget` characters, which only texts that repeat themselves come to; the
/// rest is then searched by a method that reads every character once, and that allocates a table
/// of what.size() numbers.
class TextSearch {
 public:
  static constexpr std::size_t kNone = std::string_view::npos;

  TextSearch(std::string_view text, std::string_view what)
      : TextSearch(text, what, 4 * text.size() + 4096) {}
  TextSearch(std::string_view text, std::string_view what, std::size_t budget)
      : text_(text), what_(what), budget_(budget) {}

  /// The first occurrence at `from` or behind it. An empty text occurs everywhere up to the end.
  std::size_t Next(std::size_t from);
  /// The last occurrence.
  std::size_t Last();

 private:
  bool IsAt(std::size_t position);

  std::string_view text_;
  std::string_view what_;
  std::size_t budget_;
  std::vector<std::size_t> borders_;  // of the beginnings of `what_`, once the budget is spent
};

}  // namespace formula
