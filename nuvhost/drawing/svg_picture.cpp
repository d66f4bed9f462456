#include "nuvhost/drawing/svg_picture.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "nuvhost/drawing/image.h"
#include "nuvhost/drawing/label_placer.h"
#include "nuvhost/drawing/svg_writer.h"
#include "nuvhost/drawing/text_layout.h"

namespace nuvhost {
namespace {

constexpr std::uint32_t kGreen = 0x00C800;
constexpr const char* kNoImage = "#2b2b2b";  // bright and strong colours stand out from it
constexpr const char* kFillOpacity = "0.25";
constexpr const char* kHaloOpacity = "0.6";
constexpr const char* kEdgeOpacity = "0.5";
constexpr const char* kBlack = "#000000";
constexpr const char* kWhite = "#ffffff";
constexpr const char* kFontFamily = "Arial, Helvetica, sans-serif";
constexpr double kHalfMark = 2.5;  // of a point's mark, in line widths

// As large as an image is shown, its pixels are wanted, not what lies between them.
constexpr const char* kImageStyle =
    "@media (min-resolution: 2dppx) { image { image-rendering: pixelated } }";

int Red(std::uint32_t color) {
  return static_cast<int>(color & 0xFF);
}
int Green(std::uint32_t color) {
  return static_cast<int>(color >> 8 & 0xFF);
}
int Blue(std::uint32_t color) {
  return static_cast<int>(color >> 16 & 0xFF);
}

std::string ColorText(std::uint32_t color) {
  constexpr const char* kDigits = "0123456789abcdef";
  std::string text = "#";
  for (const int part : {Red(color), Green(color), Blue(color)}) {
    text += kDigits[part / 16];
    text += kDigits[part % 16];
  }
  return text;
}

/// By the luma weights of ITU-R BT.601.
bool IsDark(std::uint32_t color) {
  return 299 * Red(color) + 587 * Green(color) + 114 * Blue(color) < 110 * 1000;
}

/// So many decimals that the last one does not show.
int Decimals(double pixel) {
  constexpr double kLog2 = 0.30103;  // decimal
  return std::clamp(3 - static_cast<int>(std::floor(std::ilogb(pixel) * kLog2)), 0, 15);
}

/// A typeface, and those in its place where it is missing. A generic name is a word of the style
/// sheet's own.
std::string FontFamilies(const std::string& family) {
  for (const char* generic : {"serif", "sans-serif", "monospace"}) {
    if (family == generic) return family;
  }
  return '\'' + family + "', " + kFontFamily;
}

class Painter {
 public:
  Painter(const View& view, std::uint32_t default_color)
      : view_(view),
        default_color_(default_color == 0 ? kGreen : default_color),
        svg_(Decimals(view.pixel / view.unit)),
        placer_(view) {}

  SvgPicture Paint(const Annotations& annotations, const std::optional<Image>& image) {
    BeginPicture(image.has_value());
    PaintBackground(image);
    svg_.Begin("g").Set("fill", "none");
    SetLength("stroke-width", view_.LineWidth())
        .Set("stroke-linecap", "round")
        .Set("stroke-linejoin", "round");
    // Whatever is in the way of labels is known before the first of them is placed.
    for (const Annotation* annotation : annotations) {
      annotation_ = annotation;
      is_labelled_ = false;
      color_ = annotation->color == 0 ? default_color_ : annotation->color;
      std::visit(*this, annotation->figure);
    }
    for (PlacedText& text : texts_) PlaceLabel(text);
    svg_.End();
    PaintTexts();
    svg_.End();
    return {svg_.Svg(), left_out_};
  }

