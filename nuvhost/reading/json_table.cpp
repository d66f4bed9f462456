#include "nuvhost/reading/json_table.h"

#include <algorithm>

#include "host/records.h"
#include "nuvhost/error.h"
#include "nuvhost/values/json_text.h"

namespace nuvhost {
namespace {

/// A field's value as a parameter of a type takes it; nothing where it does not.
template <class Value>
std::optional<Value> As(const Json& json, std::uint32_t type) {
  try {
    return static_cast<Value>(FromJson(json, type));
  } catch (const ValueError&) {
    return std::nullopt;
  }
}

}  // namespace

std::unique_ptr<JsonTable> JsonTable::Read(SourceText source, Mistakes& mistakes) {
  std::unique_ptr<JsonTable> table(new JsonTable(std::move(source)));
  table->json_ = LocatedJson::Parse(table->Source(), mistakes);
  if (!table->json_) return nullptr;
  const Json& root = *table->Root();
  const auto is_list = [](const Json& json) { return json.is_array(); };
  const auto is_object = [](const Json& json) { return json.is_object(); };
  if (root.is_object() && std::ranges::all_of(root, is_list)) {
    table->TakeColumns();
  } else if (root.is_array() && !root.empty() && std::ranges::all_of(root, is_object)) {
    if (!table->TakeRows(mistakes)) return nullptr;
  }
  return table;
}

void JsonTable::TakeColumns() {
  is_table_ = true;
  for (const auto& [name, list] : Root().Members()) {
    Column& column = ColumnNamed(name);
    for (const Located& element : list.Elements()) column.emplace_back(element);
    rows_ = std::max(rows_, column.size());
  }
}

bool JsonTable::TakeRows(Mistakes& mistakes) {
  is_table_ = true;
  for (const Located& row : Root().Elements()) {
    for (const auto& [name, value] : row.Members()) {
      Column& column = ColumnNamed(name);
      column.resize(rows_);
      column.emplace_back(value);
    }
    ++rows_;
    if (columns_ <= kMostMembers) continue;
    mistakes.Add(Source(), row.Offset(), fmt::format("more than {} columns", kMostMembers));
    return false;
  }
  return true;
}

JsonTable::Column& JsonTable::ColumnNamed(std::string_view name) {
  const auto [known, is_new] = by_name_.emplace(name, columns_);
  if (is_new) {
    header_.emplace_back(name);
    cells_.emplace_back();
    ++columns_;
  }
  return cells_[known->second];
}

const Json& JsonTable::At(std::size_t row, std::size_t column) const {
  static const Json kNull;
  const Column& cells = cells_[column];
  return row < cells.size() && cells[row] ? **cells[row] : kNull;
}

bool JsonTable::IsBlank(std::size_t row, std::size_t column) const {
  return At(row, column).is_null();
}

bool JsonTable::Number(std::size_t row, std::size_t column, double& number) const {
  const std::optional<double> found = As<double>(At(row, column), NUV_PARAM_NUMBER);
  if (found) number = *found;
  return found.has_value();
}

std::optional<bool> JsonTable::Boolean(std::size_t row, std::size_t column) const {
  return As<bool>(At(row, column), NUV_PARAM_BOOLEAN);
}

std::optional<std::string> JsonTable::Utf8(std::size_t row, std::size_t column) const {
  const Json& field = At(row, column);
  return field.is_string() ? std::optional(field.get<std::string>()) : std::nullopt;
}

/// Of a field that is not there, that of the column's last.
std::size_t JsonTable::Offset(std::size_t row, std::size_t column) const {
  const Column& cells = cells_[column];
  for (std::size_t i = std::min(row + 1, cells.size()); i > 0; --i) {
    if (cells[i - 1]) return cells[i - 1]->Offset();
  }
  return Root().Offset();
}

std::string JsonTable::Fault(std::size_t row, std::size_t column, std::uint32_t type) const {
  const std::string where = fmt::format("column \"{}\", row {}: ", header_[column], row);
  try {
    FromJson(At(row, column), type);
  } catch (const ValueError& error) {
    return where + error.what();
  }
  return where + "no value";
}

}  // namespace nuvhost
