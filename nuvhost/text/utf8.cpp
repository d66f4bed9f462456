#include "nuvhost/text/utf8.h"

#include "nuvhost/error.h"

namespace nuvhost {

std::string BytesFromUtf8(std::string_view utf8) {
  std::string bytes;
  bytes.reserve(utf8.size());
  for (std::size_t i = 0; i < utf8.size(); ++i) {
    const auto lead = static_cast<unsigned char>(utf8[i]);
    if (lead < 0x80) {
      bytes += utf8[i];
    } else if ((lead == 0xC2 || lead == 0xC3) && i + 1 < utf8.size() &&
               (static_cast<unsigned char>(utf8[i + 1]) & 0xC0) == 0x80) {
      bytes += static_cast<char>((lead << 6) | (static_cast<unsigned char>(utf8[++i]) & 0x3F));
    } else {
      throw ValueError("a text holds one byte a character: a character above U+00FF at byte " +
                       std::to_string(i));
    }
  }
  return bytes;
}

std::string Utf8FromBytes(std::string_view bytes) {
  std::string utf8;
  utf8.reserve(bytes.size());
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x80) {
      utf8 += c;
    } else {
      utf8 += static_cast<char>(0xC0 | (byte >> 6));
      utf8 += static_cast<char>(0x80 | (byte & 0x3F));
    }
  }
  return utf8;
}

std::string Utf8FromText(const char* text) {
  return text == nullptr ? "" : Utf8FromBytes(text);
}

std::optional<char32_t> NextCharacter(std::string_view utf8, std::size_t& position) {
  const auto lead = static_cast<unsigned char>(utf8[position++]);
  if (lead < 0x80) return lead;
  const int following = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
  if (lead < 0xC0 || lead > 0xF7) return std::nullopt;
  auto character = static_cast<char32_t>(lead & (0x3F >> following));
  for (int i = 0; i < following; ++i) {
    if (position == utf8.size()) return std::nullopt;
    const auto byte = static_cast<unsigned char>(utf8[position++]);
    if ((byte & 0xC0) != 0x80) return std::nullopt;
    character = character << 6 | (byte & 0x3F);
  }
  constexpr char32_t kLeast[] = {0, 0x80, 0x800, 0x10000};
  const bool is_surrogate = character >= 0xD800 && character <= 0xDFFF;
  if (character < kLeast[following] || character > 0x10FFFF || is_surrogate) return std::nullopt;
  return character;
}

std::string ValidUtf8(std::string_view text) {
  std::string valid;
  for (std::size_t position = 0; position < text.size();) {
    const std::size_t begin = position;
    if (NextCharacter(text, position)) {
      valid += text.substr(begin, position - begin);
    } else {
      valid += Utf8FromBytes(text.substr(begin, 1));
      position = begin + 1;
    }
  }
  return valid;
}

}  // namespace nuvhost
