#include "nuvhost/drawing/svg_writer.h"

#include <utf8cpp/utf8.h>

#include <charconv>
#include <cmath>
#include <iterator>

#include "nuvhost/text/utf8.h"

namespace nuvhost {
namespace {

bool IsShown(char32_t character) {
  if (character == '\t' || character == '\n' || character == '\r') return true;
  return character >= 0x20 && (character < 0x7F || character > 0x9F) && character != 0xFFFE &&
         character != 0xFFFF;
}

}  // namespace

std::string XmlText(std::string_view bytes) {
  const std::string all = utf8::is_valid(bytes) ? std::string(bytes) : Utf8FromBytes(bytes);
  std::string text;
  for (auto at = all.begin(); at != all.end();) {
    const char32_t character = utf8::unchecked::next(at);
    utf8::append(IsShown(character) ? character : U'\uFFFD', text);
  }
  return text;
}

std::string XmlEscaped(std::string_view utf8) {
  std::string text;
  for (const char c : utf8) {
    switch (c) {
      case '&': text += "&amp;"; break;
      case '<': text += "&lt;"; break;
      case '>': text += "&gt;"; break;
      case '"': text += "&quot;"; break;
      case '\'': text += "&apos;"; break;
      default: text += c;
    }
  }
  return text;
}

SvgWriter& SvgWriter::Begin(const char* element) {
  if (in_tag_) svg_ += ">\n";
  (svg_ += '<') += element;
  open_.push_back(element);
  in_tag_ = true;
  return *this;
}

SvgWriter& SvgWriter::Set(const char* attribute, std::string_view utf8) {
  ((svg_ += ' ') += attribute) += "=\"";
  svg_ += XmlEscaped(utf8);
  svg_ += '"';
  return *this;
}

SvgWriter& SvgWriter::Text(std::string_view utf8) {
  if (in_tag_) svg_ += '>';
  in_tag_ = false;
  svg_ += XmlEscaped(utf8);
  return *this;
}

SvgWriter& SvgWriter::End() {
  if (in_tag_) {
    svg_ += "/>";
  } else {
    ((svg_ += "</") += open_.back()) += '>';
  }
  svg_ += '\n';
  open_.pop_back();
  in_tag_ = false;
  return *this;
}

std::string SvgWriter::Number(double number) const {
  char digits[400];  // the largest number has 309 digits before the point
  const auto [end, error] = std::to_chars(std::begin(digits), std::end(digits), number,
                                          std::chars_format::fixed, decimals_);
  std::string text(std::begin(digits), end);
  if (decimals_ > 0) {
    text.resize(text.find_last_not_of('0') + 1);
    if (text.back() == '.') text.pop_back();
  }
  return text == "-0" ? "0" : text;
}

std::string SvgWriter::Length(double length) const {
  std::string text = Number(length);
  return text == "0" && length > 0.0 ? Number(std::pow(10.0, -decimals_)) : text;
}

}  // namespace nuvhost
