// Least trimmed squares: the points that a figure fits best when a number of them may be left out.
//
// Of n points h are kept such that the sum of their squared distances from the figure fitted to
// them is smallest (Rousseeuw, "Least median of squares regression", JASA 79, 1984). The search is
// Rousseeuw and Van Driessen's FAST-LTS ("Computing LTS regression for large data sets", Data
// Mining and Knowledge Discovery 12, 2006): figures through few points drawn at random start it,
// and a concentration step replaces a figure by the one fitted to the h points nearest to it,
// which never makes the sum larger. The draws are the same in every run.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

#include "reference_host/geometry/frame.h"
#include "reference_host/geometry/two.h"

namespace geometry {

/// Points in the coordinates of a frame.
struct PointSet {
  explicit PointSet(std::size_t count) : x(count), y(count) {}
  std::vector<double> x;
  std::vector<double> y;

  std::size_t Size() const { return x.size(); }
};

/// Positions of points spread evenly over `count` ones; all where there are few.
std::vector<std::size_t> Sample(std::size_t count);

/// A frame about the middle of the majority of the points: far outliers have no part in it.
Frame FrameOfMost(const CNuvPoint* points, const std::vector<std::size_t>& sample, std::size_t kept,
                  const Box& box);

/// The points at the positions, or all.
PointSet InFrame(const Frame& frame, const CNuvPoint* points,
                 const std::vector<std::size_t>& positions);
PointSet InFrame(const Frame& frame, const CNuvPoint* points, std::size_t count);

/// SplitMix64 (Steele, Lea and Flood, "Fast splittable pseudorandom number generators", OOPSLA
/// 2014), the same sequence every time.
class Draws {
 public:
  /// A number below `end`, which fits 32 bits.
  std::size_t Below(std::size_t end);

 private:
  std::uint64_t state_ = 0;
};

/// The `kept` points of a set that are nearest to a figure, of equally near ones the first.
class Nearest {
 public:
  Nearest(const PointSet& set, std::size_t kept);

  /// Selects by squared distances from the figure; their sum over the selected points.
  template <class Figure>
  double Select(const Figure& figure);
  /// The square of the largest distance among those that Select would select; `limit` unless it
  /// is smaller.
  template <class Figure>
  double Reach(const Figure& figure, double limit);

  const double* X() const { return kept_x_.data(); }
  const double* Y() const { return kept_y_.data(); }
  std::size_t Kept() const { return kept_; }
  /// Whether each point of the set is selected.
  std::vector<bool> Selected() const;

 private:
  template <class Figure>
  void Measure(const Figure& figure);
  double FindReach(double low, double high);
  double Gather();
  template <class Visit>
  void Visits(const Visit& visit) const;

  const PointSet& set_;
  std::size_t kept_;
  std::vector<double> squared_;
  std::vector<double> scratch_;
  std::vector<double> kept_x_;
  std::vector<double> kept_y_;
  double reach_ = 0.0;
};

template <class Figure>
void Nearest::Measure(const Figure& figure) {
  const std::size_t size = set_.Size();
  const double* const x = set_.x.data();
  const double* const y = set_.y.data();
  std::size_t i = 0;
  for (; i + 1 < size; i += 2) {
    Store(figure.SquaredDistance(Two(x + i), Two(y + i)), squared_.data() + i);
  }
  if (i < size) squared_[i] = figure.SquaredDistance(x[i], y[i]);
}

template <class Figure>
double Nearest::Select(const Figure& figure) {
  Measure(figure);
  // Most often much the same as the last one.
  reach_ = FindReach(0.7 * reach_, 1.4 * reach_);
  return Gather();
}

template <class Figure>
double Nearest::Reach(const Figure& figure, double limit) {
  Measure(figure);
  if (CountBelow(squared_.data(), squared_.size(), limit) < kept_) return limit;
  return FindReach(0.25 * limit, limit);
}

/// Enough for concentration to end by itself.
constexpr int kMostSteps = 100;

/// Concentration steps until the sum no longer falls, or so many; gives the sum. The last selection
/// is that of the figure.
template <class Figure, class Fitting>
double Concentrate(Figure& figure, Nearest& nearest, int steps, const Fitting& fit) {
  double squares = nearest.Select(figure);
  for (int step = 0; step < steps; ++step) {
    Figure next = figure;
    if (!fit(next)) break;
    const double next_squares = nearest.Select(next);
    if (!(next_squares < squares)) {
      if (next_squares != squares) nearest.Select(figure);
      break;
    }
    figure = next;
    squares = next_squares;
  }
  return squares;
}

/// The figures with the smallest reach so far.
template <class Figure>
class BestStarts {
 public:
  static constexpr std::size_t kMost = Figure::kStarts;

