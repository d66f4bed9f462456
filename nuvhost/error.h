// What ends a command, and how: the errors and the exit codes.
#pragma once

#include <stdexcept>

namespace nuvhost {

inline constexpr int kExitSuccess = 0;
inline constexpr int kExitFailed = 1;  ///< what was asked to be run or judged failed
inline constexpr int kExitWrongCall = 2;

/// What the user asked for cannot be done, in words that name the way out. Ends a command with
/// kExitWrongCall, its text on standard error.
struct UserError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// What is wrong with a value, in words: "expected a number, found a text".
struct ValueError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

}  // namespace nuvhost
