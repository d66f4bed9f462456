// Texts in HTML pages.
#pragma once

#include <string>
#include <string_view>

#include "nuvhost/values/json_value.h"

namespace nuvhost {

/// A text as an element's or an attribute's contents. What is no UTF-8 is taken as Latin-1, and
/// control characters become U+FFFD.
std::string HtmlText(std::string_view text);

/// A value as the contents of a script element, which nothing in it can end. Its texts are UTF-8.
std::string ScriptText(const Json& json);

}  // namespace nuvhost
