#include "nuvhost/text/words.h"

#include <algorithm>

#include "nuvhost/text/utf8.h"

namespace nuvhost {

std::vector<std::string> Wrapped(std::string_view text, std::size_t width) {
  std::vector<std::string> words{""};
  for (const char c : text) {
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

std::string LowerCase(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return lower;
}

}  // namespace nuvhost
