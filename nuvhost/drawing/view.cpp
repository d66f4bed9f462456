#include "nuvhost/drawing/view.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

#include "nuvhost/drawing/text_layout.h"

namespace nuvhost {
namespace {

constexpr double kFarthest = 1e9;
constexpr Box kEmptyView{0, 0, 640, 480};
constexpr double kDisplay = 800;
constexpr double kMargin = 0.1;        // of the figures' larger side
constexpr double kLoneMargin = 50;     // around a single point
constexpr double kFinest = 1e-12;      // margin, of the largest coordinate
constexpr double kSmallest = 1e-300;   // margin, whatever the coordinates are
constexpr double kLongestText = 8000;  // that the picture grows for, in pixels

/// The box around all that it is given.
class Extent {
 public:
  bool Empty() const { return box_.left > box_.right; }
  const Box& Get() const { return box_; }

  void Include(const CNuvPoint& point) {
    if (!IsDrawable(point)) return;
    box_ = {std::min(box_.left, point.x), std::min(box_.top, point.y),
            std::max(box_.right, point.x), std::max(box_.bottom, point.y)};
  }
  void Include(const Box& box) {
    Include(CNuvPoint(box.left, box.top));
    Include(CNuvPoint(box.right, box.bottom));
  }

  void operator()(const PointFigure& f) { Include(f.location); }
  void operator()(const SegmentFigure& f) {
    if (IsDrawable(f.start) && IsDrawable(f.end)) {
      Include(f.start);
      Include(f.end);
    }
  }
  void operator()(const LineFigure& /*f*/) {}
  void operator()(const CircleFigure& f) { IncludeCircle(f.circle); }
  void operator()(const CirclesFigure& f) {
    for (std::size_t i = 0; i < f.centers.Size(); ++i) {
      IncludeCircle(CNuvCircle(f.centers[i].x, f.centers[i].y, f.radius));
    }
  }
  void operator()(const RectFigure& f) {
    const std::array<CNuvPoint, 4> corners = Corners(f.rect);
    if (!std::ranges::all_of(corners, [](const CNuvPoint& p) { return IsDrawable(p); })) return;
    for (const CNuvPoint& corner : corners) Include(corner);
  }
  void operator()(const PointsFigure& f) { IncludeAll(f.points); }
  void operator()(const TextFigure& /*f*/) {}
  void operator()(const PolylineFigure& f) { IncludeAll(f.points); }
  void operator()(const PixelsFigure& f) {
    for (std::size_t i = 0; i < f.points.Size(); ++i) {
      if (IsDrawable(f.points[i])) Include(PixelAt(f.points[i]));
    }
  }

 private:
  void IncludeAll(const CNuvPointVector& points) {
    for (std::size_t i = 0; i < points.Size(); ++i) Include(points[i]);
  }
  void IncludeCircle(const CNuvCircle& circle) {
    if (!IsDrawable(circle)) return;
    const double radius = std::abs(circle.radius);
    Include(Box{circle.x - radius, circle.y - radius, circle.x + radius, circle.y + radius});
  }

