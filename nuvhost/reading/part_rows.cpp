#include "nuvhost/reading/part_rows.h"

#include <algorithm>
#include <fstream>
#include <unordered_map>

#include "nuvhost/error.h"
#include "nuvhost/reading/csv.h"
#include "nuvhost/system/input_file.h"
#include "nuvhost/system/paths.h"
#include "nuvhost/text/names.h"

namespace nuvhost {
namespace {

constexpr std::size_t kBlock = std::size_t{1} << 20;

/// The first line with its line end, whose quoted fields may hold line ends too.
std::string FirstLine(std::istream& file) {
  std::string line;
  LineEnd end;
  for (char c = 0; file.get(c);) {
    line += c;
    if (end.Takes(c)) break;
  }
  return line;
}

/// The position of the column that a word names, by the header or else by its number from 0.
std::size_t ColumnOf(const CsvTable& table, const std::string& word) {
  std::string reason;
  if (const auto column = table.Find(word, reason)) return *column;
  const bool is_number = word.size() < 10 && word.find_first_not_of("0123456789") == word.npos;
  std::string ignored;
  const auto column = is_number ? table.Find(std::stoul(word), ignored) : std::nullopt;
  if (!column) throw UserError("--part-column {}: {}", word, reason);
  return *column;
}

std::string_view Trimmed(std::string_view text) {
  const std::size_t begin = text.find_first_not_of(" \t\r");
  if (begin == std::string_view::npos) return "";
  return text.substr(begin, text.find_last_not_of(" \t\r") + 1 - begin);
}

}  // namespace

/// Takes the rows behind the header, block by block, and notes where a part begins.
class PartRows::Scanner {
 public:
  Scanner(PartRows& parts, const std::string& file, const std::string& word, std::size_t column,
          char separator)
      : parts_(parts), file_(file), word_(word), column_(column), separator_(separator) {}

  void StartAt(std::uint64_t offset, std::uint64_t line) {
    at_ = row_ = offset;
    line_ = row_line_ = line;
  }

  void Take(std::string_view text) {
    std::size_t quote = 0;
    for (std::size_t i = 0; i < text.size();) {
      if (quote <= i) quote = std::min(text.find('"', i), text.size());
      const std::size_t line_end = at_ == row_ ? text.find('\n', i) : text.npos;
      if (line_end < quote) {
        TakeLine(text.substr(i, line_end - i));
        i = line_end + 1;
        continue;
      }
      if (state_ != State::kPlain || is_blank_) {
        Take(text[i++]);
        continue;
      }
      const std::size_t end = FindEither(text, i, separator_, '\n');
      Keep(text.substr(i, end - i));
      at_ += end - i;
      i = end;
      if (i < text.size()) Take(text[i++]);
    }
  }

  void EndRow() { EndRow(value_, is_blank_); }

 private:
  enum class State { kStart, kPlain, kQuoted, kQuote };

  /// A whole one without quotes.
  void TakeLine(std::string_view line) {
    at_ += line.size() + 1;
    ++line_;
    std::string_view value = line;
    for (std::size_t field = 0; field < column_; ++field) {
      value.remove_prefix(std::min(FindEither(value, 0, separator_, separator_) + 1, value.size()));
    }
    EndRow(value.substr(0, FindEither(value, 0, separator_, separator_)),
           line.find_first_not_of(" \r") == line.npos);
  }

  void EndRow(std::string_view value, bool is_blank) {
    const auto goes_on = [&] { return !parts_.names_.empty() && value == parts_.names_.back(); };
    if (!is_blank && !goes_on()) {
      value = Trimmed(value);
      if (value.empty()) {
        throw UserError("{}:{}: no value in column {}, which tells the parts apart", file_,
                        row_line_, Quoted(word_));
      }
      if (!goes_on()) BeginPart(std::string(value));
    }
    value_.clear();
    field_ = 0;
    state_ = State::kStart;
    is_blank_ = true;
    row_ = at_;
    row_line_ = line_;
  }

  void Take(char c) {
    ++at_;
    if (c == '\n') ++line_;
    if (c != '\n' && c != '\r' && c != ' ') is_blank_ = false;
    if (state_ == State::kStart && c == '"') {
      state_ = State::kQuoted;
    } else if (state_ == State::kQuoted) {
      c == '"' ? void(state_ = State::kQuote) : Keep(c);
    } else if (state_ == State::kQuote && c == '"') {
      state_ = State::kQuoted;
      Keep(c);
    } else if (c == separator_) {
      ++field_;
      state_ = State::kStart;
    } else if (c == '\n') {
      EndRow();
    } else {
      if (state_ == State::kStart) state_ = State::kPlain;
      Keep(c);
    }
  }

