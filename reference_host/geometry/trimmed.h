// Least trimmed squares: the points that a figure fits best when a number of them may be left out.
//
// Of n points h are kept such that the sum of their squared distances from the figure fitted to
// them is smallest (Rousseeuw, "Least median of squares regression", JASA 79, 1984). The search is
// Rousseeuw and Van Driessen's FAST-LTS ("Computing LTS regression for large data sets", Data
// Mining and Knowledge Discovery 12, 2006): figures through few points drawn at random start it,
// and a concentration step replaces a figure by the one fitted to the h points nearest to it,
// which never makes the sum larger. Of many points a sample is searched first, and its best figures
// are carried to a larger one and to all points. The draws are the same in every run.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <utility>
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

/// Whether each point of a set is selected: bytes, which are faster than bits.
using Selection = std::vector<unsigned char>;

/// How many points to keep of a sample of that size: their share, less four standard deviations
/// of how many of them it may happen to have, so that none of the others has to be kept.
std::size_t KeptOfSample(std::size_t count, std::size_t kept, std::size_t size);

/// How many points to search first: so many that those kept of the sample are as clearly most of it
/// as they are of all points. Else the outliers, where they are close together, would be.
std::size_t SampleSize(std::size_t count, std::size_t kept);

/// So many of the positions up to `count`, drawn at random; all where there are no more.
std::vector<std::size_t> Sample(std::size_t count, std::size_t most);

/// A frame about the middle of the majority of the `count` points, as the sample has them: far
/// outliers have no part in it.
Frame FrameOfMost(const CNuvPoint* points, const std::vector<std::size_t>& sample, std::size_t kept,
                  std::size_t count, const Box& box);

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
  /// Measures squared distances from a figure, for Reach.
  template <class Figure>
  void Measure(const Figure& figure) {
    figure.SquaredDistances(set_.x.data(), set_.y.data(), set_.Size(), squared_.data());
  }
  /// The square of the largest distance of the so many nearest points; `limit` unless it is
  /// smaller.
  double Reach(std::size_t kept, double limit);

  const double* X() const { return kept_x_.data(); }
  const double* Y() const { return kept_y_.data(); }
  std::size_t Kept() const { return kept_; }
  /// Whether each point of the set is selected.
  Selection Selected() const;

 private:
  double FindReach(std::size_t kept, double low, double high);
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
double Nearest::Select(const Figure& figure) {
  Measure(figure);
  // Most often somewhat less than the last one.
  reach_ = FindReach(kept_, 0.5 * reach_, 1.1 * reach_);
  return Gather();
}

/// Enough for concentration to end by itself.
constexpr int kMostSteps = 100;

/// Concentration steps from a figure whose selection has that sum, until it no longer falls, or so
/// many; gives the sum.
template <class Figure, class Fitting>
double Concentrate(Figure& figure, double squares, Nearest& nearest, int steps,
                   const Fitting& fit) {
  for (int step = 0; step < steps; ++step) {
    Figure next = figure;
    if (!fit(next)) break;
    const double next_squares = nearest.Select(next);
    if (!(next_squares < squares)) break;
    figure = next;
    squares = next_squares;
  }
  return squares;
}

/// Concentration to the end with the fit of least squares, from a figure whose selection has that
/// sum; gives the least sum, and leaves its selection, of those that have such a fit. Infinity
/// where none has, as where the centre of a circle runs away.
template <class Figure>
double ConcentrateClosely(Figure figure, double squares, Nearest& nearest) {
  Figure selecting = figure;
  double least = std::numeric_limits<double>::infinity();
  for (int step = 0; step < kMostSteps && squares < least; ++step) {
    Figure next = figure;
    if (!next.FitClosely(nearest.X(), nearest.Y(), nearest.Kept())) break;
    least = squares;
    selecting = figure;
    figure = next;
    squares = nearest.Select(figure);
    if (std::fabs(squares - least) <= 1e-13 * least) return least;  // the same points
  }
  nearest.Select(selecting);
  return least;
}

template <class Figure>
struct Candidate {
  double squares;
  Figure figure;
};
template <class Figure>
using Candidates = std::vector<Candidate<Figure>>;

/// How the search weighs time against certainty.
struct Effort {
  double least_draws;
  std::size_t starts;   ///< of the draws, as many by either reach are concentrated at all
  std::size_t first;    ///< of those, as many as are concentrated to the end
  std::size_t carried;  ///< of those, as many as are carried to more points
  double alike;         ///< candidates whose sums differ by less of it count as one
};

/// A candidate with a sum so many times the best one is given up.
constexpr double kFarWorse = 4.0;

/// Keeps the best candidates, of equal ones the first, and none that is far worse than the best.
template <class Figure>
void Rank(Candidates<Figure>& candidates, std::size_t most, double alike) {
  std::stable_sort(candidates.begin(), candidates.end(),
                   [](const auto& a, const auto& b) { return a.squares < b.squares; });
  // The same figure comes from many draws.
  candidates.erase(std::unique(candidates.begin(), candidates.end(),
                               [alike](const auto& a, const auto& b) {
                                 return b.squares <= a.squares * (1.0 + alike);
                               }),
                   candidates.end());
  std::size_t size = 0;
  while (size < std::min(most, candidates.size()) &&
         candidates[size].squares <= kFarWorse * candidates[0].squares) {
    ++size;
  }
  candidates.resize(size);
}

/// The figures that reach so many points within the smallest distances, of equal ones the first.
template <class Figure>
class Shortlist {
 public:
  Shortlist(std::size_t kept, std::size_t most) : kept_(kept), most_(most) {}

