#include "nuvhost/text/text_table.h"

#include <algorithm>

#include "nuvhost/text/utf8.h"
#include "nuvhost/text/words.h"

namespace nuvhost {
std::string Padded(std::string text, std::size_t width) {
  const std::size_t shown = Width(text);
  if (shown < width) text.append(width - shown, ' ');
  return text;
}

std::string TextTable::Text() const {
  std::vector<std::size_t> widths(alignment_.size(), 0);
  for (const std::vector<std::string>& row : rows_) {
    for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], Width(row[i]));
  }
  std::string text;
  if (!header_.empty()) {
    std::vector<std::vector<std::string>> titles;
    std::size_t height = 0;
    for (std::size_t i = 0; i < header_.size(); ++i) {
      titles.push_back(Wrapped(header_[i], widths[i]));
      height = std::max(height, titles[i].size());
      for (const std::string& line : titles[i]) widths[i] = std::max(widths[i], Width(line));
    }
    std::vector<std::string> rule;
    for (std::size_t width : widths) rule.emplace_back(width, '-');
    for (std::size_t line = height; line > 0; --line) {
      std::vector<std::string> cells;
      for (const std::vector<std::string>& title : titles) {
        cells.push_back(line > title.size() ? "" : title[title.size() - line]);
      }
      text += Line(widths, cells);
    }
    text += Line(widths, rule);
  }
  for (const std::vector<std::string>& row : rows_) text += Line(widths, row);
  return text;
}

std::string TextTable::Line(const std::vector<std::size_t>& widths,
                            const std::vector<std::string>& cells) const {
  std::string line;
  for (std::size_t i = 0; i < cells.size(); ++i) {
    if (widths[i] == 0) continue;
    const std::string padding(widths[i] - Width(cells[i]), ' ');
    line += "  " + (alignment_[i] == 'r' ? padding + cells[i] : cells[i] + padding);
  }
  line.resize(line.find_last_not_of(' ') + 1);
  return line + '\n';
}

}  // namespace nuvhost
