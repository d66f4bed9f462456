#include "nuvhost/drawing/svg_picture.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "nuvhost/drawing/image.h"
#include "nuvhost/drawing/svg_writer.h"
#include "nuvhost/drawing/text_layout.h"

namespace nuvhost {
namespace {

constexpr std::uint32_t kGreen = 0x00C800;
constexpr const char* kNoImage = "#2b2b2b";  // bright and strong colours stand out from it
constexpr const char* kFillOpacity = "0.25";
constexpr const char* kHaloOpacity = "0.6";
constexpr double kHalfMark = 2.5;  // of a point's mark, in line widths

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

class Painter {
 public:
  Painter(const View& view, std::uint32_t default_color)
      : view_(view),
        default_color_(default_color == 0 ? kGreen : default_color),
        svg_(Decimals(view.pixel)) {}

  SvgPicture Paint(const Annotations& annotations, const std::optional<Image>& image) {
    BeginPicture(image.has_value());
    PaintBackground(image);
    svg_.Begin("g").Set("fill", "none").Set("stroke-width", view_.LineWidth());
    svg_.Set("stroke-linecap", "round").Set("stroke-linejoin", "round");
    for (const Annotation* annotation : annotations) {
      annotation_ = annotation;
      is_labelled_ = false;
      color_ = annotation->color == 0 ? default_color_ : annotation->color;
      std::visit(*this, annotation->figure);
    }
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
    for (const CNuvPoint& corner : corners) path += (path.empty() ? 'M' : 'L') + Pair(corner);
    svg_.Begin("path").Set("d", path + 'Z');
    EndShape(f.fill);
    Label(*std::ranges::min_element(corners, {}, &CNuvPoint::y));
  }
  void operator()(const PointsFigure& f) { PaintMarks(f.points.GetStorage(), f.points.Size()); }
  void operator()(const TextFigure& f) {
    TextLayout layout = LayOutText(annotation_->label, f.font, view_);
    if (layout.lines.empty() || !CanDraw(IsDrawable(f.location))) return;
    texts_.push_back({std::move(layout), f.location, color_, f.paint_background});
  }
  /// A point that cannot be drawn leaves a gap.
  void operator()(const PolylineFigure& f) {
    std::string path;
    char command = 'M';
    for (std::size_t i = 0; i < f.points.Size(); ++i) {
      const bool can_draw = CanDraw(IsDrawable(f.points[i]));
      if (can_draw) {
        path += command + Pair(f.points[i]);
        Label(f.points[i]);
      }
      command = can_draw ? 'L' : 'M';
    }
    if (!path.empty()) PaintPath(path);
  }
  void operator()(const PixelsFigure& f) {
    std::string path;
    for (std::size_t i = 0; i < f.points.Size(); ++i) {
      if (!CanDraw(IsDrawable(f.points[i]))) continue;
      const Box pixel = PixelAt(f.points[i]);
      Label({pixel.right, pixel.top});
      path += 'M' + Pair({pixel.left, pixel.top}) + "h1v1h-1Z";
    }
    if (path.empty()) return;
    svg_.Begin("path").Set("d", path).Set("fill", ColorText(color_)).End();
  }

 private:
  /// A text, and where its upper left corner is.
  struct PlacedText {
    TextLayout layout;
    CNuvPoint begin;
    std::uint32_t color;
    bool paint_background;
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
    svg_.Set("width", std::round(box.Width() / pixel));
    svg_.Set("height", std::round(box.Height() / pixel));
    svg_.Set("viewBox", Pair({box.left, box.top}) + ' ' + Pair({box.Width(), box.Height()}));
  }

  void PaintBackground(const std::optional<Image>& image) {
    const Box& box = view_.box;
    svg_.Begin(image ? "image" : "rect").Set("x", box.left).Set("y", box.top);
    svg_.Set("width", box.Width()).Set("height", box.Height());
    if (image) {
      svg_.Set("xlink:href", DataUri(*image));
    } else {
      svg_.Set("fill", kNoImage);
    }
    svg_.End();
  }

