// CsvTable: the rows and columns of a CSV file, by a header or by position.
#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "host/vectors.h"
#include "nuvhost/reading/source_text.h"

namespace nuvhost {

/// A column as a program names it: by its header, or by its position from 0.
using ColumnName = std::variant<std::string, std::size_t>;

/// What separates the fields of a file with such a first line.
char SeparatorOf(std::string_view first_line);

/// A table of numbers. Fields are separated by tabs, semicolons or commas, whichever the first
/// line has in this order; they may be quoted. The first row is a header unless all its fields
/// are numbers. Blank lines at the end do not count. A field is read as a number only when its
/// column is asked for.
class CsvTable {
 public:
  /// Rows of unequal length, quotes left open and an empty file are mistakes that leave nothing.
  static std::optional<CsvTable> Read(SourceText source, Mistakes& mistakes);

  const std::string& Name() const { return source_.Name(); }
  std::size_t Columns() const { return columns_; }
  std::size_t Rows() const { return fields_.size() / columns_; }
  /// Empty where the file has none.
  const std::vector<std::string>& Header() const { return header_; }

  /// The position of a column; nothing, and the reason in words, where there is no such column.
  std::optional<std::size_t> Find(const ColumnName& name, std::string& reason) const;
  /// '2 columns: "a", "b"' for people.
  std::string DescribeColumns() const;

  /// A column's numbers; each field that is none is a mistake.
  CNuvDoubleVector Numbers(std::size_t column, Mistakes& mistakes) const;
  CNuvPointVector Points(std::size_t x, std::size_t y, Mistakes& mistakes) const;

 private:
  /// A field's characters within the text; of a quoted field without its quotes.
  struct Field {
    std::size_t begin;
    std::size_t end;
  };
  class Reader;

  explicit CsvTable(SourceText source) : source_(std::move(source)) {}
  std::string Text(const Field& field) const;
  double Number(std::size_t row, std::size_t column, Mistakes& mistakes) const;

  SourceText source_;
  std::vector<std::string> header_;
  std::size_t columns_ = 1;
  std::vector<Field> fields_;  ///< row by row
};

}  // namespace nuvhost
