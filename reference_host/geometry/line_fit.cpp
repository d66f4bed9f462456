#include "reference_host/geometry/line_fit.h"

#include <cmath>
#include <numbers>

#include "reference_host/geometry/frame.h"
#include "reference_host/geometry/two.h"

namespace geometry {
namespace {

/// The mean of points, and the sums of squares and products about the mean.
struct Scatter {
  double x = 0.0;
  double y = 0.0;
  double xx = 0.0;
  double xy = 0.0;
  double yy = 0.0;
  double raw = 0.0;  ///< the sum of squares about the origin

  double Size() const { return xx + yy; }
};

class ScatterSums {
 public:
  void Add(Two x, Two y) {
    x_ += x;
    y_ += y;
    xx_ += x * x;
    xy_ += x * y;
    yy_ += y * y;
  }
  void Add(const ScatterSums& other) {
    x_ += other.x_;
    y_ += other.y_;
    xx_ += other.xx_;
    xy_ += other.xy_;
    yy_ += other.yy_;
  }
  Scatter Of(std::size_t count) const {
    const auto n = static_cast<double>(count);
    Scatter scatter;
    scatter.x = Sum(x_) / n;
    scatter.y = Sum(y_) / n;
    scatter.raw = Sum(xx_) + Sum(yy_);
    scatter.xx = Sum(xx_) - n * scatter.x * scatter.x;
    scatter.xy = Sum(xy_) - n * scatter.x * scatter.y;
    scatter.yy = Sum(yy_) - n * scatter.y * scatter.y;
    return scatter;
  }

