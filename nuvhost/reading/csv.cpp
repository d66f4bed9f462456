#include "nuvhost/reading/csv.h"

#include <fmt/format.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>

#include "host/records.h"
#include "nuvhost/reading/numbers.h"
#include "nuvhost/reading/words.h"
#include "nuvhost/text/names.h"
#include "nuvhost/text/utf8.h"

namespace nuvhost {
namespace {

std::string_view Trimmed(std::string_view text) {
  const auto is_blank = [](char c) { return c == ' ' || c == '\t'; };
  if (!text.empty() && !is_blank(text.front()) && !is_blank(text.back())) return text;
  const std::size_t begin = text.find_first_not_of(" \t");
  if (begin == std::string_view::npos) return "";
  return text.substr(begin, text.find_last_not_of(" \t") + 1 - begin);
}

/// The next line without what stands in quotes, and without blanks around it; steps over it.
std::string TakeOutline(std::string_view& text) {
  std::string bare;
  LineEnd end;
  std::size_t size = 0;
  while (size < text.size() && !end.Takes(text[size])) {
    if (!end.IsQuoted() && text[size] != '\r') bare += text[size];
    ++size;
  }
  text.remove_prefix(std::min(size + 1, text.size()));
  const std::size_t begin = bare.find_first_not_of(' ');
  if (begin == std::string::npos) return "";
  return bare.substr(begin, bare.find_last_not_of(' ') + 1 - begin);
}

/// Whether all words of a text are numbers.
bool AreNumbers(std::string_view text, char decimal) {
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(' '), text.size());
    if (end > 0 && !ParseNumber(text.substr(0, end), decimal)) return false;
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return true;
}

}  // namespace

bool LineEnd::Takes(char c) {
  const bool opens = std::string_view("\n\t;, ").find(last_) != std::string_view::npos;
  if (c == '"' && (is_quoted_ || opens)) {
    is_quoted_ = !is_quoted_;
  } else if (!is_quoted_) {
    last_ = c;
  }
  return c == '\n' && !is_quoted_;
}

std::size_t FindEither(std::string_view text, std::size_t at, char one, char other) {
  const std::uint64_t ones = Bytes(static_cast<unsigned char>(one));
  const std::uint64_t others = Bytes(static_cast<unsigned char>(other));
  for (; at + 8 <= text.size(); at += 8) {
    const std::uint64_t word = WordAt(text.data() + at);
    const std::uint64_t found = ZeroBytes(word ^ ones) | ZeroBytes(word ^ others);
    if (found != 0) return at + static_cast<std::size_t>(std::countr_zero(found)) / 8;
  }
  while (at < text.size() && text[at] != one && text[at] != other) ++at;
  return at;
}

/// Blanks separate where the first two lines have them and nothing else that does; of a single
/// line, where it holds numbers. Else they stand within a header such as "outer diameter".
char SeparatorOf(std::string_view text, char decimal) {
  const std::string first = TakeOutline(text);
  if (first.find('\t') != std::string::npos) return '\t';
  if (first.find(';') != std::string::npos) return ';';
  if (decimal != ',' && first.find(',') != std::string::npos) return ',';
  const char other = decimal == ',' ? ';' : ',';
  if (first.find(' ') == std::string::npos) return other;
  if (text.empty()) return AreNumbers(first, decimal) ? ' ' : other;
  return TakeOutline(text).find(' ') != std::string::npos ? ' ' : other;
}

/// Splits the text into rows of fields.
class CsvTable::Reader {
 public:
  Reader(const SourceText& source, const CsvForm& form, Mistakes& mistakes)
      : source_(source), text_(source.Text()), mistakes_(mistakes) {
    const std::size_t end = text_.find_last_not_of(" \r\n");
    text_ = text_.substr(0, end == std::string_view::npos ? 0 : end + 1);
    separator_ = form.separator != '\0' ? form.separator : SeparatorOf(text_, form.decimal);
  }

  bool AtEnd() const { return at_ > text_.size() || text_.empty(); }
  std::size_t Offset() const { return at_; }

