// Names as people write them: quoted, without the blanks at their ends, and the nearest of those
// that exist.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace nuvhost {

/// A text whose line ends are written as they are in JSON.
std::string OnOneLine(std::string_view text);

/// A text in double quotes, on one line.
std::string Quoted(std::string_view text);

/// A text that may be a null pointer, as descriptors have them.
std::string_view TextOrEmpty(const char* text);

/// A descriptor's name as it is written: in UTF-8, without the blanks at its end.
std::string NameFromText(const char* text);

/// A name without the blanks at its end, which may be left out wherever a name is written.
std::string_view WithoutTrailingBlanks(std::string_view name);

/// The candidates nearest to a misspelt name, best first, three at most; ", did you mean ...?" or
/// nothing where none is near.
std::string DidYouMean(std::string_view name, const std::vector<std::string_view>& candidates);

}  // namespace nuvhost