  void operator()(const PointFigure& f) { PaintMarks(&f.location, 1); }
  void operator()(const SegmentFigure& f) {
    if (!CanDraw(IsDrawable(f.start) && IsDrawable(f.end))) return;
    PaintSegment(f);
    Label({(f.start.x + f.end.x) / 2, (f.start.y + f.end.y) / 2});
  }
  void operator()(const LineFigure& f) {
    if (!CanDraw(std::isfinite(f.line.a) && std::isfinite(f.line.d))) return;
    std::optional<SegmentFigure> part = Clipped(f.line, view_.box);
    if (!part) return;
    PaintSegment(*part);
    if (part->start.x > part->end.x) std::swap(part->start, part->end);
    Label({part->start.x + (part->end.x - part->start.x) / 8,
           part->start.y + (part->end.y - part->start.y) / 8});
  }
  void operator()(const CircleFigure& f) { PaintCircle(f.circle, f.fill); }
  void operator()(const CirclesFigure& f) {
    for (std::size_t i = 0; i < f.centers.Size(); ++i) {
      PaintCircle(CNuvCircle(f.centers[i].x, f.centers[i].y, f.radius), f.fill);
    }
  }
  void operator()(const RectFigure& f) {
    const std::array<CNuvPoint, 4> corners = Corners(f.rect);
    if (!CanDraw(std::ranges::all_of(corners, [](const CNuvPoint& p) { return IsDrawable(p); }))) {
      return;
    }
    std::string path;
    for (std::size_t i = 0; i < corners.size(); ++i) {
      path += (i == 0 ? 'M' : 'L') + Pair(corners[i]);
      placer_.MarkSegment(corners[i], corners[(i + 1) % corners.size()]);
    }
    svg_.Begin("path").Set("d", path + 'Z');
    EndShape(f.fill);
    Label(*std::ranges::min_element(corners, {}, &CNuvPoint::y));
  }
  void operator()(const PointsFigure& f) { PaintMarks(f.points.GetStorage(), f.points.Size()); }
  void operator()(const TextFigure& f) {
    TextLayout layout = LayOutText(annotation_->label, f.font, view_);
    if (layout.lines.empty() || !CanDraw(IsDrawable(f.location))) return;
    placer_.MarkText({f.location.x, f.location.y, f.location.x + layout.Width(),
                      f.location.y + layout.Height()});
    texts_.push_back({std::move(layout), f.location, color_, f.paint_background, false});
  }
  /// A point that cannot be drawn leaves a gap.
  void operator()(const PolylineFigure& f) {
    std::string path;
    char command = 'M';
    for (std::size_t i = 0; i < f.points.Size(); ++i) {
      const bool can_draw = CanDraw(IsDrawable(f.points[i]));
      if (can_draw) {
        path += command + Pair(f.points[i]);
        placer_.MarkSegment(f.points[command == 'L' ? i - 1 : i], f.points[i]);
        Label(f.points[i]);
      }
      command = can_draw ? 'L' : 'M';
    }
    if (!path.empty()) PaintPath(path);
  }
  /// The squares themselves, and an edge by which they are seen however small they are.
  void operator()(const PixelsFigure& f) {
    const std::string side = Length(1);
    const std::string square = 'h' + side + 'v' + side + "h-" + side + 'Z';
    std::string path;
    for (std::size_t i = 0; i < f.points.Size(); ++i) {
      if (!CanDraw(IsDrawable(f.points[i]))) continue;
      const Box pixel = PixelAt(f.points[i]);
      placer_.MarkOutline(pixel);
      Label({pixel.right, pixel.top});
      path += 'M' + Pair({pixel.left, pixel.top}) + square;
    }
    if (path.empty()) return;
    svg_.Begin("path").Set("d", path).Set("fill", ColorText(color_));
    svg_.Set("stroke", ColorText(color_)).Set("stroke-opacity", kEdgeOpacity);
    SetLength("stroke-width", 1.5 * view_.LineWidth()).End();
  }

 private:
  /// A text, and where its upper left corner is: for a label, until it is placed, the point of the
  /// figure that it belongs to.
  struct PlacedText {
    TextLayout layout;
    CNuvPoint begin;
    std::uint32_t color;
    bool paint_background;
    bool is_label;
  };

  bool CanDraw(bool is_drawable) {
    if (!is_drawable) ++left_out_;
    return is_drawable;
  }

