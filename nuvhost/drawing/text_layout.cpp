#include "nuvhost/drawing/text_layout.h"

#include <algorithm>
#include <charconv>

#include "nuvhost/drawing/svg_writer.h"
#include "nuvhost/text/utf8.h"

namespace nuvhost {
namespace {

constexpr double kPixelsOfAPoint = 96.0 / 72.0;
constexpr double kLargestFont = 1000;

void Trim(std::string_view& text) {
  while (!text.empty() && (text.front() == ' ' || text.front() == ',')) text.remove_prefix(1);
  while (!text.empty() && (text.back() == ' ' || text.back() == ',')) text.remove_suffix(1);
}

/// Takes the size off the end of a font's text; nothing where there is none.
std::optional<double> TakeSize(std::string_view& font) {
  std::string_view rest = font;
  double unit = kPixelsOfAPoint;
  if (rest.ends_with("pt") || rest.ends_with("px")) {
    if (rest.ends_with("px")) unit = 1;
    rest.remove_suffix(2);
    Trim(rest);
  }
  const std::size_t digits = rest.find_last_not_of("0123456789.") + 1;
  const bool is_word = digits == 0 || rest[digits - 1] == ' ' || rest[digits - 1] == ',';
  double number = 0;
  const auto [end, error] =
      std::from_chars(rest.data() + digits, rest.data() + rest.size(), number);
  if (!is_word || error != std::errc() || end != rest.data() + rest.size()) return std::nullopt;
  font = rest.substr(0, digits);
  Trim(font);
  if (!(number > 0 && number <= kLargestFont)) return std::nullopt;
  return number * unit;
}

/// Whether a style sheet takes the name between quotes.
bool IsFamily(std::string_view name) {
  return std::ranges::all_of(name, [](char c) {
    const bool is_letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
    return is_letter || (c >= '0' && c <= '9') || c == ' ' || c == '-' || c == '_' ||
           static_cast<unsigned char>(c) >= 0x80;
  });
}

/// As a part of the font's size, in the broad typefaces that stand in where the default's ones are
/// missing: a text may turn out narrower, hardly wider.
double CharacterWidth(char c) {
  struct Class {
    std::string_view characters;
    double width;
  };
  constexpr Class kClasses[] = {
      {" !'(),-./:;I[]\\fijlrt|", 0.4}, {"CDGHNOQRUw&", 0.79}, {"mMW%@", 1}};
  for (const Class& one : kClasses) {
    if (one.characters.find(c) != std::string_view::npos) return one.width;
  }
  if (static_cast<unsigned char>(c) >= 0xE0) return 1;  // leads three or four bytes
  return c >= 'A' && c <= 'Z' ? 0.7 : 0.64;
}

}  // namespace

double TextLayout::Width() const {
  double widest = 0;
  for (const std::string& line : lines) {
    double width = 0;
    for (const char c : line) width += BeginsCharacter(c) ? CharacterWidth(c) : 0;
    widest = std::max(widest, width * size);
  }
  return widest;
}

TextLayout LayOutText(const std::optional<std::string>& text, std::string_view font,
                      const View& view) {
  TextLayout layout{{}, "", view.TextSize()};
  Trim(font);
  if (const auto pixels = TakeSize(font)) layout.size = *pixels * view.pixel;
  if (IsFamily(font)) layout.family = XmlText(font);
  if (!text || text->empty()) return layout;
  layout.lines.emplace_back();
  for (const char c : XmlText(*text)) {
    if (c == '\n') {
      layout.lines.emplace_back();
    } else if (c != '\r') {
      layout.lines.back() += c;
    }
  }
  return layout;
}

}  // namespace nuvhost
