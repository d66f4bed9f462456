// Console: what nuvhost prints, on standard output and standard error.
//
// Whatever a text holds, what comes out is UTF-8: a byte that is none, as names on a command line
// may have them, is shown as the character U+0080 to U+00FF of its number.
#pragma once

#include <string>
#include <string_view>

namespace nuvhost {

/// Prints on standard output.
void Print(std::string_view text);
/// Prints on standard error.
void Complain(std::string_view text);
/// Throws UserError, once, where anything printed on standard output did not arrive there.
void FlushOutput();

/// Sees to it that no file that is opened takes the place of a standard stream that is closed.
void HoldStandardStreams();

}  // namespace nuvhost
