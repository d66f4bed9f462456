// JsonTable: the data in a JSON file, as one value or as rows and columns.
#pragma once

#include <functional>
#include <map>
#include <memory>

#include "nuvhost/reading/data_table.h"
#include "nuvhost/reading/located_json.h"

namespace nuvhost {

/// An object whose members are lists has columns of these names; a list of objects has a row for
/// each, and a column for each name in them. Anything else is one value. What is missing in a
/// column, and null, is blank.
class JsonTable final : public DataTable {
 public:
  /// Broken JSON is a mistake that leaves nothing, and so are more than 4000 columns.
  static std::unique_ptr<JsonTable> Read(SourceText source, Mistakes& mistakes);

  /// The value as a whole.
  Located Root() const { return json_->Root(); }
  /// Whether it has rows and columns.
  bool IsTable() const { return is_table_; }
  const SourceText& Source() const { return DataTable::Source(); }

  std::size_t Rows() const override { return rows_; }

 protected:
  bool IsBlank(std::size_t row, std::size_t column) const override;
  bool Number(std::size_t row, std::size_t column, double& number) const override;
  std::optional<bool> Boolean(std::size_t row, std::size_t column) const override;
  std::optional<std::string> Utf8(std::size_t row, std::size_t column) const override;
  std::size_t Offset(std::size_t row, std::size_t column) const override;
  std::string Fault(std::size_t row, std::size_t column, std::uint32_t type) const override;

 private:
  using Column = std::vector<std::optional<Located>>;

  explicit JsonTable(SourceText source) : DataTable(std::move(source)) {}
  void TakeColumns();
  bool TakeRows(Mistakes& mistakes);
  Column& ColumnNamed(std::string_view name);
  const Json& At(std::size_t row, std::size_t column) const;

  std::optional<LocatedJson> json_;
  bool is_table_ = false;
  std::size_t rows_ = 0;
  std::vector<Column> cells_;
  std::map<std::string, std::size_t, std::less<>> by_name_;  ///< the columns
};

}  // namespace nuvhost
