#include "reference_host/geometry/enumerate.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <numeric>

#include "reference_host/geometry/circle_fit.h"
#include "reference_host/geometry/line_fit.h"

namespace geometry {
namespace {

/// Tries subsets and keeps the best.
class Trial {
 public:
  Trial(const PointSet& set, std::size_t kept)
      : set_(set), x_(kept), y_(kept), squared_(kept), points_(kept), best_(kept) {}

  /// A line through the points at `positions`, as many as are kept.
  void Line(const std::size_t* positions) {
    if (!MayBeBetter(positions)) return;
    Take(positions);
    LineFigure line;
    if (!line.Fit(x_.data(), y_.data(), x_.size())) return;
    line.SquaredDistances(x_.data(), y_.data(), x_.size(), squared_.data());
    Compete(positions, SumOf(squared_.data(), squared_.size()));
  }
  /// A circle through them as they are outside of the frame, by the fit that will be reported.
  void Circle(const std::size_t* positions, const CNuvPoint* points, const Frame& frame) {
    Take(positions);
    const double error = frame.Length(least_);
    double bound = 0.0;
    CircleFigure circle;
    const auto n = static_cast<double>(x_.size());
    circle.FitAbout(SumOf(x_.data(), x_.size()) / n, SumOf(y_.data(), y_.size()) / n, x_.data(),
                    y_.data(), x_.size(), error * error, &bound);
    if (bound > error * error) return;
    for (std::size_t i = 0; i < points_.size(); ++i) points_[i] = points[positions[i]];
    CircleFit fit;
    if (FitCircle(points_.data(), points_.size(), &fit)) Compete(positions, fit.error);
  }
  Selection Best() const {
    if (least_ == std::numeric_limits<double>::infinity()) return {};
    Selection flags(set_.Size());
    for (const std::size_t position : best_) flags[position] = 1;
    return flags;
  }

 private:
  /// By the sum of squares about the subset's principal axis, to what its rounding allows.
  bool MayBeBetter(const std::size_t* positions) const {
    double x = 0.0, y = 0.0, xx = 0.0, xy = 0.0, yy = 0.0;
    for (std::size_t i = 0; i < best_.size(); ++i) {
      const double px = set_.x[positions[i]];
      const double py = set_.y[positions[i]];
      x += px;
      y += py;
      xx += px * px;
      xy += px * py;
      yy += py * py;
    }
    const auto n = static_cast<double>(best_.size());
    const double along = (xx - x * x / n) - (yy - y * y / n);
    const double across = 2.0 * (xy - x * y / n);
    const double size = (xx - x * x / n) + (yy - y * y / n);
    const double squares = 0.5 * (size - std::sqrt(along * along + across * across));
    return squares - 1e-13 * (xx + yy) < least_;
  }
  void Take(const std::size_t* positions) {
    for (std::size_t i = 0; i < x_.size(); ++i) {
      x_[i] = set_.x[positions[i]];
      y_[i] = set_.y[positions[i]];
    }
  }
  void Compete(const std::size_t* positions, double error) {
    if (!(error < least_)) return;
    least_ = error;
    std::copy_n(positions, best_.size(), best_.begin());
  }

