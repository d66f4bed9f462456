// Comparing and measuring texts. Letters and blanks are those of the C locale, whatever the
// process has set; a byte from 128 on is neither.

#include <algorithm>

#include "plugin/instruction.h"

namespace formula {
namespace {

char Lowered(char character) {
  const bool is_capital = character >= 'A' && character <= 'Z';
  return is_capital ? static_cast<char>(character + ('a' - 'A')) : character;
}

bool IsBlank(char character) {
  return character == ' ' || (character >= '\t' && character <= '\r');
}

/// Kept: unlike the exact comparison this one goes by signed characters, and the end of a text
/// counts as the character 0, behind those from 128 on; sorted lists of saved programs rest on it.
int CompareLowered(std::string_view a, std::string_view b) {
  const auto [in_a, in_b] = std::mismatch(a.begin(), a.end(), b.begin(), b.end(),
                                          [](char c, char d) { return Lowered(c) == Lowered(d); });
  const auto left = static_cast<signed char>(in_a == a.end() ? '\0' : Lowered(*in_a));
  const auto right = static_cast<signed char>(in_b == b.end() ? '\0' : Lowered(*in_b));
  return (left > right) - (left < right);
}

}  // namespace

struct CCompStr final : Instruction<CCompStr> {
  static constexpr Definition kDefinition{
      .category = "String",
      .name = "CompStr",
      .identifier = "_Nuv_String_CCompStr_",
      .help = 460148,
      .description =
          "Returns -1 if the first string is less than the second string, 0 if they "
          "are equal, 1 if it is greater. The comparison is case sensitive by default.",
      .inputs = {Text("string1"), Text("string2"), Boolean("case sensitive", true)},
      .results = {Number("result")},
  };
  static Status Run(Call& call, std::string_view a, std::string_view b, bool case_sensitive) {
    const int order = case_sensitive ? a.compare(b) : CompareLowered(a, b);
    return call.Set(0, (order > 0) - (order < 0));
  }
};

struct CLenStr final : Instruction<CLenStr> {
  static constexpr Definition kDefinition{
      .category = "String",
      .name = "LenStr",
      .identifier = "_Nuv_String_CLenStr_",
      .help = 460159,
      .description = "Returns the length of the string (in characters).",
      .inputs = {Text("string")},
      .results = {Number("length")},
  };
  static Status Run(Call& call, std::string_view text) {
    return call.Set(0, static_cast<double>(text.size()));
  }
};

/// A word is what stands between blanks; without one all three are 0. Kept: the identifier has
/// the class's name and not the one shown; saved programs find the instruction by it.
struct CWordLengthStr final : Instruction<CWordLengthStr> {
  static constexpr Definition kDefinition{
      .category = "String",
      .name = "GetWordLength",
      .identifier = "_Nuv_String_CWordLengthStr_",
      .help = 460244,
      .description = "Get length, in characters, of the smallest and largest words in string",
      .inputs = {Text("string")},
      .results = {Number("min word length"), Number("max word length"), Number("word count")},
  };
  static Status Run(Call& call, std::string_view text) {
    std::ptrdiff_t shortest = 0;
    std::ptrdiff_t longest = 0;
    std::ptrdiff_t count = 0;
    for (auto at = text.begin();;) {
      const auto start = std::find_if_not(at, text.end(), IsBlank);
      if (start == text.end()) break;
      at = std::find_if(start, text.end(), IsBlank);
      const std::ptrdiff_t length = at - start;
      shortest = count == 0 ? length : std::min(shortest, length);
      longest = std::max(longest, length);
      ++count;
    }
    call.Set(0, static_cast<double>(shortest));
    call.Set(1, static_cast<double>(longest));
    return call.Set(2, static_cast<double>(count));
  }
};

template struct Instructions<CCompStr, CLenStr, CWordLengthStr>;

}  // namespace formula
