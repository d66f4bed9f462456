#include "nuvhost/reading/csv.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>

#include "nuvhost/text/names.h"

namespace nuvhost {
namespace {

std::string_view Trimmed(std::string_view text) {
  const std::size_t begin = text.find_first_not_of(" \t");
  if (begin == std::string_view::npos) return "";
  return text.substr(begin, text.find_last_not_of(" \t") + 1 - begin);
}

/// A number as CSV files have it; nothing for other texts. Beyond the range it is infinite.
std::optional<double> ParseNumber(std::string_view text) {
  text = Trimmed(text);
  if (text == "NaN") return std::numeric_limits<double>::quiet_NaN();
  if (text == "Infinity") return std::numeric_limits<double>::infinity();
  if (text == "-Infinity") return -std::numeric_limits<double>::infinity();
  if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
  // Digits only: none of the words for special numbers, of which there are many.
  if (text.find_first_not_of("0123456789+-.eE") != std::string_view::npos) return std::nullopt;
  double number = 0.0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error == std::errc::invalid_argument || end != text.data() + text.size()) {
    return std::nullopt;
  }
  // Too large or too small, which only the C runtime tells apart.
  if (error == std::errc::result_out_of_range)
    return std::strtod(std::string(text).c_str(), nullptr);
  return number;
}

}  // namespace

char SeparatorOf(std::string_view first_line) {
  std::string bare;
  bool quoted = false;
  for (const char c : first_line) {
    if (c == '"') quoted = !quoted;
    if (!quoted) bare += c;
  }
  if (bare.find('\t') != std::string::npos) return '\t';
  return bare.find(';') != std::string::npos ? ';' : ',';
}

/// Splits the text into rows of fields.
class CsvTable::Reader {
 public:
  Reader(const SourceText& source, Mistakes& mistakes)
      : source_(source), text_(source.Text()), mistakes_(mistakes) {
    while (!text_.empty() && std::string_view(" \r\n").find(text_.back()) != text_.npos) {
      text_.remove_suffix(1);
    }
    separator_ = SeparatorOf(text_.substr(0, text_.find('\n')));
    at_end_ = text_.empty();
  }

  bool AtEnd() const { return at_end_; }
  std::size_t Offset() const { return at_; }

  /// The fields of the next line; nothing after a mistake.
  std::optional<std::vector<Field>> Row() {
    std::vector<Field> row;
    while (true) {
      const std::optional<Field> field = text_.substr(at_).starts_with('"') ? InQuotes() : Plain();
      if (!field) return std::nullopt;
      row.push_back(*field);
      at_end_ = at_ == text_.size();
      if (at_end_ || text_[at_++] == '\n') return row;
    }
  }

 private:
  // Both leave off at a separator, a line end or the end of the text.
  Field Plain() {
    const std::size_t begin = at_;
    while (at_ < text_.size() && text_[at_] != separator_ && text_[at_] != '\n') ++at_;
    const bool carriage_return = at_ > begin && text_[at_ - 1] == '\r';
    return {begin, carriage_return ? at_ - 1 : at_};
  }

  std::optional<Field> InQuotes() {
    const std::size_t begin = ++at_;
    while (true) {
      at_ = text_.find('"', at_);
      if (at_ == text_.npos) {
        mistakes_.Add(source_, begin - 1, "a quoted field without its closing quote");
        return std::nullopt;
      }
      if (!text_.substr(at_ + 1).starts_with('"')) break;
      at_ += 2;
    }
    const Field field{begin, at_++};
    if (text_.substr(at_).starts_with("\r\n")) ++at_;
    if (at_ == text_.size() || text_[at_] == separator_ || text_[at_] == '\n') return field;
    mistakes_.Add(source_, at_, "more text after a field's closing quote");
    return std::nullopt;
  }

  const SourceText& source_;
  std::string_view text_;
  Mistakes& mistakes_;
  char separator_;
  std::size_t at_ = 0;
  bool at_end_;
};

