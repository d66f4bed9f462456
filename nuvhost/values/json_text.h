// JSON as a text: its tokens, and whether it keeps within what is read of it.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace nuvhost {

/// What a text may hold; more is refused with a message that names the limit.
inline constexpr std::size_t kMostNesting = 200;   ///< lists and objects within each other
inline constexpr std::size_t kMostMembers = 4000;  ///< of one object
inline constexpr std::size_t kLongestName = 1000;  ///< of a member, in bytes

inline constexpr std::string_view kBrackets = "[]{}";

/// One token of a text that need not be JSON: a bracket, a text, or a run of anything else. It is
/// empty at the end.
struct Token {
  std::size_t begin;
  std::size_t end;
};

/// The token at or behind `offset`; commas and colons are between tokens.
Token NextToken(std::string_view text, std::size_t offset);
/// Whether a word or a number ends at the character.
bool EndsWord(char character);

/// What goes beyond a limit, and where.
struct Excess {
  std::size_t offset;
  std::string what;  ///< "nested over 200 deep"
};
std::optional<Excess> FindExcess(std::string_view text);

}  // namespace nuvhost
