#include "nuvhost/reading/data_table.h"

#include <fmt/format.h>

#include <algorithm>

#include "host/records.h"
#include "host/vectors.h"
#include "nuvhost/error.h"
#include "nuvhost/text/names.h"
#include "nuvhost/text/utf8.h"

namespace nuvhost {

std::optional<std::size_t> DataTable::Find(const ColumnName& name, std::string& reason) const {
  if (const auto* position = std::get_if<std::size_t>(&name)) {
    if (*position < columns_) return *position;
    reason = fmt::format("no column {}, counted from 0: \"{}\" has {}", *position, Name(),
                         DescribeColumns());
    return std::nullopt;
  }
  const auto& wanted = std::get<std::string>(name);
  const auto found = std::ranges::count(header_, wanted);
  if (found == 1) return std::ranges::find(header_, wanted) - header_.begin();
  if (header_.empty()) {
    reason = fmt::format(
        "no column \"{}\": \"{}\" has no header; name the column by its position, from 0 to {}",
        wanted, Name(), columns_ - 1);
  } else if (found > 1) {
    reason = fmt::format("\"{}\" has more than one column \"{}\"; name it by its position, from 0",
                         Name(), wanted);
  } else {
    const std::string near = DidYouMean(wanted, {header_.begin(), header_.end()});
    reason = fmt::format("\"{}\" has no column \"{}\"{}", Name(), wanted,
                         near.empty() ? "; it has " + DescribeColumns() : near);
  }
  return std::nullopt;
}

std::string DataTable::DescribeColumns() const {
  std::string text = std::to_string(columns_) + (columns_ == 1 ? " column" : " columns");
  for (std::size_t i = 0; i < header_.size(); ++i)
    text += (i == 0 ? ": " : ", ") + Quoted(header_[i]);
  return text;
}

bool DataTable::Holds(std::size_t row, std::size_t column, const Json& value) const {
  if (value.is_number()) {
    double number = 0.0;
    return Number(row, column, number) && number == value.get<double>();
  }
  if (value.is_boolean()) return Boolean(row, column) == value.get<bool>();
  return Utf8(row, column) == value.get_ref<const std::string&>();
}

std::optional<std::string> DataTable::Text(std::size_t row, std::size_t column) const {
  const std::optional<std::string> text = Utf8(row, column);
  try {
    if (text) return BytesFromUtf8(*text);
  } catch (const ValueError&) {  // the caller tells it by its place
  }
  return std::nullopt;
}

ChosenRows DataTable::WithoutBlankEnd(ChosenRows rows,
                                      const std::vector<std::size_t>& columns) const {
  std::size_t count = rows.Size();
  const auto is_blank = [&](std::size_t column) { return IsBlank(rows[count - 1], column); };
  while (count > 0 && std::ranges::all_of(columns, is_blank)) --count;
  rows.Shorten(count);
  return rows;
}

/// `read` takes a position in the array and the row of its field; false where that is none. Whether
/// all are some.
template <class Read>
bool DataTable::ReadColumn(std::uint32_t type, std::size_t column, const ChosenRows& rows,
                           Read read, Mistakes& mistakes) const {
  std::size_t wrong = 0;
  std::size_t first = 0;
  for (std::size_t i = 0; i < rows.Size(); ++i) {
    if (!read(i, rows[i]) && wrong++ == 0) first = rows[i];
  }
  if (wrong == 0) return true;
  std::string text = Fault(first, column, type);
  if (wrong > 1) {
    text += fmt::format("; {} more field{} of the column {} wrong", wrong - 1,
                        wrong == 2 ? "" : "s", wrong == 2 ? "is" : "are");
  }
  mistakes.Add(source_, Offset(first, column), text);
  return false;
}

template <class Store>
void DataTable::ReadNumbers(std::size_t column, const ChosenRows& rows, Store store,
                            Mistakes& mistakes) const {
  constexpr std::size_t kMostKept = 65536;
  numbers_.resize(std::max(columns_, column + 1));  // an empty table has none
  std::vector<double>& known = numbers_[column];
  if (rows.AreFirst() && known.size() >= rows.Size()) {
    for (std::size_t i = 0; i < rows.Size(); ++i) store(i, known[i]);
    return;
  }
  std::vector<double> kept(rows.AreFirst() && rows.Size() <= kMostKept ? rows.Size() : 0);
  const auto read = [&](std::size_t i, std::size_t row) {
    double number = 0.0;
    const bool is_number = Number(row, column, number);
    store(i, number);
    if (!kept.empty()) kept[i] = number;
    return is_number;
  };
  if (ReadColumn(NUV_PARAM_NUMBER, column, rows, read, mistakes)) known = std::move(kept);
}

CNuvObject DataTable::Array(std::uint32_t array_type, const std::vector<std::size_t>& columns,
                            const ChosenRows& rows, Mistakes& mistakes) const {
  CNuvObject array;
  switch (array_type) {
    case NUV_PARAM_BOOLEAN_ARRAY: {
      auto& booleans = static_cast<CNuvBoolVector&>(array);
      booleans.Resize(rows.Size());
      const auto read = [&](std::size_t i, std::size_t row) {
        const std::optional<bool> value = Boolean(row, columns[0]);
        booleans[i] = value.value_or(false);
        return value.has_value();
      };
      ReadColumn(NUV_PARAM_BOOLEAN, columns[0], rows, read, mistakes);
      break;
    }
    case NUV_PARAM_STRING_ARRAY: {
      auto& texts = static_cast<CNuvStringVector&>(array);
      texts.Resize(rows.Size());
      const auto read = [&](std::size_t i, std::size_t row) {
        const std::optional<std::string> value = Text(row, columns[0]);
        if (value) texts[i] = value->c_str();
        return value.has_value();
      };
      ReadColumn(NUV_PARAM_STRING, columns[0], rows, read, mistakes);
      break;
    }
    case NUV_PARAM_POINT_ARRAY: {
      auto& points = static_cast<CNuvPointVector&>(array);
      points.Resize(rows.Size());
      ReadNumbers(
          columns[0], rows, [&](std::size_t i, double x) { points[i].x = x; }, mistakes);
      ReadNumbers(
          columns[1], rows, [&](std::size_t i, double y) { points[i].y = y; }, mistakes);
      break;
    }
    default: {
      auto& numbers = static_cast<CNuvDoubleVector&>(array);
      numbers.Resize(rows.Size());
      ReadNumbers(
          columns[0], rows, [&](std::size_t i, double n) { numbers[i] = n; }, mistakes);
      break;
    }
  }
  return array;
}

}  // namespace nuvhost
