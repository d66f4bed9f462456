// TextTable: rows of texts with aligned columns, and how values look in them.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/nuv_object.h"

namespace nuvhost {

/// How many characters a text has.
std::size_t Width(std::string_view utf8);
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

/// A number with so many decimals, or with round-trip digits.
std::string NumberText(double number, std::optional<int> decimals = std::nullopt);
/// A value for a person: yes and no, a text as it is, an array by its first elements and its
/// size.
std::string ValueText(const CNuvObject& value, std::optional<int> decimals = std::nullopt);

}  // namespace nuvhost
