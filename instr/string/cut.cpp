// Copies of a text and of its parts. A negative position or count leaves the result as it was.

#include <algorithm>

#include "plugin/instruction.h"

namespace formula {
namespace {

/// `count` characters from `start`, or as many as there are; none for a start behind the end or a
/// negative count.
std::string_view Middle(std::string_view text, std::size_t start, std::int64_t count) {
  if (start > text.size() || count < 0) return {};
  return text.substr(start, static_cast<std::size_t>(count));
}

}  // namespace

struct CCopyStr final : Instruction<CCopyStr> {
  static constexpr Definition kDefinition{
      .category = "String",
      .name = "CopyStr",
      .identifier = "_Nuv_String_CCopyStr_",
      .help = 460149,
      .description = "Returns a copy of the input string.",
      .inputs = {Text("string")},
      .results = {Text("string copy")},
  };
  static Status Run(Call& call, const char* text) { return call.Set(0, text); }
};

/// Kept, here and in the next two: the count and the result bear one name, by which saved
/// programs refer to either.
struct CLeftStr final : Instruction<CLeftStr> {
  static constexpr Definition kDefinition{
      .category = "String",
      .name = "LeftStr",
      .identifier = "_Nuv_String_CLeftStr_",
      .help = 460150,
      .description =
          "Returns a new string consisting of the n leftmost chars of the argument "
          "string.",
      .inputs = {Text("string"), Number("left n", 0.0)},
      .results = {Text("left n")},
  };
  static Status Run(Call& call, std::string_view text, Truncated count) {
    if (count < 0) return Status::kSuccess;
    return call.Set(0, Middle(text, 0, count));
  }
};

struct CRightStr final : Instruction<CRightStr> {
  static constexpr Definition kDefinition{
      .category = "String",
      .name = "RightStr",
      .identifier = "_Nuv_String_CRightStr_",
      .help = 460151,
      .description =
          "Returns a new string consisting of the n rightmost chars of the argument "
          "string.",
      .inputs = {Text("string"), Number("right n", 0.0)},
      .results = {Text("right n")},
  };
  static Status Run(Call& call, std::string_view text, Truncated count) {
    if (count < 0) return Status::kSuccess;
    return call.Set(0, text.substr(text.size() - std::min<std::size_t>(count, text.size())));
  }
};

struct CMidStr final : Instruction<CMidStr> {
  static constexpr Definition kDefinition{
      .category = "String",
      .name = "MidStr",
      .identifier = "_Nuv_String_CMidStr_",
      .help = 460152,
      .description =
          "Returns a new string consisting of the middle n characters of the argument "
          "string, starting at position p.",
      .inputs = {Text("string"), Number("start pos", 0.0), Number("mid n", 0.0)},
      .results = {Text("mid n")},
  };
  static Status Run(Call& call, std::string_view text, Truncated start, Truncated count) {
    if (start < 0 || count < 0) return Status::kSuccess;
    return call.Set(0, Middle(text, start, count));
  }
};

struct CTrimStr final : Instruction<CTrimStr> {
  static constexpr Definition kDefinition{
      .category = "String",
      .name = "TrimStr",
      .identifier = "_Nuv_String_CTrimStr_",
      .help = 460153,
      .description =
          "Return a new string obtained by eliminating m leading and n trailing "
          "characters from the argument string.",
      .inputs = {Text("string"), Number("leading m", 0.0), Number("trailing n", 0.0)},
      .results = {Text("trimmed")},
  };
  static Status Run(Call& call, std::string_view text, Truncated leading, Truncated trailing) {
    if (leading < 0 || trailing < 0) return Status::kSuccess;
    const auto length = static_cast<std::int64_t>(text.size());
    return call.Set(0, Middle(text, leading, length - trailing - leading));
  }
};

template struct Instructions<CCopyStr, CLeftStr, CRightStr, CMidStr, CTrimStr>;

}  // namespace formula
