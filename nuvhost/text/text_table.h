// TextTable: rows of texts with aligned columns.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace nuvhost {

/// A text and blanks behind it, up to a width.
std::string Padded(std::string text, std::size_t width);

class TextTable {
 public:
  /// One letter for each column: 'l' for left, 'r' for right.
  explicit TextTable(std::string alignment) : alignment_(std::move(alignment)) {}

  /// Titles of the columns; long ones are broken into lines.
  void SetHeader(std::vector<std::string> titles) { header_ = std::move(titles); }
  /// A shorter row leaves its last cells empty.
  void Add(std::vector<std::string> row) { rows_.push_back(std::move(row)); }
  /// The lines, each after two blanks; columns that are empty throughout are left out.
  std::string Text() const;

 private:
  std::string Line(const std::vector<std::size_t>& widths,
                   const std::vector<std::string>& cells) const;

  std::string alignment_;
  std::vector<std::string> header_;
  std::vector<std::vector<std::string>> rows_;
};

}  // namespace nuvhost