  /// Adds the fields of the next line; false after a mistake.
  bool Row(std::vector<Field>& row) {
    while (true) {
      if (separator_ == ' ') {
        while (at_ < text_.size() && text_[at_] == ' ') ++at_;
        if (EndsLine()) return true;
      }
      if (at_ == text_.size() || text_[at_] != '"') {
        row.push_back(Plain());
      } else if (const std::optional<Field> field = InQuotes()) {
        row.push_back(*field);
      } else {
        return false;
      }
      if (EndsLine()) return true;
      ++at_;
    }
  }

  /// Adds the fields of the lines that come next, as far as they have so many fields and none in
  /// quotes. Leaves at least the last line.
  void PlainRows(std::size_t columns, std::vector<Field>& fields) {
    if (separator_ == ' ') return;
    std::size_t complete = fields.size();
    std::size_t begin = at_;
    for (std::size_t at = at_; at + 64 <= text_.size(); at += 64) {
      std::uint64_t ends = EachOf(text_.data() + at, separator_, '\n');
      for (; ends != 0; ends &= ends - 1) {
        const std::size_t end = at + static_cast<std::size_t>(std::countr_zero(ends));
        const bool ends_line = text_[end] == '\n';
        const bool is_last = fields.size() + 1 == complete + columns;
        if (text_[begin] == '"' || ends_line != is_last) return fields.resize(complete);
        fields.push_back(FieldWithoutReturn(begin, end));
        begin = end + 1;
        if (!ends_line) continue;
        complete = fields.size();
        at_ = begin;
      }
    }
    fields.resize(complete);
  }

 private:
  /// Whether a line ends here; steps over its end.
  bool EndsLine() {
    if (at_ < text_.size() && text_[at_] == '\r' && text_.substr(at_ + 1, 1) == "\n") ++at_;
    if (at_ < text_.size() && text_[at_] != '\n') return false;
    ++at_;
    return true;
  }

  static Field FieldOf(std::size_t begin, std::size_t end) {
    return {static_cast<std::uint32_t>(begin), static_cast<std::uint32_t>(end)};
  }

  // Both leave off at a separator, a line end or the end of the text.
  Field Plain() {
    const std::size_t begin = at_;
    at_ = FindEither(text_, begin, separator_, '\n');
    return FieldWithoutReturn(begin, at_);
  }
  Field FieldWithoutReturn(std::size_t begin, std::size_t end) const {
    const bool carriage_return = end > begin && text_[end - 1] == '\r';
    return FieldOf(begin, carriage_return ? end - 1 : end);
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
    const Field field = FieldOf(begin, at_++);
    if (text_.substr(at_).starts_with("\r\n")) ++at_;
    if (at_ == text_.size() || text_[at_] == separator_ || text_[at_] == '\n') return field;
    mistakes_.Add(source_, at_, "more text after a field's closing quote");
    return std::nullopt;
  }

  const SourceText& source_;
  std::string_view text_;
  Mistakes& mistakes_;
  char separator_;
  std::size_t at_ = 0;  ///< beyond the text's end once its last line is read
};

std::optional<CsvTable> CsvTable::Read(SourceText source, Mistakes& mistakes, const CsvForm& form) {
  CsvTable table(std::move(source), form.decimal);
  const SourceText& text = table.Source();
  if (!IsText(text, mistakes)) return std::nullopt;
  if (text.Text().size() > std::numeric_limits<std::uint32_t>::max()) {
    mistakes.Add(text.Name(), "the file is larger than 4 GiB; split it");
    return std::nullopt;
  }
  Reader reader(text, form, mistakes);
  if (reader.AtEnd()) {
    if (form.allow_empty) return table;
    mistakes.Add(text.Name(), "the file is empty");
    return std::nullopt;
  }
  if (!reader.Row(table.fields_)) return std::nullopt;
  table.columns_ = table.fields_.size();
  if (form.may_have_header) table.TakeHeader();
  const std::size_t lines = text.Text().size() / reader.Offset() + 1;  // if they are as long
  table.fields_.reserve(std::min(table.columns_ * lines, text.Text().size() + 1));

  std::string unequal;
  std::size_t first = 0;
  std::size_t more = 0;
  while (!reader.AtEnd()) {
    reader.PlainRows(table.columns_, table.fields_);
    const std::size_t offset = reader.Offset();
    const std::size_t before = table.fields_.size();
    if (!reader.Row(table.fields_)) return std::nullopt;
    const std::size_t fields = table.fields_.size() - before;
    if (fields == table.columns_) continue;
    table.fields_.resize(before);
    if (!unequal.empty()) {
      ++more;
      continue;
    }
    first = offset;
    unequal = fmt::format("the line has {}{}, the first line has {}", fields,
                          fields == 1 ? " field" : " fields", table.columns_);
  }
  if (unequal.empty()) return table;
  if (more > 0) {
    unequal +=
        fmt::format("; {} more line{} too few or too many", more, more == 1 ? " has" : "s have");
  }
  mistakes.Add(text, first, unequal);
  return std::nullopt;
}

