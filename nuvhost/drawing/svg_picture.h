// SvgPicture: the annotations of a run as an SVG picture, over an image where there is one.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "nuvhost/drawing/image.h"
#include "nuvhost/drawing/view.h"

namespace nuvhost {

struct SvgPicture {
  std::string svg;
  /// Figures, or points of figures, that cannot be drawn for what their numbers are.
  std::size_t left_out = 0;
};

/// Draws annotations in their order, and all texts above them. `default_color` is that of
/// annotations with colour 0, a green for 0 itself. Equal drawings give equal bytes.
SvgPicture DrawSvg(const Annotations& annotations, const std::optional<Image>& image,
                   std::uint32_t default_color);

}  // namespace nuvhost
