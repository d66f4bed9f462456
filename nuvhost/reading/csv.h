// CsvTable: the rows and columns of a CSV file, by a header or by position.
#pragma once

#include "nuvhost/reading/data_table.h"

namespace nuvhost {

/// Finds the end of a line whose separator is not known yet. Line ends in quotes do not end it; a
/// quote begins a field in quotes only behind what may be a separator.
class LineEnd {
 public:
  /// Whether the line ends with this character, its next one.
  bool Takes(char c);
  bool IsQuoted() const { return is_quoted_; }

 private:
  bool is_quoted_ = false;
  char last_ = '\n';  ///< outside quotes
};

/// What separates the fields of a text, whose first two lines tell it: a tab, a semicolon, a comma
/// where that is no decimal sign, or a blank.
char SeparatorOf(std::string_view text, char decimal);

/// The place of the first of two characters from `at` on, or the text's end.
std::size_t FindEither(std::string_view text, std::size_t at, char one, char other);

/// What is known of a text before it is read.
struct CsvForm {
  char decimal = '.';
  bool allow_empty = false;
  bool may_have_header = true;  ///< as rows amid a file have not
  char separator = '\0';        ///< else what the first lines tell
};

/// A table of text. Fields are separated by tabs, semicolons or commas, whichever the first line
/// has in this order, or by blanks where it has none of them; they may be quoted. The first row is
/// a header unless all its fields are numbers or blank. Blank lines at the end do not count.
class CsvTable final : public DataTable {
 public:
  /// Rows of unequal length, quotes left open and an empty file are mistakes that leave nothing.
  /// Where the decimal sign is a comma it separates no fields. An empty file may be allowed, and
  /// is a table without columns.
  static std::optional<CsvTable> Read(SourceText source, Mistakes& mistakes,
                                      const CsvForm& form = {});

  std::size_t Rows() const override { return columns_ == 0 ? 0 : fields_.size() / columns_; }

 protected:
  bool IsBlank(std::size_t row, std::size_t column) const override;
  bool Number(std::size_t row, std::size_t column, double& number) const override;
  /// true, false, yes, no, 1 and 0, in letters of either case.
  std::optional<bool> Boolean(std::size_t row, std::size_t column) const override;
  std::optional<std::string> Utf8(std::size_t row, std::size_t column) const override {
    return Unquoted(At(row, column));
  }
  std::size_t Offset(std::size_t row, std::size_t column) const override {
    return At(row, column).begin;
  }
  std::string Fault(std::size_t row, std::size_t column, std::uint32_t type) const override;

 private:
  /// A field's characters within the text; of a quoted field without its quotes.
  struct Field {
    std::uint32_t begin;
    std::uint32_t end;
  };
  class Reader;

  CsvTable(SourceText source, char decimal) : DataTable(std::move(source)), decimal_(decimal) {}
  const Field& At(std::size_t row, std::size_t column) const {
    return fields_[row * columns_ + column];
  }
  /// A field's characters as they stand in the text, without blanks around them.
  std::string_view Bare(const Field& field) const;
  /// The text that a field stands for; only a quoted one has blanks around it.
  std::string Unquoted(const Field& field) const;
  void TakeHeader();

  char decimal_;
  std::vector<Field> fields_;  ///< row by row
};

}  // namespace nuvhost
