#include "nuvhost/drawing/label_placer.h"

#include <algorithm>
#include <cmath>

namespace nuvhost {
namespace {

constexpr std::uint32_t kFigure = 1;
constexpr std::uint32_t kText = 4;  // is worse to cover than a line
constexpr int kMostCells = 2000;    // along a side, which a picture with a very long text reaches

/// Directions from a figure's point to its label, the best first: -1 leaves or above, 0 centred, 1
/// right or below.
struct Side {
  int x;
  int y;
};
constexpr Side kSides[] = {{1, -1}, {-1, -1}, {1, 1}, {-1, 1}, {1, 0}, {-1, 0}, {0, -1}, {0, 1}};
constexpr double kDistances[] = {0, 0.6, 1.4, 2.4, 3.6};  // beyond the first gap, in text heights

/// Where an interval of a length begins beside a position.
double Beside(double position, int side, double gap, double length) {
  if (side == 0) return position - length / 2;
  return side > 0 ? position + gap : position - gap - length;
}

double Within(double value, double low, double high) {
  return std::max(low, std::min(value, high));
}

}  // namespace

LabelPlacer::LabelPlacer(const View& view)
    : view_(view),
      cell_(std::max(view.TextSize() / 4,
                     std::max(view.box.Width(), view.box.Height()) / kMostCells)),
      columns_(static_cast<int>(std::ceil(view.box.Width() / cell_))),
      rows_(static_cast<int>(std::ceil(view.box.Height() / cell_))),
      costs_(static_cast<std::size_t>(columns_) * static_cast<std::size_t>(rows_)) {}

// The cells' borders lie a little beside round numbers, where the last bits of a sine or a cosine,
// in which platforms differ, would decide.
int LabelPlacer::CellOf(double offset) const {
  constexpr double kBeside = 1e-6;
  return static_cast<int>(Within(std::floor(offset / cell_ + kBeside), -1, kMostCells));
}

void LabelPlacer::MarkColumn(int column, double from, double to) {
  if (column < 0 || column >= columns_) return;
  const int last = std::min(rows_ - 1, CellOf(std::max(from, to)));
  for (int row = std::max(0, CellOf(std::min(from, to))); row <= last; ++row) {
    costs_[static_cast<std::size_t>(row) * static_cast<std::size_t>(columns_) +
           static_cast<std::size_t>(column)] |= kFigure;
  }
}

template <class Visit>
void LabelPlacer::ForCells(const Box& box, Visit visit) const {
  const int left = std::max(0, CellOf(box.left - view_.box.left));
  const int right = std::min(columns_ - 1, CellOf(box.right - view_.box.left));
  const int bottom = std::min(rows_ - 1, CellOf(box.bottom - view_.box.top));
  for (int row = std::max(0, CellOf(box.top - view_.box.top)); row <= bottom; ++row) {
    const std::size_t begin = static_cast<std::size_t>(row) * static_cast<std::size_t>(columns_);
    for (int column = left; column <= right; ++column) {
      if (!visit(begin + static_cast<std::size_t>(column))) return;
    }
  }
}

void LabelPlacer::MarkSegment(const CNuvPoint& start, const CNuvPoint& end) {
  const std::optional<SegmentFigure> part = Clipped(SegmentFigure{start, end}, view_.box);
  if (!part) return;
  const bool is_forward = part->start.x <= part->end.x;
  const CNuvPoint& from = is_forward ? part->start : part->end;
  const CNuvPoint& to = is_forward ? part->end : part->start;
  const double left = from.x - view_.box.left;
  const double right = to.x - view_.box.left;
  const double slope = right > left ? (to.y - from.y) / (right - left) : 0;
  const auto at = [&](double x) { return from.y - view_.box.top + slope * (x - left); };
  const int last = CellOf(right);
  for (int column = CellOf(left); column <= last; ++column) {
    const bool ends = right <= left || column == last;
    MarkColumn(column, at(std::max(left, column * cell_)),
               ends ? to.y - view_.box.top : at(std::min(right, (column + 1) * cell_)));
  }
}

void LabelPlacer::MarkOutline(const Box& box) {
  MarkSegment({box.left, box.top}, {box.right, box.top});
  MarkSegment({box.right, box.top}, {box.right, box.bottom});
  MarkSegment({box.right, box.bottom}, {box.left, box.bottom});
  MarkSegment({box.left, box.bottom}, {box.left, box.top});
}

void LabelPlacer::MarkCircle(const CNuvCircle& circle) {
  const double radius = std::abs(circle.radius);
  const double x = circle.x - view_.box.left;
  const double y = circle.y - view_.box.top;
  const auto half_chord = [&](double at) {
    return std::sqrt(std::max(0.0, (radius - (at - x)) * (radius + (at - x))));
  };
  const int last = std::min(columns_ - 1, CellOf(x + radius));
  for (int column = std::max(0, CellOf(x - radius)); column <= last; ++column) {
    const double left = column * cell_;
    const double right = (column + 1) * cell_;
    const double nearest = half_chord(Within(x, left, right));
    const double farthest = std::min(half_chord(left), half_chord(right));
    MarkColumn(column, y - nearest, y - farthest);
    MarkColumn(column, y + farthest, y + nearest);
  }
}

void LabelPlacer::MarkText(const Box& text) {
  ForCells(text, [&](std::size_t cell) {
    costs_[cell] |= kText;
    return true;
  });
}

std::uint32_t LabelPlacer::Cost(const Box& box, std::uint32_t enough) const {
  std::uint32_t cost = 0;
  ForCells(box, [&](std::size_t cell) {
    cost += costs_[cell];
    return cost < enough;
  });
  return cost;
}

Box LabelPlacer::Place(const CNuvPoint& point, double width, double height) {
  const Box& view = view_.box;
  const double gap = 3 * view_.LineWidth();
  Box best{};
  std::uint32_t least = UINT32_MAX;
  for (const double distance : kDistances) {
    for (const Side& side : kSides) {
      const double away = gap + distance * height;
      const double left =
          Within(Beside(point.x, side.x, away, width), view.left + gap, view.right - width);
      const double top =
          Within(Beside(point.y, side.y, away, height), view.top + gap, view.bottom - height);
      const Box box{left, top, left + width, top + height};
      const std::uint32_t cost = Cost(box, least);
      if (cost >= least) continue;
      best = box;
      least = cost;
      if (cost == 0) break;
    }
    if (least == 0) break;
  }
  MarkText(best);
  return best;
}

}  // namespace nuvhost