  /// An image is shown in its own size.
  void BeginPicture(bool over_image) {
    const Box& box = view_.box;
    const double pixel = over_image ? 1 : view_.pixel;
    svg_.Begin("svg").Set("xmlns", "http://www.w3.org/2000/svg");
    svg_.Set("xmlns:xlink", "http://www.w3.org/1999/xlink").Set("xml:space", "preserve");
    svg_.Set("width", std::max(1.0, std::round(box.Width() / pixel)));
    svg_.Set("height", std::max(1.0, std::round(box.Height() / pixel)));
    svg_.Set("viewBox", "0 0 " + Length(box.Width()) + ' ' + Length(box.Height()));
  }

  void PaintBackground(const std::optional<Image>& image) {
    if (image) svg_.Begin("style").Text(kImageStyle).End();
    svg_.Begin(image ? "image" : "rect");
    SetLength("width", view_.box.Width());
    SetLength("height", view_.box.Height());
    if (image) {
      svg_.Set("xlink:href", DataUri(*image));
    } else {
      svg_.Set("fill", kNoImage);
    }
    svg_.End();
  }

  /// Positions and lengths in the picture's own coordinates.
  CNuvPoint Shown(const CNuvPoint& point) const {
    return {(point.x - view_.box.left) / view_.unit, (point.y - view_.box.top) / view_.unit};
  }
  std::string Pair(const CNuvPoint& point) const {
    const CNuvPoint shown = Shown(point);
    return svg_.Number(shown.x) + ' ' + svg_.Number(shown.y);
  }
  std::string Length(double length) const { return svg_.Length(length / view_.unit); }
  SvgWriter& SetLength(const char* attribute, double length) {
    return svg_.Set(attribute, Length(length));
  }
  SvgWriter& SetPosition(const char* x, const char* y, const CNuvPoint& point) {
    const CNuvPoint shown = Shown(point);
    return svg_.Set(x, shown.x).Set(y, shown.y);
  }

  void EndShape(bool fill) {
    svg_.Set("stroke", ColorText(color_));
    if (fill) svg_.Set("fill", ColorText(color_)).Set("fill-opacity", kFillOpacity);
    svg_.End();
  }

  void PaintPath(const std::string& path) {
    svg_.Begin("path").Set("d", path);
    EndShape(false);
  }

  void PaintSegment(const SegmentFigure& segment) {
    placer_.MarkSegment(segment.start, segment.end);
    PaintPath('M' + Pair(segment.start) + 'L' + Pair(segment.end));
  }

  /// A negative radius counts as positive.
  void PaintCircle(const CNuvCircle& circle, bool fill) {
    if (!CanDraw(IsDrawable(circle))) return;
    const double radius = std::abs(circle.radius);
    placer_.MarkCircle(circle);
    svg_.Begin("circle");
    SetPosition("cx", "cy", {circle.x, circle.y});
    SetLength("r", radius);
    EndShape(fill);
    const double diagonal = radius * std::sqrt(0.5);
    Label({circle.x + diagonal, circle.y - diagonal});
  }

  /// Crosses at points, in one path.
  void PaintMarks(const CNuvPoint* points, std::size_t count) {
    const double half = kHalfMark * view_.LineWidth();
    const std::string length = Length(2 * half);
    std::string path;
    for (const CNuvPoint* point = points; point != points + count; ++point) {
      if (!CanDraw(IsDrawable(*point))) continue;
      Label(*point);
      const CNuvPoint left(point->x - half, point->y);
      const CNuvPoint top(point->x, point->y - half);
      placer_.MarkSegment(left, {point->x + half, point->y});
      placer_.MarkSegment(top, {point->x, point->y + half});
      path += 'M' + Pair(left) + 'h' + length + 'M' + Pair(top) + 'v' + length;
    }
    if (!path.empty()) PaintPath(path);
  }

  /// Has the annotation's label placed near a point, unless there is one already.
  void Label(const CNuvPoint& point) {
    if (std::exchange(is_labelled_, true)) return;
    TextLayout layout = LayOutText(annotation_->label, "", view_);
    if (!layout.lines.empty()) texts_.push_back({std::move(layout), point, color_, false, true});
  }