  std::string Pair(const CNuvPoint& point) const {
    return svg_.Number(point.x) + ' ' + svg_.Number(point.y);
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
    PaintPath('M' + Pair(segment.start) + 'L' + Pair(segment.end));
  }

  /// A negative radius counts as positive.
  void PaintCircle(const CNuvCircle& circle, bool fill) {
    if (!CanDraw(IsDrawable(circle))) return;
    const double radius = std::abs(circle.radius);
    svg_.Begin("circle").Set("cx", circle.x).Set("cy", circle.y).Set("r", radius);
    EndShape(fill);
    const double diagonal = radius * std::sqrt(0.5);
    Label({circle.x + diagonal, circle.y - diagonal});
  }

  /// Crosses at points, in one path.
  void PaintMarks(const CNuvPoint* points, std::size_t count) {
    const double half = kHalfMark * view_.LineWidth();
    const std::string length = svg_.Number(2 * half);
    std::string path;
    for (const CNuvPoint* point = points; point != points + count; ++point) {
      if (!CanDraw(IsDrawable(*point))) continue;
      Label(*point);
      path += 'M' + Pair({point->x - half, point->y}) + 'h' + length;
      path += 'M' + Pair({point->x, point->y - half}) + 'v' + length;
    }
    if (!path.empty()) PaintPath(path);
  }

  /// Puts the annotation's label to the upper right of a point and within the picture, unless it is
  /// placed already.
  void Label(const CNuvPoint& point) {
    if (std::exchange(is_labelled_, true)) return;
    TextLayout layout = LayOutText(annotation_->label, "", view_);
    if (layout.lines.empty()) return;
    const Box& box = view_.box;
    const double gap = 2 * view_.LineWidth();
    const auto within = [](double value, double low, double high) {
      return std::max(low, std::min(value, high));
    };
    const CNuvPoint begin(
        within(point.x + gap, box.left + gap, box.right - layout.Width()),
        within(point.y - gap - layout.Height(), box.top + gap, box.bottom - layout.Height()));
    texts_.push_back({std::move(layout), begin, color_, false});
  }

  void PaintTexts() {
    if (texts_.empty()) return;
    svg_.Begin("g").Set("font-family", "Arial, Helvetica, sans-serif");
    svg_.Set("paint-order", "stroke").Set("stroke-linejoin", "round");
    for (const PlacedText& text : texts_) PaintText(text);
    svg_.End();
  }

  void PaintText(const PlacedText& text) {
    const TextLayout& layout = text.layout;
    constexpr double kAscent = 0.95;
    const char* contrast = IsDark(text.color) ? "#ffffff" : "#000000";
    if (text.paint_background) {
      const double margin = 0.2 * layout.size;
      svg_.Begin("rect").Set("x", text.begin.x - margin).Set("y", text.begin.y);
      svg_.Set("width", layout.Width() + 2 * margin).Set("height", layout.Height());
      svg_.Set("fill", contrast).End();
    }
    double baseline = text.begin.y + kAscent * layout.size;
    for (const std::string& line : layout.lines) {
      svg_.Begin("text").Set("x", text.begin.x).Set("y", baseline);
      svg_.Set("font-size", layout.size).Set("fill", ColorText(text.color));
      if (!layout.family.empty()) {
        svg_.Set("font-family", '\'' + layout.family + "', sans-serif");
      }
      if (!text.paint_background) {
        svg_.Set("stroke", contrast).Set("stroke-opacity", kHaloOpacity);
        svg_.Set("stroke-width", layout.size / 6);
      }
      svg_.Text(line).End();
      baseline += layout.LineHeight();
    }
  }

  const View view_;
  const std::uint32_t default_color_;
  SvgWriter svg_;
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
