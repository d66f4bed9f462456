// The words that nuvhost is called by.
#pragma once

#include <string>
#include <vector>

namespace nuvhost {

/// Does what the words, in UTF-8 and without the program's own, ask for. Returns the exit code;
/// throws UserError where they are wrong or what they ask for cannot be done.
int RunCommandLine(const std::vector<std::string>& words);

}  // namespace nuvhost