  static constexpr double kInfinity = std::numeric_limits<double>::infinity();
  Box box_{kInfinity, kInfinity, -kInfinity, -kInfinity};
};

Box Widened(const Box& box, double margin) {
  return {box.left - margin, box.top - margin, box.right + margin, box.bottom + margin};
}

/// The direction of an angle as a step of length 1. A large angle is folded first, since not every
/// platform's sine can do that.
CNuvPoint Direction(double angle) {
  const double folded = std::remainder(angle, 2 * std::numbers::pi);
  return {std::cos(folded), std::sin(folded)};
}

/// The point of a line that is nearest to another point.
CNuvPoint Foot(const CNuvLine& line, const CNuvPoint& point) {
  const CNuvPoint direction = Direction(line.a);
  const double distance = point.y * direction.x - point.x * direction.y - line.d;
  return {point.x + distance * direction.y, point.y - distance * direction.x};
}

/// Of the points start + t * step with t between two bounds, those within a box. Liang and Barsky's
/// way: each side of the box takes away those behind it.
std::optional<SegmentFigure> ClippedPart(const CNuvPoint& start, const CNuvPoint& step, double from,
                                         double to, const Box& box) {
  const auto cut = [&](double position, double along, double low, double high) {
    if (along == 0) return low <= position && position <= high;
    const double enter = ((along > 0 ? low : high) - position) / along;
    const double leave = ((along > 0 ? high : low) - position) / along;
    from = std::max(from, enter);
    to = std::min(to, leave);
    return from <= to;
  };
  if (!cut(start.x, step.x, box.left, box.right)) return std::nullopt;
  if (!cut(start.y, step.y, box.top, box.bottom)) return std::nullopt;
  const auto point = [&](double t) {
    return CNuvPoint(start.x + t * step.x, start.y + t * step.y);
  };
  return SegmentFigure{point(from), point(to)};
}

}  // namespace

View ViewOf(const Image& image) {
  constexpr double kSmallestPixel = 0.5;
  const Box box{0, 0, static_cast<double>(image.width), static_cast<double>(image.height)};
  return {box, std::max(kSmallestPixel, std::max(box.right, box.bottom) / kDisplay)};
}

View ViewAround(const Annotations& annotations) {
  Extent extent;
  for (const Annotation* annotation : annotations) {
    const auto* text = std::get_if<TextFigure>(&annotation->figure);
    if (text != nullptr && annotation->label.value_or("") != "") extent.Include(text->location);
    std::visit(extent, annotation->figure);
  }
  if (extent.Empty()) {
    for (const Annotation* annotation : annotations) {
      const auto* figure = std::get_if<LineFigure>(&annotation->figure);
      if (figure != nullptr) extent.Include(Foot(figure->line, CNuvPoint(0, 0)));
    }
  }
  if (extent.Empty()) return {kEmptyView, 1};

  const Box& figures = extent.Get();
  const double size = std::max(figures.Width(), figures.Height());
  const double farthest = std::max({-figures.left, -figures.top, figures.right, figures.bottom});
  const double margin =
      size > 0 ? std::max({kMargin * size, kFinest * farthest, kSmallest}) : kLoneMargin;
  const View without_texts{Widened(extent.Get(), margin), (size + 2 * margin) / kDisplay};
  extent.Include(without_texts.box);
  for (const Annotation* annotation : annotations) {
    const auto* text = std::get_if<TextFigure>(&annotation->figure);
    if (text == nullptr || !IsDrawable(text->location)) continue;
    const TextLayout layout = LayOutText(annotation->label, text->font, without_texts);
    if (layout.lines.empty()) continue;
    const CNuvPoint& begin = text->location;
    const double longest = kLongestText * without_texts.pixel;
    extent.Include(Box{begin.x, begin.y, begin.x + std::min(layout.Width(), longest),
                       begin.y + std::min(layout.Height(), longest)});
  }
  return {extent.Get(), without_texts.pixel, without_texts.pixel};
}

bool IsDrawable(const CNuvPoint& point) {
  return std::abs(point.x) <= kFarthest && std::abs(point.y) <= kFarthest;
}

bool IsDrawable(const CNuvCircle& circle) {
  return IsDrawable(CNuvPoint(circle.x, circle.y)) && std::abs(circle.radius) <= kFarthest;
}

std::array<CNuvPoint, 4> Corners(const CNuvRect& rect) {
  const CNuvPoint along = Direction(rect.angle);
  const auto corner = [&](double x, double y) {
    return CNuvPoint(rect.x + x * along.x - y * along.y, rect.y + x * along.y + y * along.x);
  };
  const double x = rect.width / 2;
  const double y = rect.height / 2;
  return {corner(-x, -y), corner(x, -y), corner(x, y), corner(-x, y)};
}

Box PixelAt(const CNuvPoint& point) {
  const double x = std::floor(point.x);
  const double y = std::floor(point.y);
  return {x, y, x + 1, y + 1};
}

std::optional<SegmentFigure> Clipped(const CNuvLine& line, const Box& box) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  const CNuvPoint foot =
      Foot(line, CNuvPoint((box.left + box.right) / 2, (box.top + box.bottom) / 2));
  if (!IsDrawable(foot)) return std::nullopt;
  return ClippedPart(foot, Direction(line.a), -kInfinity, kInfinity, box);
}

std::optional<SegmentFigure> Clipped(const SegmentFigure& segment, const Box& box) {
  const CNuvPoint step(segment.end.x - segment.start.x, segment.end.y - segment.start.y);
  return ClippedPart(segment.start, step, 0, 1, box);
}

}  // namespace nuvhost
