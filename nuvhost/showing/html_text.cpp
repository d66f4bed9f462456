#include "nuvhost/showing/html_text.h"

#include "nuvhost/drawing/svg_writer.h"

namespace nuvhost {

std::string HtmlText(std::string_view text) {
  return XmlEscaped(XmlText(text));
}

std::string ScriptText(const Json& json) {
  std::string text;
  for (const char c : Dump(json)) {
    switch (c) {
      case '<': text += "\\u003c"; break;
      case '>': text += "\\u003e"; break;
      case '&': text += "\\u0026"; break;
      default: text += c;
    }
  }
  return text;
}

}  // namespace nuvhost
