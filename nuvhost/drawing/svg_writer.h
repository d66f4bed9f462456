// SvgWriter: an SVG picture as text, well-formed whatever is put into it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace nuvhost {

/// A text of 8-bit characters as UTF-8 that XML can hold: UTF-8 stays as it is, anything else is
/// taken as Latin-1. Control characters but tabs and line ends become U+FFFD.
std::string XmlText(std::string_view bytes);
/// A text with what XML and HTML read as their own written as entities.
std::string XmlEscaped(std::string_view utf8);

/// Elements are begun and ended in turn; attributes follow the begin. Names are the caller's to
/// choose well, values are escaped. Numbers have a fixed count of decimals, less the zeros at the
/// end, so that the same picture gives the same bytes everywhere.
class SvgWriter {
 public:
  explicit SvgWriter(int decimals) : decimals_(decimals) {}

  SvgWriter& Begin(const char* element);
  SvgWriter& Set(const char* attribute, std::string_view utf8);
  SvgWriter& Set(const char* attribute, double number) { return Set(attribute, Number(number)); }
  SvgWriter& Text(std::string_view utf8);
  SvgWriter& End();

  /// A finite number.
  std::string Number(double number) const;
  /// A finite length. One that is not 0 is not rounded to 0, which would hide what has it.
  std::string Length(double length) const;

  /// The picture, once every element is ended.
  const std::string& Svg() const { return svg_; }

 private:
  int decimals_;
  std::string svg_ = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
  std::vector<const char*> open_;
  bool in_tag_ = false;  ///< attributes may follow
};

}  // namespace nuvhost
