// The texts of error codes, by the system where it has them.
#pragma once

#include <cstdint>
#include <string>

/// The text of a Win32 error code, in one line; empty for a code that has none. On Windows it is
/// the system's, in the user's language.
std::string ErrorText(std::uint32_t code);
