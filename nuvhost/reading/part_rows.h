// PartRows: where in a CSV file the rows of each part stand, of many parts one after another.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "nuvhost/reading/source_text.h"

namespace nuvhost {

/// A part's rows in a file, and the file's header above them.
struct RowsOfPart {
  std::uint64_t header_end = 0;  ///< in bytes from the file's beginning; 0 without a header
  std::uint64_t begin = 0;
  std::uint64_t end = 0;
  std::uint64_t line = 0;  ///< of the first row, from 1
  char separator = ',';    ///< of the fields, in the whole file
};

class PartRows {
 public:
  /// Finds the parts: a new one begins where the column's value changes. The file is read through
  /// once; only the parts' names and places are kept. Throws UserError for a file that cannot be
  /// read, a column that it does not have, rows without a value there, and a value that comes
  /// again after another. Blanks cannot separate the fields.
  static PartRows Find(const std::string& file, const std::string& column, char decimal);

  /// The parts' names in their order, which are not kept.
  std::vector<std::string> TakeNames() { return std::move(names_); }
  RowsOfPart Rows(std::size_t part) const;

 private:
  struct Begin {
    std::uint64_t offset;
    std::uint64_t line;
  };
  class Scanner;

  std::vector<std::string> names_;
  std::vector<Begin> begins_;
  std::uint64_t header_end_ = 0;
  std::uint64_t end_ = 0;
  char separator_ = ',';
};

/// The header and the rows of one part as a text, whose mistakes are told by their places in the
/// whole file; nothing, and the reason in words, where it cannot be read.
std::optional<SourceText> ReadRows(const std::string& file, const RowsOfPart& rows,
                                   std::string& reason);

}  // namespace nuvhost
