#include "nuvhost/text/utf8.h"

#include <utf8cpp/utf8.h>

#include <algorithm>

#include "nuvhost/error.h"

namespace nuvhost {

std::string BytesFromUtf8(std::string_view utf8) {
  std::string bytes;
  bytes.reserve(utf8.size());
  const auto* const valid_end = utf8::find_invalid(utf8.begin(), utf8.end());
  const auto* at = utf8.begin();
  while (at != valid_end) {
    const auto* next = at;
    const char32_t character = utf8::unchecked::next(next);
    if (character > 0xFF) break;
    bytes += static_cast<char>(character);
    at = next;
  }
  if (at == utf8.end()) return bytes;
  throw ValueError("a text holds one byte a character: a character above U+00FF at byte " +
                   std::to_string(at - utf8.begin()));
}

std::string Utf8FromBytes(std::string_view bytes) {
  std::string text;
  text.reserve(bytes.size());
  for (const char c : bytes) utf8::append(static_cast<unsigned char>(c), text);
  return text;
}

std::string Utf8FromText(const char* text) {
  return text == nullptr ? "" : Utf8FromBytes(text);
}

std::size_t Width(std::string_view utf8) {
  return static_cast<std::size_t>(std::ranges::count_if(utf8, BeginsCharacter));
}

std::string ValidUtf8(std::string_view text) {
  std::string valid;
  while (true) {
    const std::size_t good = utf8::find_invalid(text.begin(), text.end()) - text.begin();
    valid += text.substr(0, good);
    if (good == text.size()) return valid;
    valid += Utf8FromBytes(text.substr(good, 1));
    text.remove_prefix(good + 1);
  }
}

}  // namespace nuvhost