 private:
  Two x_, y_, xx_, xy_, yy_;
};

/// `pair(i, sums)` adds the points at i and i + 1, `last(i, sums)` the point at i.
template <class AddPair, class AddLast>
Scatter ScatterOf(std::size_t count, const AddPair& pair, const AddLast& last) {
  ScatterSums chains[2];
  std::size_t i = 0;
  for (; i + 3 < count; i += 4) {
    pair(i, chains[0]);
    pair(i + 2, chains[1]);
  }
  for (; i + 1 < count; i += 2) pair(i, chains[0]);
  if (i < count) last(i, chains[1]);
  chains[0].Add(chains[1]);
  return chains[0].Of(count);
}

/// Of points whose coordinates are mapped, one at a time or two side by side.
template <class MapX, class MapY>
Scatter ScatterMapped(const CNuvPoint* points, std::size_t count, const MapX& x, const MapY& y) {
  const auto pair = [&](std::size_t i, ScatterSums& sums) {
    const CNuvPoint* p = points + i;
    sums.Add(x(Two(p[0].x, p[1].x)), y(Two(p[0].y, p[1].y)));
  };
  const auto last = [&](std::size_t i, ScatterSums& sums) {
    sums.Add(Two(x(points[i].x), 0.0), Two(y(points[i].y), 0.0));
  };
  return ScatterOf(count, pair, last);
}

Scatter ScatterIn(const Frame& frame, const CNuvPoint* points, std::size_t count) {
  return ScatterMapped(
      points, count, [=](auto x) { return frame.X(x); }, [=](auto y) { return frame.Y(y); });
}

/// In the frame of unit 1 about an origin.
Scatter ScatterAbout(const CNuvPoint& origin, const CNuvPoint* points, std::size_t count) {
  const auto less = [](double start) {
    return [start](auto value) { return value - decltype(value)(start); };
  };
  return ScatterMapped(points, count, less(origin.x), less(origin.y));
}

Scatter ScatterAbout(double origin_x, double origin_y, const double* x, const double* y,
                     std::size_t count) {
  const auto pair = [=](std::size_t i, ScatterSums& sums) {
    sums.Add(Two(x + i) - Two(origin_x), Two(y + i) - Two(origin_y));
  };
  const auto last = [=](std::size_t i, ScatterSums& sums) {
    sums.Add(Two(x[i] - origin_x, 0.0), Two(y[i] - origin_y, 0.0));
  };
  return ScatterOf(count, pair, last);
}

/// Whether the sums lost no more than their last bits to a mean far from the origin.
bool IsSharp(const Scatter& scatter) {
  return scatter.Size() * 8.0 >= scatter.raw;
}

/// The axis along which the points are scattered most: its double angle is that of the vector
/// (xx - yy, 2 xy), halved without trigonometric functions, which differ between platforms.
Direction PrincipalAxis(const Scatter& scatter) {
  const double along = scatter.xx - scatter.yy;
  const double across = 2.0 * scatter.xy;
  const double length = std::sqrt(along * along + across * across);
  Direction axis;
  if (length == 0.0) return axis;
  if (along >= 0.0) {
    axis.cosine = std::sqrt((1.0 + along / length) * 0.5);
    axis.sine = across / length / (2.0 * axis.cosine);
  } else {
    axis.sine = std::sqrt((1.0 - along / length) * 0.5);
    axis.cosine = across / length / (2.0 * axis.sine);
  }
  if (axis.cosine < 0.0) return {-axis.cosine, -axis.sine};
  return {std::fabs(axis.cosine), axis.sine};
}

}  // namespace

double LineFit::SignedDistance(const CNuvPoint& point) const {
  // Halves: the difference of two huge coordinates may not fit.
  const double dx = point.x * 0.5 - x * 0.5;
  const double dy = point.y * 0.5 - y * 0.5;
  return (dy * direction.cosine - dx * direction.sine) * 2.0;
}

bool FitLine(const CNuvPoint* points, std::size_t count, LineFit* fit) {
  if (count < LineFigure::kPoints) return false;
  // Mostly one pass about the first point will do.
  Frame frame(points->x, points->y, 0.0, 0.0);
  Scatter scatter = ScatterAbout(*points, points, count);
  if (!(scatter.raw > 1e-100 && scatter.raw < 1e100 && IsSharp(scatter))) {
    const Box box = BoundingBox(points, count);
    if (!box.IsFinite()) return false;
    frame = Frame::Around(box);
    scatter = ScatterIn(frame, points, count);
    if (!IsSharp(scatter)) {
      const double x = frame.BackX(scatter.x);
      const double y = frame.BackY(scatter.y);
      frame = Frame(x, y, frame.BackLength(1.0), box.Magnitude());
      scatter = ScatterIn(frame, points, count);
    }
    if (scatter.Size() <= 0.0) return false;
  }
  fit->direction = PrincipalAxis(scatter);
  fit->x = frame.BackX(scatter.x);
  fit->y = frame.BackY(scatter.y);
  fit->line.a = std::atan2(fit->direction.sine, fit->direction.cosine);
  if (fit->line.a <= -std::numbers::pi / 2.0) {
    fit->line.a = -fit->line.a;
    fit->direction = {-fit->direction.cosine, -fit->direction.sine};
  }
  fit->line.d = fit->y * fit->direction.cosine - fit->x * fit->direction.sine;
  return std::isfinite(fit->line.d);
}

bool LineFigure::Through(const double* x, const double* y, const std::size_t* positions) {
  const double px = x[positions[0]];
  const double py = y[positions[0]];
  const double dx = x[positions[1]] - px;
  const double dy = y[positions[1]] - py;
  const double length = std::sqrt(dx * dx + dy * dy);
  if (length == 0.0) return false;
  direction = {dx / length, dy / length};
  offset = py * direction.cosine - px * direction.sine;
  return true;
}

bool LineFigure::Fit(const double* x, const double* y, std::size_t count) {
  Scatter scatter = ScatterAbout(x[0], y[0], x, y, count);
  double mean_x = x[0] + scatter.x;
  double mean_y = y[0] + scatter.y;
  if (!IsSharp(scatter)) {
    scatter = ScatterAbout(mean_x, mean_y, x, y, count);
    mean_x += scatter.x;
    mean_y += scatter.y;
  }
  if (scatter.Size() <= 0.0) return false;
  direction = PrincipalAxis(scatter);
  offset = mean_y * direction.cosine - mean_x * direction.sine;
  return true;
}

void LineFigure::SquaredDistances(const double* x, const double* y, std::size_t count,
                                  double* out) const {
  std::size_t i = 0;
  for (; i + 1 < count; i += 2) Store(SquaredDistance(Two(x + i), Two(y + i)), out + i);
  if (i < count) out[i] = SquaredDistance(x[i], y[i]);
}

}  // namespace geometry