  /// A line leads to a label that had to go far.
  void PlaceLabel(PlacedText& text) {
    if (!text.is_label) return;
    const CNuvPoint point = text.begin;
    const Box box = placer_.Place(point, text.layout.Width(), text.layout.Height());
    text.begin = {box.left, box.top};
    const CNuvPoint nearest(std::clamp(point.x, box.left, box.right),
                            std::clamp(point.y, box.top, box.bottom));
    if (std::hypot(nearest.x - point.x, nearest.y - point.y) < view_.TextSize()) return;
    placer_.MarkSegment(point, nearest);
    svg_.Begin("path").Set("d", 'M' + Pair(point) + 'L' + Pair(nearest));
    SetLength("stroke-width", view_.LineWidth() / 2).Set("stroke", ColorText(text.color)).End();
  }

  void PaintTexts() {
    if (texts_.empty()) return;
    for (const bool dark : {false, true}) DefineBackground(dark);
    svg_.Begin("g").Set("font-family", kFontFamily);
    svg_.Set("paint-order", "stroke").Set("stroke-linejoin", "round");
    for (const PlacedText& text : texts_) PaintText(text);
    svg_.End();
  }

  /// A filter that puts a colour behind a text, as wide as it turns out in the viewer's typeface.
  void DefineBackground(bool dark) {
    const auto is_needed = [&](const PlacedText& text) {
      return text.paint_background && IsDark(text.color) != dark;
    };
    if (std::ranges::none_of(texts_, is_needed)) return;
    svg_.Begin("filter").Set("id", dark ? "on-black" : "on-white");
    svg_.Set("x", "0").Set("y", "0").Set("width", "1.03").Set("height", "1");
    svg_.Begin("feFlood").Set("flood-color", dark ? kBlack : kWhite).End();
    svg_.Begin("feComposite").Set("in", "SourceGraphic").End().End();
  }

  void PaintText(const PlacedText& text) {
    const TextLayout& layout = text.layout;
    constexpr double kAscent = 0.95;
    const bool is_dark = IsDark(text.color);
    if (text.paint_background) {
      svg_.Begin("g").Set("filter", is_dark ? "url(#on-white)" : "url(#on-black)");
      const double margin = 0.2 * layout.size;  // the invisible frame widens what is filled
      svg_.Begin("rect").Set("fill", "none");
      SetPosition("x", "y", {text.begin.x - margin, text.begin.y});
      SetLength("width", 2 * margin);
      SetLength("height", layout.Height()).End();
    }
    CNuvPoint baseline(text.begin.x, text.begin.y + kAscent * layout.size);
    for (const std::string& line : layout.lines) {
      svg_.Begin("text");
      SetPosition("x", "y", baseline);
      SetLength("font-size", layout.size).Set("fill", ColorText(text.color));
      if (!layout.family.empty()) {
        svg_.Set("font-family", FontFamilies(layout.family));
      }
      if (!text.paint_background) {
        svg_.Set("stroke", is_dark ? kWhite : kBlack).Set("stroke-opacity", kHaloOpacity);
        SetLength("stroke-width", layout.size / 6);
      }
      svg_.Text(line).End();
      baseline.y += layout.LineHeight();
    }
    if (text.paint_background) svg_.End();
  }

  const View view_;
  const std::uint32_t default_color_;
  SvgWriter svg_;
  LabelPlacer placer_;
  std::vector<PlacedText> texts_;  ///< above all figures
  std::size_t left_out_ = 0;
  const Annotation* annotation_ = nullptr;  ///< the one being painted
  std::uint32_t color_ = 0;                 ///< its colour
  bool is_labelled_ = false;
};

}  // namespace

SvgPicture DrawSvg(const Annotations& annotations, const std::optional<Image>& image,
                   std::uint32_t default_color) {
  return Painter(image ? ViewOf(*image) : ViewAround(annotations), default_color)
      .Paint(annotations, image);
}

}  // namespace nuvhost