  void Keep(char c) {
    if (field_ == column_) value_ += c;
  }
  void Keep(std::string_view run) {
    if (field_ == column_) value_ += run;
  }

  void BeginPart(const std::string& name) {
    const auto [known, is_new] = known_.emplace(name, row_line_);
    if (!is_new) {
      throw UserError(
          "{}:{}: part {} comes again; it began in line {}, and a part's rows stand together",
          file_, row_line_, Quoted(name), known->second);
    }
    parts_.names_.push_back(name);
    parts_.begins_.push_back({row_, row_line_});
  }

  PartRows& parts_;
  const std::string& file_;
  const std::string& word_;
  std::size_t column_;
  char separator_;
  State state_ = State::kStart;
  std::size_t field_ = 0;
  std::string value_;
  bool is_blank_ = true;
  std::uint64_t at_ = 0;
  std::uint64_t line_ = 1;
  std::uint64_t row_ = 0;
  std::uint64_t row_line_ = 1;
  std::unordered_map<std::string, std::uint64_t> known_;
};

PartRows PartRows::Find(const std::string& file, const std::string& column, char decimal) {
  std::string reason;
  if (!IsReadable(file, reason)) throw UserError("cannot read {}: {}", file, reason);
  std::ifstream stream(PathFromUtf8(file), std::ios::binary);
  std::size_t begin = kByteOrderMark.size();
  std::string mark(begin, '\0');
  stream.read(mark.data(), static_cast<std::streamsize>(begin));
  if (mark != kByteOrderMark) begin = 0;
  stream.clear();
  stream.seekg(static_cast<std::streamoff>(begin));
  const std::string first = FirstLine(stream);
  const SourceText beginning(file, first + FirstLine(stream));
  ExpectReadWell(stream, file);
  const char separator = SeparatorOf(beginning.Text(), decimal);
  if (separator == ' ') {
    throw UserError("--part-column {}: blanks separate the fields of {}; write commas", column,
                    file);
  }
  Mistakes mistakes;
  const auto table = CsvTable::Read(SourceText(file, first), mistakes,
                                    {.decimal = decimal, .separator = separator});
  if (!table) throw UserError(mistakes.Listing()[0]);
  PartRows parts;
  parts.separator_ = separator;
  Scanner scanner(parts, file, column, ColumnOf(*table, column), separator);
  std::uint64_t line = 1;
  if (!table->Header().empty()) {
    parts.header_end_ = begin += first.size();
    line += static_cast<std::uint64_t>(std::ranges::count(first, '\n'));
  }
  scanner.StartAt(begin, line);
  stream.clear();
  stream.seekg(static_cast<std::streamoff>(begin));
  parts.end_ = begin;
  std::string block(kBlock, '\0');
  while (stream.read(block.data(), kBlock) || stream.gcount() > 0) {
    const auto size = static_cast<std::size_t>(stream.gcount());
    scanner.Take(std::string_view(block).substr(0, size));
    parts.end_ += size;
  }
  ExpectReadWell(stream, file);
  scanner.EndRow();
  if (parts.names_.empty()) throw UserError("{} holds no part: it has no rows", file);
  return parts;
}

RowsOfPart PartRows::Rows(std::size_t part) const {
  const bool is_last = part + 1 == begins_.size();
  return {header_end_, begins_[part].offset, is_last ? end_ : begins_[part + 1].offset,
          begins_[part].line, separator_};
}

std::optional<SourceText> ReadRows(const std::string& file, const RowsOfPart& rows,
                                   std::string& reason) {
  std::ifstream stream(PathFromUtf8(file), std::ios::binary);
  std::string text(rows.header_end + (rows.end - rows.begin), '\0');
  stream.read(text.data(), static_cast<std::streamsize>(rows.header_end));
  stream.seekg(static_cast<std::streamoff>(rows.begin));
  stream.read(text.data() + rows.header_end, static_cast<std::streamsize>(rows.end - rows.begin));
  if (!stream) {
    if (IsReadable(file, reason)) reason = "it cannot be read to its end";
    return std::nullopt;
  }
  const std::size_t size = text.size();
  SourceText source(file, std::move(text));
  const std::size_t mark = size - source.Text().size();  // a byte order mark was taken away
  source.MoveDown(std::max<std::size_t>(rows.header_end, mark) - mark, rows.line);
  return source;
}

}  // namespace nuvhost
