// DataTable: the rows and columns of a data file, whatever its form.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "host/nuv_object.h"
#include "nuvhost/reading/source_text.h"
#include "nuvhost/values/json_value.h"

namespace nuvhost {

/// A column as a program names it: by its header, or by its position from 0.
using ColumnName = std::variant<std::string, std::size_t>;

/// Some of a table's rows, in their order.
class ChosenRows {
 public:
  /// The first `count` rows.
  explicit ChosenRows(std::size_t count) : count_(count) {}
  explicit ChosenRows(std::vector<std::size_t> rows)
      : count_(rows.size()), rows_(std::move(rows)) {}

  std::size_t Size() const { return count_; }
  std::size_t operator[](std::size_t i) const { return rows_.empty() ? i : rows_[i]; }
  bool AreFirst() const { return rows_.empty(); }
  void Shorten(std::size_t count) { count_ = count; }

 private:
  std::size_t count_;
  std::vector<std::size_t> rows_;  ///< empty for all
};

/// Fields are read only when they are asked for, as what is asked for.
class DataTable {
 public:
  explicit DataTable(SourceText source) : source_(std::move(source)) {}
  DataTable(DataTable&&) = default;
  DataTable& operator=(const DataTable&) = delete;
  virtual ~DataTable() = default;

  const std::string& Name() const { return source_.Name(); }
  std::size_t Columns() const { return columns_; }
  virtual std::size_t Rows() const = 0;
  /// Empty where the table has none.
  const std::vector<std::string>& Header() const { return header_; }

  /// The position of a column; nothing, and the reason in words, where there is no such column.
  std::optional<std::size_t> Find(const ColumnName& name, std::string& reason) const;
  /// '2 columns: "a", "b"' for people.
  std::string DescribeColumns() const;

  /// Whether a field is this number, text or boolean.
  bool Holds(std::size_t row, std::size_t column, const Json& value) const;
  /// The rows without those at the end in which all these columns are blank.
  ChosenRows WithoutBlankEnd(ChosenRows rows, const std::vector<std::size_t>& columns) const;
  /// The values in a column's rows, or the points in those of two, as an array of the parameter
  /// type. A column with fields that are none is one mistake.
  CNuvObject Array(std::uint32_t array_type, const std::vector<std::size_t>& columns,
                   const ChosenRows& rows, Mistakes& mistakes) const;

 protected:
  virtual bool IsBlank(std::size_t row, std::size_t column) const = 0;
  /// False for a field that is none. Millions are read, so no std::optional, which goes by memory.
  virtual bool Number(std::size_t row, std::size_t column, double& number) const = 0;
  /// Each gives nothing for a field that is none.
  virtual std::optional<bool> Boolean(std::size_t row, std::size_t column) const = 0;
  virtual std::optional<std::string> Utf8(std::size_t row, std::size_t column) const = 0;
  /// Where a field stands.
  virtual std::size_t Offset(std::size_t row, std::size_t column) const = 0;
  /// What is wrong with a field that is no value of a type.
  virtual std::string Fault(std::size_t row, std::size_t column, std::uint32_t type) const = 0;

  const SourceText& Source() const { return source_; }

  std::vector<std::string> header_;
  std::size_t columns_ = 0;

 private:
  /// A field's text as instructions take it; nothing where it has characters beyond U+00FF.
  std::optional<std::string> Text(std::size_t row, std::size_t column) const;
  template <class Read>
  bool ReadColumn(std::uint32_t type, std::size_t column, const ChosenRows& rows, Read read,
                  Mistakes& mistakes) const;
  template <class Store>
  void ReadNumbers(std::size_t column, const ChosenRows& rows, Store store,
                   Mistakes& mistakes) const;

  SourceText source_;
  /// Of short columns all of whose rows were read: programs take one in several places.
  mutable std::vector<std::vector<double>> numbers_;
};

}  // namespace nuvhost
