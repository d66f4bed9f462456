// What ends a command, and how: the errors and the exit codes.
#pragma once

#include <fmt/format.h>

#include <stdexcept>

namespace nuvhost {

inline constexpr int kExitSuccess = 0;
inline constexpr int kExitFailed = 1;  ///< what was asked to be run or judged failed
inline constexpr int kExitWrongCall = 2;
inline constexpr int kExitInterrupted = 130;  ///< by Ctrl-C, as shells have it

/// An error in words, whose places in braces are filled as fmt::format does.
struct ErrorText : std::runtime_error {
  using std::runtime_error::runtime_error;
  template <class First, class... Rest>
  explicit ErrorText(fmt::format_string<First, Rest...> text, First&& first, Rest&&... rest)
      : std::runtime_error(
            fmt::format(text, std::forward<First>(first), std::forward<Rest>(rest)...)) {}
};

/// What the user asked for cannot be done, in words that name the way out. Ends a command with
/// kExitWrongCall, its text on standard error.
struct UserError : ErrorText {
  using ErrorText::ErrorText;
};

/// What is wrong with a value, in words: "expected a number, found a text".
struct ValueError : ErrorText {
  using ErrorText::ErrorText;
};

}  // namespace nuvhost
