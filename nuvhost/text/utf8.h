// UTF-8, and the 8-bit texts that descriptors and values hold, in which each byte is a character
// U+0000 to U+00FF.
#pragma once

#include <string>
#include <string_view>

namespace nuvhost {

/// The bytes of a text with one character up to U+00FF a byte; throws ValueError for others.
std::string BytesFromUtf8(std::string_view utf8);
std::string Utf8FromBytes(std::string_view bytes);
/// The same of a text that a descriptor holds; empty for a null pointer.
std::string Utf8FromText(const char* text);

/// Whether a byte of UTF-8 is the first of a character.
constexpr bool BeginsCharacter(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0) != 0x80;
}
/// How many characters a text has.
std::size_t Width(std::string_view utf8);
/// A text with each byte that is no UTF-8 as a character.
std::string ValidUtf8(std::string_view text);

}  // namespace nuvhost
