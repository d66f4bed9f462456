// PlainText: an entry's Markdown for the terminal.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace nuvhost {

/// The first paragraph in one line, without marks.
std::string PlainParagraph(std::string_view markdown);

/// Paragraphs and lists broken into lines of a width; tables with aligned columns, or where they
/// are wider, their rows one below the other; code as it is. Each line is behind two blanks.
std::string PlainText(std::string_view markdown, std::size_t width);

}  // namespace nuvhost