  const PointSet& set_;
  std::vector<double> x_;
  std::vector<double> y_;
  std::vector<double> squared_;
  std::vector<CNuvPoint> points_;
  std::vector<std::size_t> best_;
  double least_ = std::numeric_limits<double>::infinity();
};

/// The points `first` and `second`, in the order from left to right, change their order across
/// lines of this slope.
struct Turn {
  double slope;
  std::uint32_t first;
  std::uint32_t second;
};

std::vector<Turn> TurnsInOrder(const PointSet& set, const std::vector<std::size_t>& order) {
  std::vector<Turn> turns;
  turns.reserve(order.size() * (order.size() - 1) / 2);
  for (std::uint32_t i = 0; i < order.size(); ++i) {
    for (std::uint32_t k = i + 1; k < order.size(); ++k) {
      const double dx = set.x[order[k]] - set.x[order[i]];
      const double dy = set.y[order[k]] - set.y[order[i]];
      if (dx != 0.0) {
        turns.push_back({dy / dx, i, k});
      } else if (dy != 0.0) {
        turns.push_back({std::numeric_limits<double>::infinity(), i, k});
      }
    }
  }
  std::sort(turns.begin(), turns.end(), [](const Turn& a, const Turn& b) {
    if (a.slope != b.slope) return a.slope < b.slope;
    return a.first != b.first ? a.first < b.first : a.second < b.second;
  });
  return turns;
}

}  // namespace

Selection BestLineSubset(const PointSet& set, std::size_t kept) {
  const std::size_t size = set.Size();
  // Across a line that is all but vertical the points come from left to right.
  std::vector<std::size_t> start(size);
  std::iota(start.begin(), start.end(), std::size_t{0});
  std::sort(start.begin(), start.end(), [&set](std::size_t a, std::size_t b) {
    if (set.x[a] != set.x[b]) return set.x[a] < set.x[b];
    return set.y[a] != set.y[b] ? set.y[a] < set.y[b] : a < b;
  });
  std::vector<std::size_t> order(start);  // positions in the set, in the order across the line
  std::vector<std::size_t> ranks(size);   // the rank from left to right of what stands there
  std::vector<std::size_t> places(size);  // where the point of a rank stands
  std::iota(ranks.begin(), ranks.end(), std::size_t{0});
  std::iota(places.begin(), places.end(), std::size_t{0});

  Trial trial(set, kept);
  for (std::size_t first = 0; first + kept <= size; ++first) trial.Line(&order[first]);
  for (const Turn& turn : TurnsInOrder(set, start)) {
    const std::size_t from = places[turn.first];
    const std::size_t to = places[turn.second];
    if (from > to) continue;
    // Neighbours, but for points that lie on one line with others between them: all those turn.
    std::sort(ranks.begin() + static_cast<std::ptrdiff_t>(from),
              ranks.begin() + static_cast<std::ptrdiff_t>(to) + 1, std::greater<>());
    for (std::size_t place = from; place <= to; ++place) {
      places[ranks[place]] = place;
      order[place] = start[ranks[place]];
    }
    // The runs that begin or end between those places are new.
    for (std::size_t cut = from + 1; cut <= to; ++cut) {
      if (cut + kept <= size) trial.Line(&order[cut]);
      if (cut >= kept) trial.Line(&order[cut - kept]);
    }
  }
  return trial.Best();
}

bool AreCircleSubsetsFew(std::size_t count, std::size_t kept) {
  // 7 of 14 points and 8 of 14: the most that up to 14 points have.
  constexpr std::size_t kMost = std::size_t{3432} * 8;
  std::size_t subsets = 1;
  for (std::size_t out = 1; out <= count - kept; ++out) {
    subsets = subsets * (count - out + 1) / out;
    if (subsets * kept > kMost) return false;
  }
  return true;
}

Selection BestCircleSubset(const CNuvPoint* points, const Frame& frame, const PointSet& set,
                           std::size_t kept) {
  Trial trial(set, kept);
  std::vector<std::size_t> positions(kept);
  std::iota(positions.begin(), positions.end(), std::size_t{0});
  const std::size_t out = set.Size() - kept;
  for (;;) {
    trial.Circle(positions.data(), points, frame);
    // The next subset: the last position that can rise does, and those behind follow it.
    std::size_t rising = kept;
    while (rising > 0 && positions[rising - 1] == rising - 1 + out) --rising;
    if (rising == 0) return trial.Best();
    std::iota(positions.begin() + static_cast<std::ptrdiff_t>(rising) - 1, positions.end(),
              positions[rising - 1] + 1);
  }
}

}  // namespace geometry
