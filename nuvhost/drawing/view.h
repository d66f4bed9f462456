// View: what part of the plane a picture of annotations shows, and in what proportions.
//
// Coordinates are those of the annotations, y downward. Over an image they count pixels: the pixel
// (x, y) is the square from there to (x + 1, y + 1).
#pragma once

#include <array>
#include <optional>
#include <vector>

#include "nuvhost/drawing/image.h"
#include "reference_host/services/services.h"

namespace nuvhost {

/// Annotations in the order in which they were drawn.
using Annotations = std::vector<const Annotation*>;

struct Box {
  double left;
  double top;
  double right;
  double bottom;

  double Width() const { return right - left; }
  double Height() const { return bottom - top; }
};

struct View {
  Box box;
  double pixel;     ///< of the display that lines and texts are made for
  double unit = 1;  ///< of the picture's own coordinates, which begin at the box's corner

  double LineWidth() const { return 1.6 * pixel; }
  double TextSize() const { return 18 * pixel; }
};

/// The picture of an image's size. It reads well wherever its larger side fills 800 pixels of a
/// display or more; a small image reads well from twice its own size.
View ViewOf(const Image& image);
/// The picture that holds all figures, with a margin, for the same display. Lines without end are
/// cut off by it, and count only where there is nothing else. Its own coordinates count pixels of
/// the display, since viewers reckon with 24 binary digits; figures that lie closer together than
/// double precision can tell at their place coincide in it.
View ViewAround(const Annotations& annotations);

/// Whether something at a point can be shown: its coordinates are finite, and no larger than 1e9,
/// beyond which viewers get them wrong.
bool IsDrawable(const CNuvPoint& point);
bool IsDrawable(const CNuvCircle& circle);

/// The corners in order around the centre. A positive angle turns clockwise as seen.
std::array<CNuvPoint, 4> Corners(const CNuvRect& rect);
/// The square of the pixel that a point lies in.
Box PixelAt(const CNuvPoint& point);
/// The part of a line, or of a segment with drawable ends, that lies within a box; nothing where
/// it passes by.
std::optional<SegmentFigure> Clipped(const CNuvLine& line, const Box& box);
std::optional<SegmentFigure> Clipped(const SegmentFigure& segment, const Box& box);

}  // namespace nuvhost
