// TextLayout: a text as a picture sets it: lines, font and size.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "nuvhost/drawing/view.h"

namespace nuvhost {

struct TextLayout {
  std::vector<std::string> lines;  ///< in UTF-8; none for an empty text or none
  std::string family;              ///< empty for the default
  double size;                     ///< of the font, in the picture's units

  /// How much room the text takes; the width is a guess on the broad side, since
  /// fonts differ.
  double Width() const;
  double Height() const { return LineHeight() * static_cast<double>(lines.size()); }
  double LineHeight() const { return 1.2 * size; }
};

/// `font` selects a family, a size or both, like "Arial 14", "Arial, 14pt", "Arial" or "14"; points
/// unless it says "px". What is not to be read there is the default.
TextLayout LayOutText(const std::optional<std::string>& text, std::string_view font,
                      const View& view);

}  // namespace nuvhost
