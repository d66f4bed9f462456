#include "nuvhost/reference/plain_text.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "nuvhost/text/text_table.h"
#include "nuvhost/text/utf8.h"
#include "nuvhost/text/words.h"

namespace nuvhost {
namespace {

using Lines = std::vector<std::string_view>;

std::string_view Trimmed(std::string_view text) {
  const std::size_t begin = text.find_first_not_of(' ');
  if (begin == std::string_view::npos) return "";
  return text.substr(begin, text.find_last_not_of(' ') + 1 - begin);
}

bool IsTableRow(std::string_view line) {
  return line.starts_with('|');
}

bool IsFence(std::string_view line) {
  return Trimmed(line).starts_with("```");
}

/// How long the mark of a list's item is, "- " or "1. "; 0 for other lines.
std::size_t ItemMark(std::string_view line) {
  const std::size_t digits = std::min(line.find_first_not_of("0123456789"), line.size());
  if (digits > 0 && line.substr(digits).starts_with(". ")) return digits + 2;
  return line.starts_with("- ") || line.starts_with("* ") ? 2 : 0;
}

/// The blocks of a text: runs of lines, all of a table or none, and code with its fences.
std::vector<Lines> BlocksOf(std::string_view markdown) {
  std::vector<Lines> blocks(1);
  bool in_code = false;
  while (!markdown.empty()) {
    const std::size_t end = std::min(markdown.find('\n'), markdown.size());
    const std::string_view line = markdown.substr(0, end);
    markdown.remove_prefix(std::min(end + 1, markdown.size()));
    const bool is_empty = Trimmed(line).empty();
    Lines& block = blocks.back();
    if (!in_code && !block.empty() && (is_empty || IsTableRow(line) != IsTableRow(block.back()))) {
      blocks.emplace_back();
    }
    if (!is_empty || in_code) blocks.back().push_back(line);
    if (IsFence(line)) in_code = !in_code;
  }
  std::erase_if(blocks, [](const Lines& block) { return block.empty(); });
  return blocks;
}

bool IsWordSign(char c) {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

/// Whether the asterisk at a position is a mark, and no sign of multiplication.
bool IsMark(std::string_view text, std::size_t at) {
  const char before = at == 0 ? ' ' : text[at - 1];
  const char after = at + 1 == text.size() ? ' ' : text[at + 1];
  return (after != ' ' && !IsWordSign(before)) || (before != ' ' && !IsWordSign(after));
}

/// A line's text without its marks: of "*a* of `b`, [c](d.md)" it is "a of b, c".
std::string WithoutMarks(std::string_view text) {
  std::string plain;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const std::string_view rest = text.substr(i);
    if (rest.starts_with('`')) {
      const std::size_t ticks = rest.find_first_not_of('`');
      const std::size_t end = rest.find(rest.substr(0, ticks), ticks);
      if (end != std::string_view::npos && ticks != std::string_view::npos) {
        plain += Trimmed(rest.substr(ticks, end - ticks));
        i += end + ticks - 1;
        continue;
      }
    } else if (rest.starts_with('\\') && rest.size() > 1 &&
               std::string_view("*_`\\[]|\"").find(rest[1]) != std::string_view::npos) {
      plain += rest[1];
      ++i;
      continue;
    } else if (rest.starts_with('*') && IsMark(text, i)) {
      continue;
    } else if (rest.starts_with('[')) {
      const std::size_t middle = rest.find("](");
      const std::size_t end = middle == std::string_view::npos ? middle : rest.find(')', middle);
      if (end != std::string_view::npos && rest.substr(1, middle).find('[') > middle) {
        plain += WithoutMarks(rest.substr(1, middle - 1));
        i += end;
        continue;
      }
    }
    plain += rest[0];
  }
  return plain;
}

std::string Joined(const Lines& lines) {
  std::string text;
  for (const std::string_view line : lines) {
    if (!text.empty()) text += ' ';
    text += Trimmed(line);
  }
  return text;
}

std::string ParagraphText(const Lines& lines, std::size_t mark, std::size_t width) {
  std::string text = Joined(lines);
  const std::string indent(2 + mark, ' ');
  std::string shown;
  for (const std::string& line : Wrapped(WithoutMarks(text.substr(mark)), width - indent.size())) {
    shown += indent + line + '\n';
  }
  return shown.replace(2, mark, text, 0, mark);
}

/// A paragraph, or the items of a list, which may go on in lines of their own.
std::string ParagraphsText(const Lines& lines, std::size_t width) {
  if (ItemMark(Trimmed(lines[0])) == 0) return ParagraphText(lines, 0, width);
  std::string shown;
  Lines item;
  const auto close = [&] {
    if (!item.empty()) shown += ParagraphText(item, ItemMark(Trimmed(item[0])), width);
    item.clear();
  };
  for (const std::string_view line : lines) {
    if (ItemMark(Trimmed(line)) > 0) close();
    item.push_back(line);
  }
  close();
  return shown;
}

/// The cells of a table's row "| a | b |"; "\\|" is a bar in a cell.
std::vector<std::string> CellsOf(std::string_view row) {
  std::vector<std::string> cells;
  std::size_t begin = 1;
  for (std::size_t i = 1; i < row.size(); ++i) {
    if (row[i] != '|' || row[i - 1] == '\\') continue;
    cells.emplace_back(Trimmed(row.substr(begin, i - begin)));
    begin = i + 1;
  }
  return cells;
}

std::size_t WidthOf(const std::string& lines) {
  std::size_t width = 0;
  for (std::size_t begin = 0; begin < lines.size();) {
    const std::size_t end = std::min(lines.find('\n', begin), lines.size());
    width = std::max(width, Width(std::string_view(lines).substr(begin, end - begin)));
    begin = end + 1;
  }
  return width;
}

using Rows = std::vector<std::vector<std::string>>;

/// A table's rows one below the other: each cell that is not empty behind its column's title.
std::string RecordsText(const Rows& rows, std::size_t width) {
  std::size_t title_width = 0;
  for (const std::string& title : rows[0]) title_width = std::max(title_width, Width(title));
  const std::size_t left = std::min(title_width + 4, width);
  std::string text;
  for (std::size_t i = 1; i < rows.size(); ++i) {
    if (i > 1) text += '\n';
    for (std::size_t column = 0; column < rows[i].size(); ++column) {
      if (rows[i][column].empty()) continue;
      std::string head = "  " + Padded(rows[0][column], title_width) + "  ";
      for (const std::string& line : Wrapped(rows[i][column], width - left)) {
        text += head + line + '\n';
        head.assign(left, ' ');
      }
    }
  }
  return text;
}

/// Aligned columns. Cells of one of them are broken into lines of a width.
std::string ColumnsText(const Rows& rows, std::size_t column, std::size_t width) {
  TextTable table(std::string(rows[0].size(), 'l'));
  table.SetHeader(rows[0]);
  for (std::size_t i = 1; i < rows.size(); ++i) {
    std::vector<std::string> row = rows[i];
    for (const std::string& line : Wrapped(rows[i][column], width)) {
      row[column] = line;
      table.Add(row);
      std::ranges::fill(row, "");
    }
  }
  return table.Text();
}

/// The columns as they are where they fit into the width, else with the widest one's cells broken
/// into lines, else rows one below the other.
std::string TableText(const Lines& lines, std::size_t width) {
  Rows rows;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (i == 1) continue;  // the rule below the titles
    rows.push_back(CellsOf(lines[i]));
    rows.back().resize(rows[0].size());
    // A text in quotes is a value, in which no sign is a mark.
    for (std::string& cell : rows.back()) {
      if (cell.starts_with('`') || cell.find('"') == std::string::npos) cell = WithoutMarks(cell);
    }
  }
  if (rows[0].empty()) return "";
  std::vector<std::size_t> widths(rows[0].size(), 0);
  for (std::size_t i = 1; i < rows.size(); ++i) {
    for (std::size_t column = 0; column < widths.size(); ++column) {
      widths[column] = std::max(widths[column], Width(rows[i][column]));
    }
  }
  const auto widest = std::ranges::max_element(widths);
  const auto column = static_cast<std::size_t>(widest - widths.begin());
  constexpr std::size_t kNarrowest = 24;
  std::string text = ColumnsText(rows, column, *widest);
  const std::size_t excess = WidthOf(text) - std::min(WidthOf(text), width);
  if (excess > 0 && *widest >= excess + kNarrowest) {
    text = ColumnsText(rows, column, *widest - excess);
  }
  return WidthOf(text) <= width ? text : RecordsText(rows, width);
}

std::string BlockText(const Lines& lines, std::size_t width) {
  if (IsTableRow(lines[0]) && lines.size() > 1) return TableText(lines, width);
  if (IsFence(lines[0])) {
    std::string shown;
    for (std::size_t i = 1; i + 1 < lines.size(); ++i) {
      shown += lines[i].empty() ? "\n" : "    " + std::string(lines[i]) + '\n';
    }
    return shown;
  }
  if (lines[0].starts_with('#')) {
    const std::size_t begin = std::min(lines[0].find_first_not_of('#'), lines[0].size());
    return "  " + WithoutMarks(Trimmed(lines[0].substr(begin))) + '\n';
  }
  return ParagraphsText(lines, width);
}

}  // namespace

std::string PlainParagraph(std::string_view markdown) {
  const std::vector<Lines> blocks = BlocksOf(markdown);
  return blocks.empty() ? "" : WithoutMarks(Joined(blocks[0]));
}

std::string PlainText(std::string_view markdown, std::size_t width) {
  std::string shown;
  for (const Lines& lines : BlocksOf(markdown)) {
    if (lines[0].starts_with("![")) continue;  // a picture
    if (!shown.empty()) shown += '\n';
    shown += BlockText(lines, width);
  }
  return shown;
}

}  // namespace nuvhost
