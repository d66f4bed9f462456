#include "nuvhost/values/json_text.h"

#include <algorithm>
#include <vector>

namespace nuvhost {
namespace {

constexpr std::string_view kSpaces = " \t\r\n,:";
constexpr std::string_view kNoWord = " \t\r\n,:[]{}\"";

}  // namespace

Token NextToken(std::string_view text, std::size_t offset) {
  const std::size_t begin = text.find_first_not_of(kSpaces, offset);
  if (begin == std::string_view::npos) return {text.size(), text.size()};
  std::size_t end = begin + 1;
  if (text[begin] == '"') {
    while (end < text.size() && text[end] != '"') end += text[end] == '\\' ? 2 : 1;
    end = std::min(end + 1, text.size());
  } else if (kBrackets.find(text[begin]) == std::string_view::npos) {
    end = std::min(text.find_first_of(kNoWord, end), text.size());
  }
  return {begin, end};
}

bool EndsWord(char character) {
  return kNoWord.find(character) != std::string_view::npos;
}

std::optional<Excess> FindExcess(std::string_view text) {
  struct Level {
    bool is_object;
    std::size_t parts = 0;  // names and values
  };
  std::vector<Level> levels;
  for (Token token = NextToken(text, 0); token.begin < text.size();
       token = NextToken(text, token.end)) {
    const char first = text[token.begin];
    if (first == ']' || first == '}') {
      if (!levels.empty()) levels.pop_back();
      continue;
    }
    if (!levels.empty() && levels.back().is_object && ++levels.back().parts % 2 == 1) {
      if (levels.back().parts / 2 == kMostMembers) {
        return Excess{token.begin,
                      "an object with more than " + std::to_string(kMostMembers) + " members"};
      }
      if (token.end - token.begin > kLongestName + 2) {  // and its quotes
        return Excess{token.begin, "a name longer than " + std::to_string(kLongestName) + " bytes"};
      }
    }
    if (first != '[' && first != '{') continue;
    if (levels.size() == kMostNesting) {
      return Excess{token.begin, "nested over " + std::to_string(kMostNesting) + " deep"};
    }
    levels.push_back({first == '{'});
  }
  return std::nullopt;
}

}  // namespace nuvhost