  /// Looks at a figure that `nearest` has measured.
  void Offer(const Figure& figure, Nearest& nearest) {
    const double reach = nearest.Reach(kept_, limit_);
    if (!(reach < limit_)) return;
    const auto place =
        std::lower_bound(listed_.begin(), listed_.end(), reach,
                         [](const auto& other, double value) { return other.squares < value; });
    if (place != listed_.end() && place->squares == reach) return;
    listed_.insert(place, {reach, figure});
    if (listed_.size() > most_) listed_.pop_back();
    if (listed_.size() == most_) limit_ = listed_.back().squares;
  }
  const Candidates<Figure>& Listed() const { return listed_; }

 private:
  std::size_t kept_;
  std::size_t most_;
  Candidates<Figure> listed_;
  double limit_ = std::numeric_limits<double>::infinity();
};

/// Figures through points of the set drawn at random: those with the smallest reach to all points
/// kept, and to seven eighths of them. Where some that must be kept are far from all others, the
/// first leans towards them, and the second does not see them.
template <class Figure>
Candidates<Figure> DrawStarts(const PointSet& set, Nearest& nearest, const Effort& effort) {
  // So many make it as good as certain that enough of them have only kept points.
  const std::size_t kept = nearest.Kept();
  const double share = static_cast<double>(kept) / static_cast<double>(set.Size());
  double chance = 1.0;
  for (std::size_t i = 0; i < Figure::kPoints; ++i) chance *= share;
  const int count = static_cast<int>(std::clamp(14.0 / chance, effort.least_draws, 2000.0));

  Shortlist<Figure> by_all(kept, effort.starts);
  Shortlist<Figure> by_most(std::max(kept - kept / 8, Figure::kPoints), effort.starts);
  Draws draws;
  for (int draw = 0; draw < count; ++draw) {
    std::array<std::size_t, Figure::kPoints> positions;
    for (std::size_t& position : positions) position = draws.Below(set.Size());
    Figure figure;
    if (!figure.Through(set.x.data(), set.y.data(), positions.data())) continue;
    nearest.Measure(figure);
    by_all.Offer(figure, nearest);
    by_most.Offer(figure, nearest);
  }
  Candidates<Figure> starts = by_all.Listed();
  starts.insert(starts.end(), by_most.Listed().begin(), by_most.Listed().end());
  Figure plain;
  if (plain.Fit(set.x.data(), set.y.data(), set.Size())) starts.push_back({0.0, plain});
  return starts;
}

template <class Figure>
Candidates<Figure> SearchSample(const PointSet& set, std::size_t kept, const Effort& effort) {
  Nearest nearest(set, kept);
  const auto fit = [&](Figure& figure) {
    return figure.Fit(nearest.X(), nearest.Y(), nearest.Kept());
  };
  Candidates<Figure> candidates = DrawStarts<Figure>(set, nearest, effort);
  // One step tells good starts from bad ones.
  for (auto& [squares, figure] : candidates) {
    squares = Concentrate(figure, nearest.Select(figure), nearest, 1, fit);
  }
  Rank(candidates, effort.first, effort.alike);
  for (auto& [squares, figure] : candidates) {
    squares = Concentrate(figure, nearest.Select(figure), nearest, kMostSteps, fit);
  }
  Rank(candidates, effort.carried, effort.alike);
  return candidates;
}

/// Which points to use, `kept` of them; empty where no figure goes through any of the points.
/// Figure::Fit is the fit of the early steps, Figure::FitClosely that of the last ones.
/// `error_of(selected, squares)` judges a selection whose concentration ended with that sum.
template <class Figure, class ErrorOf>
Selection SearchTrimmed(const CNuvPoint* points, std::size_t count, std::size_t kept,
                        const Box& box, const Effort& effort, const ErrorOf& error_of) {
  const std::vector<std::size_t> positions = Sample(count, SampleSize(count, kept));
  const Frame frame = FrameOfMost(points, positions, kept, count, box);
  const auto kept_of = [&](std::size_t size) {
    return std::max(KeptOfSample(count, kept, size), Figure::kPoints);
  };
  Candidates<Figure> candidates =
      SearchSample<Figure>(InFrame(frame, points, positions), kept_of(positions.size()), effort);
  const auto carry = [&](const PointSet& set, std::size_t set_kept) {
    Nearest nearest(set, set_kept);
    const auto fit = [&](Figure& figure) {
      return figure.Fit(nearest.X(), nearest.Y(), nearest.Kept());
    };
    for (auto& [squares, figure] : candidates) {
      squares = Concentrate(figure, nearest.Select(figure), nearest, kMostSteps, fit);
    }
    Rank(candidates, effort.carried, effort.alike);
  };
  // Figures alike are told apart, and all of them made better, at less than the cost of all points.
  if (count > 4096 && positions.size() < 2048) {
    const std::vector<std::size_t> more = Sample(count, 2048);
    carry(InFrame(frame, points, more), kept_of(more.size()));
  }
  const PointSet all = InFrame(frame, points, count);
  Nearest nearest(all, kept);
  Selection best;
  double least = std::numeric_limits<double>::infinity();
  double least_error = least;
  for (const auto& candidate : candidates) {
    double squares = nearest.Select(candidate.figure);
    // One that is far worse before it is concentrated to all points is so behind.
    if (squares > kFarWorse * least) continue;
    squares = ConcentrateClosely(candidate.figure, squares, nearest);
    if (squares == std::numeric_limits<double>::infinity()) continue;
    least = std::min(least, squares);
    Selection selected = nearest.Selected();
    const double error = error_of(selected, squares);
    if (!(error < least_error)) continue;
    least_error = error;
    best = std::move(selected);
  }
  return best;
}

}  // namespace geometry
