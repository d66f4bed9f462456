// UserError: what the user asked for cannot be done, in words that name the way out.
#pragma once

#include <stdexcept>

namespace nuvhost {

/// Ends a command with exit code 2, its text on standard error.
struct UserError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

}  // namespace nuvhost
