#include "reference_host/nuvhost/run/text_table.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "reference_host/nuvhost/json_value.h"

namespace nuvhost {
namespace {

constexpr std::size_t kShownElements = 4;

/// A text as it is, unless that would spoil the lines around it or not be seen.
std::string PlainText(std::string_view bytes) {
  const std::string text = Utf8FromBytes(bytes);
  const bool has_control = std::ranges::any_of(
      bytes, [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; });
  return text.empty() || has_control ? Dump(Json(text)) : text;
}

/// A title's words in lines that are as wide as the column below, or as the longest word.
std::vector<std::string> Wrapped(const std::string& title, std::size_t width) {
  std::vector<std::string> words{""};
  for (const char c : title) {
    if (c == ' ') {
      words.emplace_back();
    } else {
      words.back() += c;
    }
  }
  for (const std::string& word : words) width = std::max(width, Width(word));
  std::vector<std::string> lines{words[0]};
  for (std::size_t i = 1; i < words.size(); ++i) {
    if (Width(lines.back()) + 1 + Width(words[i]) <= width) {
      lines.back() += ' ' + words[i];
    } else {
      lines.push_back(words[i]);
    }
  }
  return lines;
}

template <class Vector, class ElementText>
std::string ArrayText(const CNuvObject& value, ElementText element_text) {
  const auto& array = static_cast<const Vector&>(*value.Get());
  std::string text = "[";
  for (std::size_t i = 0; i < std::min(array.Size(), kShownElements); ++i) {
    text += (i == 0 ? "" : ", ") + element_text(array[i]);
  }
  if (array.Size() <= kShownElements) return text + "]";
  return text + ", ...] " + std::to_string(array.Size()) + " elements";
}

}  // namespace

std::size_t Width(std::string_view utf8) {
  return static_cast<std::size_t>(std::ranges::count_if(
      utf8, [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

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

std::string NumberText(double number, std::optional<int> decimals) {
  const Json json = NumberToJson(number);
  if (json.is_string()) return json.get<std::string>();
  if (!decimals) return Dump(json);
  char digits[400];  // the largest number has 309 digits before the point
  const auto [end, error] = std::to_chars(std::begin(digits), std::end(digits), number,
                                          std::chars_format::fixed, *decimals);
  return {std::begin(digits), end};
}

std::string ValueText(const CNuvObject& value, std::optional<int> decimals) {
  const auto number = [&](double n) { return NumberText(n, decimals); };
  const auto point = [&](const CNuvPoint& p) {
    return "(" + number(p.x) + ", " + number(p.y) + ")";
  };
  const auto line = [&](const CNuvLine& l) { return "a " + number(l.a) + ", d " + number(l.d); };
  const auto boolean = [](bool b) { return std::string(b ? "yes" : "no"); };
  switch (value.GetType()) {
    case NUV_OBJ_BOOL: return boolean(static_cast<bool>(value));
    case NUV_OBJ_DOUBLE: return number(static_cast<double>(value));
    case NUV_OBJ_STRING: return PlainText(static_cast<const char*>(value));
    case NUV_OBJ_POINT: return point(static_cast<const CNuvPoint&>(*value.Get()));
    case NUV_OBJ_LINE: return line(static_cast<const CNuvLine&>(*value.Get()));
    case NUV_OBJ_BOOL_VECTOR: return ArrayText<CNuvBoolVector>(value, boolean);
    case NUV_OBJ_DOUBLE_VECTOR: return ArrayText<CNuvDoubleVector>(value, number);
    case NUV_OBJ_STRING_VECTOR:
      return ArrayText<CNuvStringVector>(
          value, [](const char* s) { return Dump(Json(Utf8FromBytes(s))); });
    case NUV_OBJ_POINT_VECTOR: return ArrayText<CNuvPointVector>(value, point);
    case NUV_OBJ_LINE_VECTOR:
      return ArrayText<CNuvLineVector>(value,
                                       [&](const CNuvLine& l) { return "(" + line(l) + ")"; });
    default: return Dump(ToJson(value));
  }
}

}  // namespace nuvhost
