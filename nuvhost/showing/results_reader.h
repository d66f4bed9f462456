// ResultsReader: a results file, CSV or JSON lines, read record by record.
#pragma once

#include <cstdint>
#include <fstream>
#include <string>
#include <vector>

namespace nuvhost {

/// Of a file of any length no more than a record is in memory. A last record without a line end,
/// as a run that was killed leaves it, does not count.
class ResultsReader {
 public:
  /// Throws UserError where the file cannot be read.
  explicit ResultsReader(const std::string& name);

  /// The columns' names; none where the file has no whole first record.
  const std::vector<std::string>& Columns() const { return columns_; }
  /// Reads the next record, as many fields as there are columns; false at the end. Throws
  /// UserError for one that is not of this kind.
  bool Next(std::vector<std::string>& fields);
  /// The number of records read, and where the last of them ends.
  std::uint64_t Records() const { return records_; }
  std::uint64_t End() const { return end_; }

 private:
  bool NextCsv(std::vector<std::string>& fields);
  bool NextJson(std::vector<std::string>& fields);
  [[noreturn]] void Fail(const std::string& reason) const;

  std::string name_;
  bool is_json_;
  std::ifstream file_;
  std::vector<std::string> columns_;
  std::uint64_t records_ = 0;
  std::uint64_t end_ = 0;
  char before_ = 0;  ///< the character before, in CSV
};

/// "column 3 is "a", and would be "b"", the first that differs; empty where all are alike.
std::string DifferenceOf(const std::vector<std::string>& columns,
                         const std::vector<std::string>& wanted);

}  // namespace nuvhost