std::optional<CsvTable> CsvTable::Read(SourceText source, Mistakes& mistakes) {
  CsvTable table(std::move(source));
  const SourceText& text = table.source_;
  if (!IsText(text, mistakes)) return std::nullopt;
  Reader reader(text, mistakes);
  if (reader.AtEnd()) {
    mistakes.Add(text.Name(), "the file is empty");
    return std::nullopt;
  }
  bool is_first = true;
  bool all_good = true;
  while (!reader.AtEnd()) {
    const std::size_t offset = reader.Offset();
    const std::optional<std::vector<Field>> row = reader.Row();
    if (!row) return std::nullopt;
    if (is_first) {
      table.columns_ = row->size();
      for (const Field& field : *row) {
        table.header_.emplace_back(Trimmed(table.Text(field)));
      }
      const auto is_number = [](const std::string& field) {
        return ParseNumber(field).has_value();
      };
      if (std::ranges::all_of(table.header_, is_number)) table.header_.clear();
    } else if (row->size() != table.columns_) {
      mistakes.Add(text, offset,
                   fmt::format("the line has {}{}, the first line has {}", row->size(),
                               row->size() == 1 ? " field" : " fields", table.columns_));
      all_good = false;
    }
    const bool is_header = is_first && !table.header_.empty();
    if (!is_header) table.fields_.insert(table.fields_.end(), row->begin(), row->end());
    is_first = false;
  }
  if (!all_good) return std::nullopt;
  return table;
}

std::optional<std::size_t> CsvTable::Find(const ColumnName& name, std::string& reason) const {
  const std::string columns = fmt::format("\"{}\" has {}", Name(), DescribeColumns());
  if (const auto* position = std::get_if<std::size_t>(&name)) {
    if (*position < columns_) return *position;
    reason = fmt::format("no column {}, counted from 0: {}", *position, columns);
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

std::string CsvTable::DescribeColumns() const {
  std::string text = std::to_string(columns_) + (columns_ == 1 ? " column" : " columns");
  for (std::size_t i = 0; i < header_.size(); ++i)
    text += (i == 0 ? ": " : ", ") + Quoted(header_[i]);
  return text;
}

CNuvDoubleVector CsvTable::Numbers(std::size_t column, Mistakes& mistakes) const {
  CNuvDoubleVector numbers;
  numbers.Resize(Rows());
  for (std::size_t row = 0; row < Rows(); ++row) numbers[row] = Number(row, column, mistakes);
  return numbers;
}

CNuvPointVector CsvTable::Points(std::size_t x, std::size_t y, Mistakes& mistakes) const {
  CNuvPointVector points;
  points.Resize(Rows());
  for (std::size_t row = 0; row < Rows(); ++row) {
    points[row] = CNuvPoint(Number(row, x, mistakes), Number(row, y, mistakes));
  }
  return points;
}

std::string CsvTable::Text(const Field& field) const {
  const std::string_view all = source_.Text();
  std::string text(all.substr(field.begin, field.end - field.begin));
  const bool quoted = field.begin > 0 && all[field.begin - 1] == '"';
  for (std::size_t i = 0; quoted && (i = text.find("\"\"", i)) != std::string::npos; ++i) {
    text.erase(i, 1);
  }
  return text;
}

double CsvTable::Number(std::size_t row, std::size_t column, Mistakes& mistakes) const {
  const Field& field = fields_[row * columns_ + column];
  const std::string text = Text(field);
  const std::optional<double> number = ParseNumber(text);
  if (number && (std::isfinite(*number) || text.find_first_of("0123456789") == std::string::npos)) {
    return *number;
  }
  std::string decimal_point = text;
  std::ranges::replace(decimal_point, ',', '.');
  std::string what = Quoted(Trimmed(text));
  if (number) {
    what += " is beyond the range of numbers";
  } else if (Trimmed(text).empty()) {
    what = "an empty field, where a number belongs";
  } else if (ParseNumber(decimal_point)) {
    what += " is no number; write a decimal point";
  } else {
    what += " is no number";
  }
  mistakes.Add(source_, field.begin, what);
  return 0.0;
}

}  // namespace nuvhost