  BestStarts() { reaches_.fill(std::numeric_limits<double>::infinity()); }
  double Limit() const { return reaches_.back(); }
  void Add(const Figure& figure, double reach) {
    // The same figure comes from many draws.
    if (std::find(reaches_.begin(), reaches_.end(), reach) != reaches_.end()) return;
    std::size_t place = kMost - 1;
    for (; place > 0 && reach < reaches_[place - 1]; --place) {
      reaches_[place] = reaches_[place - 1];
      figures_[place] = figures_[place - 1];
    }
    reaches_[place] = reach;
    figures_[place] = figure;
    size_ = std::min(size_ + 1, kMost);
  }
  const Figure* begin() const { return figures_.data(); }
  const Figure* end() const { return figures_.data() + size_; }

 private:
  std::array<double, kMost> reaches_;
  std::array<Figure, kMost> figures_;
  std::size_t size_ = 0;
};

/// How many draws make it as good as certain that one of them has only kept points.
template <class Figure>
int DrawCount(std::size_t count, std::size_t kept) {
  constexpr double kLeast = Figure::kPoints == 2 ? 60.0 : 120.0;
  const double share = static_cast<double>(kept) / static_cast<double>(count);
  double chance = 1.0;
  for (std::size_t i = 0; i < Figure::kPoints; ++i) chance *= share;
  return static_cast<int>(std::clamp(14.0 / chance, kLeast, 2000.0));
}

/// The best figure for the kept part of a sample; false where there is none.
template <class Figure>
bool SearchSample(const PointSet& sample, std::size_t kept, Figure* best) {
  Nearest nearest(sample, kept);
  BestStarts<Figure> starts;
  Draws draws;
  for (int draw = DrawCount<Figure>(sample.Size(), kept); draw > 0; --draw) {
    std::array<std::size_t, Figure::kPoints> positions;
    for (std::size_t& position : positions) position = draws.Below(sample.Size());
    Figure figure;
    if (!figure.Through(sample.x.data(), sample.y.data(), positions.data())) continue;
    const double reach = nearest.Reach(figure, starts.Limit());
    if (reach < starts.Limit()) starts.Add(figure, reach);
  }
  const auto fit = [&](Figure& figure) {
    return figure.Fit(nearest.X(), nearest.Y(), nearest.Kept());
  };
  Figure plain;
  if (plain.Fit(sample.x.data(), sample.y.data(), sample.Size())) starts.Add(plain, 0.0);
  // Two steps tell good starts from bad ones.
  struct Candidate {
    double squares;
    Figure figure;
  };
  std::vector<Candidate> candidates;
  for (Figure figure : starts) {
    const double squares = Concentrate(figure, nearest, 2, fit);
    candidates.push_back({squares, figure});
  }
  std::stable_sort(candidates.begin(), candidates.end(),
                   [](const Candidate& a, const Candidate& b) { return a.squares < b.squares; });
  double least = std::numeric_limits<double>::infinity();
  for (std::size_t i = 0; i < std::min(Figure::kFinalists, candidates.size()); ++i) {
    const double squares = Concentrate(candidates[i].figure, nearest, kMostSteps, fit);
    if (!(squares < least)) continue;
    least = squares;
    *best = candidates[i].figure;
  }
  return least < std::numeric_limits<double>::infinity();
}

/// Which points to use, `kept` of them; empty where no figure goes through any of the points.
/// Figure::Fit is the fit of the early steps, Figure::FitClosely that of the last ones.
template <class Figure>
std::vector<bool> SearchTrimmed(const CNuvPoint* points, std::size_t count, std::size_t kept,
                                const Box& box) {
  const std::vector<std::size_t> positions = Sample(count);
  // In proportion, rounded up.
  const std::size_t kept_of_sample =
      std::max((kept * positions.size() + count - 1) / count, Figure::kPoints);
  const Frame frame = FrameOfMost(points, positions, kept_of_sample, box);
  Figure figure;
  if (!SearchSample(InFrame(frame, points, positions), kept_of_sample, &figure)) return {};
  const PointSet all = InFrame(frame, points, count);
  Nearest nearest(all, kept);
  Concentrate(figure, nearest, kMostSteps, [&](Figure& next) {
    return next.FitClosely(nearest.X(), nearest.Y(), nearest.Kept());
  });
  return nearest.Selected();
}

}  // namespace geometry
