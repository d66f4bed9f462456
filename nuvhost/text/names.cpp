#include "nuvhost/text/names.h"

#include <algorithm>

#include "nuvhost/text/utf8.h"
#include "nuvhost/text/words.h"

namespace nuvhost {
namespace {

/// Edits from one text to another, with letters of either case alike (Levenshtein, 1966).
std::size_t EditDistance(std::string_view one, std::string_view other) {
  const std::string a = LowerCase(one);
  const std::string b = LowerCase(other);
  std::vector<std::size_t> row(b.size() + 1);
  for (std::size_t j = 0; j <= b.size(); ++j) row[j] = j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    std::size_t diagonal = row[0];
    row[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t replaced = diagonal + (a[i - 1] == b[j - 1] ? 0 : 1);
      diagonal = row[j];
      row[j] = std::min({row[j] + 1, row[j - 1] + 1, replaced});
    }
  }
  return row[b.size()];
}

}  // namespace

std::string OnOneLine(std::string_view text) {
  std::string line;
  for (const char c : text) {
    c == '\n' ? line += "\\n" : c == '\r' ? line += "\\r" : line += c;
  }
  return line;
}

std::string Quoted(std::string_view text) {
  return '"' + OnOneLine(text) + '"';
}

std::string_view TextOrEmpty(const char* text) {
  return text == nullptr ? "" : text;
}

std::string NameFromText(const char* text) {
  return std::string(WithoutTrailingBlanks(Utf8FromText(text)));
}

std::string_view WithoutTrailingBlanks(std::string_view name) {
  while (!name.empty() && name.back() == ' ') name.remove_suffix(1);
  return name;
}

std::string DidYouMean(std::string_view name, const std::vector<std::string_view>& candidates) {
  struct Near {
    std::size_t distance;
    std::string_view name;
  };
  constexpr std::size_t kLongest = 200;  // far beyond what a name is, mistyped or not
  if (name.size() > kLongest) return "";
  const std::size_t limit = std::max<std::size_t>(2, name.size() / 3);
  std::vector<Near> nearest;
  for (const std::string_view candidate : candidates) {
    const std::size_t distance = EditDistance(name, WithoutTrailingBlanks(candidate));
    const bool has_common = distance < std::max(name.size(), candidate.size());
    const auto same = [&](const Near& near) { return near.name == candidate; };
    if (distance <= limit && has_common && std::ranges::none_of(nearest, same)) {
      nearest.push_back({distance, candidate});
    }
  }
  if (nearest.empty()) return "";
  std::ranges::stable_sort(nearest, {}, &Near::distance);
  if (nearest.size() > 3) nearest.resize(3);
  std::string text = ", did you mean ";
  for (std::size_t i = 0; i < nearest.size(); ++i) {
    if (i > 0) text += i + 1 == nearest.size() ? " or " : ", ";
    text += Quoted(WithoutTrailingBlanks(nearest[i].name));
  }
  return text + "?";
}

}  // namespace nuvhost
