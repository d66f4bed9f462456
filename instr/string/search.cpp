// Searching texts and replacing what is found. All of it is case sensitive.

#include <algorithm>
#include <string_view>
#include <vector>

#include "algorithm/text_search.h"
#include "instr/string/text_room.h"
#include "plugin/instruction.h"

namespace formula {
namespace {

/// A position as a result; -1 for none.
double Position(std::size_t position) {
  return position == TextSearch::kNone ? -1.0 : static_cast<double>(position);
}

}  // namespace

/// An empty text is found at 0.
struct CFindStr final : Instruction<CFindStr> {
  static constexpr Definition kDefinition{
      .category = "String",
      .name = "FindStr",
      .identifier = "_Nuv_String_CFindStr_",
      .help = 460155,
      .description =
          "Searches the what string in the source string and returns the position of "
          "the first occurence if any or -1 if not found. Case sensitive.",
      .inputs = {Text("src"), Text("what")},
      .results = {Number("pos found")},
  };
  static Status Run(Call& call, std::string_view text, std::string_view what) {
    return call.Set(0, Position(TextSearch(text, what).Next(0)));
  }
};

/// An empty text is found at the end.
struct CFindStrReverse final : Instruction<CFindStrReverse> {
  static constexpr Definition kDefinition{
      .category = "String",
      .name = "FindStrReverse",
      .identifier = "_Nuv_String_CFindStrReverse_",
      .help = 460268,
      .description =
          "Returns the position of 'what' found in a reverse search of 'src', or -1 if "
          "not found. Case sensitive.",
      .inputs = {Text("src", "String to search"), Text("what", "Find this string")},
      .results = {Number("pos found")},
  };
  static Status Run(Call& call, std::string_view text, std::string_view what) {
    return call.Set(0, Position(TextSearch(text, what).Last()));
  }
};

/// Occurrences do not overlap. Kept: one that ends where the text ends counts for nothing, not
/// even as the first; saved programs number their occurrences by it.
struct CFindStrNth final : Instruction<CFindStrNth> {
  static constexpr Definition kDefinition{
      .category = "String",
      .name = "FindStrNth",
      .identifier = "_Nuv_String_CFindStrNth_",
      .help = 460269,
      .description =
          "Returns the position of the Nth occurrence of 'what' in a forward search of "
          "'src' or, -1 if not found. Case sensitive.",
      .inputs = {Text("src", "String to search"), Text("what", "Find this string"),
                 Number("Nth", 1.0, "Find this occurrence of 'what' in 'src'")},
      .results = {Number("pos found")},
  };
  static Status Run(Call& call, std::string_view text, std::string_view what, Truncated nth) {
    return call.Set(0, Position(Find(text, what, std::max(nth.value, 1))));
  }

 private:
  static std::size_t Find(std::string_view text, std::string_view what, std::int32_t nth) {
    if (what.empty()) return TextSearch::kNone;
    TextSearch search(text, what);
    std::size_t from = 0;
    for (std::int32_t count = 0;;) {
      const std::size_t found = search.Next(from);
      if (found == TextSearch::kNone) return found;
      from = found + what.size();
      if (from >= text.size()) return TextSearch::kNone;
      if (++count == nth) return found;
    }
  }
};

/// What was put in is not searched again; an empty text is replaced nowhere.
struct CReplaceStr final : Instruction<CReplaceStr> {
  static constexpr Definition kDefinition{
      .category = "String",
      .name = "ReplaceStr",
      .identifier = "_Nuv_String_CReplaceStr_",
      .help = 460156,
      .description =
          "Replaces all the occurences of the what string found in the specified string "
          "with the replacement string. Case sensitive.",
      .inputs = {Text("source"), Text("what"), Text("replacement")},
      .results = {Text("replaced")},
  };
  static Status Run(Call& call, std::string_view source, std::string_view what,
                    std::string_view replacement) {
    if (what.empty()) return call.Set(0, source);

    const std::vector<std::size_t> places = Places(source, what);
    const std::size_t length =
        source.size() - places.size() * what.size() + places.size() * replacement.size();
    std::string replaced = TextWithRoom(length);
    replaced.resize(length);
    char* to = replaced.data();  // for thousands of pieces faster than appending
    const auto put = [&to](std::string_view piece) {
      to = std::copy(piece.begin(), piece.end(), to);
    };
    std::size_t from = 0;
    for (const std::size_t place : places) {
      put(source.substr(from, place - from));
      put(replacement);
      from = place + what.size();
    }
    put(source.substr(from));
    return call.Set(0, replaced);
  }

 private:
  static std::vector<std::size_t> Places(std::string_view text, std::string_view what) {
    TextSearch search(text, what);
    std::vector<std::size_t> places;
    for (std::size_t found = search.Next(0); found != TextSearch::kNone;
         found = search.Next(found + what.size())) {
      places.push_back(found);
    }
    return places;
  }
};

template struct Instructions<CFindStr, CFindStrReverse, CFindStrNth, CReplaceStr>;

}  // namespace formula