/// The first row is a header where one field is neither a number nor blank, or all are blank.
void CsvTable::TakeHeader() {
  bool has_number = false;
  bool has_text = false;
  for (const Field& field : fields_) {
    header_.emplace_back(Trimmed(Unquoted(field)));
    const bool is_number = ParseNumber(header_.back(), decimal_).has_value();
    has_number = has_number || is_number;
    has_text = has_text || !(is_number || header_.back().empty());
  }
  if (has_number && !has_text) {
    header_.clear();
  } else {
    fields_.clear();
  }
}

std::string_view CsvTable::Bare(const Field& field) const {
  return Trimmed(Source().Text().substr(field.begin, field.end - field.begin));
}

std::string CsvTable::Unquoted(const Field& field) const {
  const std::string_view all = Source().Text();
  if (field.begin == 0 || all[field.begin - 1] != '"') return std::string(Bare(field));
  std::string text;
  for (std::size_t i = field.begin; i < field.end; ++i) {
    text += all[i];
    if (all[i] == '"') ++i;  // the second of two that stand for one
  }
  return text;
}

bool CsvTable::IsBlank(std::size_t row, std::size_t column) const {
  return Bare(At(row, column)).empty();
}

bool CsvTable::Number(std::size_t row, std::size_t column, double& number) const {
  const Field& field = At(row, column);
  if (decimal_ == '.') {
    const std::string_view all = Source().Text();
    const std::string_view text(all.data() + field.begin, field.end - field.begin);
    if (ParseShortest(text, all.size() - field.end, number)) return true;
  }
  const std::string_view text = Bare(field);
  const std::optional<double> parsed = ParseNumber(text, decimal_);
  if (!parsed || (std::isinf(*parsed) && IsInfinite(parsed, text))) return false;
  number = *parsed;
  return true;
}

std::optional<bool> CsvTable::Boolean(std::size_t row, std::size_t column) const {
  const std::string text = Lowered(Bare(At(row, column)));
  if (text == "true" || text == "yes" || text == "1") return true;
  if (text == "false" || text == "no" || text == "0") return false;
  return std::nullopt;
}

std::string CsvTable::Fault(std::size_t row, std::size_t column, std::uint32_t type) const {
  const std::string text(Trimmed(Unquoted(At(row, column))));
  const std::string what = Quoted(text);
  if (type == NUV_PARAM_STRING) {
    return what + (ValidUtf8(text) == text
                       ? " has a character beyond U+00FF, which the host's texts "
                         "cannot hold; write another for it"
                       : " is no text in UTF-8; save the file in UTF-8");
  }
  if (text.empty()) return fmt::format("an empty field, where a {} belongs", Describe(type));
  if (type == NUV_PARAM_BOOLEAN) return what + " is no boolean: true, false, yes, no, 1 or 0";
  if (IsInfinite(ParseNumber(text, decimal_), text))
    return what + " is beyond the range of numbers";
  const bool is_comma = decimal_ == ',';
  std::string other = text;
  std::ranges::replace(other, is_comma ? '.' : ',', decimal_);
  if (!ParseNumber(other, decimal_)) return what + " is no number";
  return what + (is_comma ? R"( is no number, as the program says "decimal": ",")"
                          : R"( is no number; write a decimal point, or say "decimal": ",")");
}

}  // namespace nuvhost
