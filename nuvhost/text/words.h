// Words of running text: broken into lines, and compared without regard to case.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace nuvhost {

/// A text's words in lines of at most a width, or as wide as the longest word; one line at least.
std::vector<std::string> Wrapped(std::string_view text, std::size_t width);

/// A text with the letters A to Z as small ones.
std::string LowerCase(std::string_view text);

}  // namespace nuvhost
