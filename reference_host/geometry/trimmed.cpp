#include "reference_host/geometry/trimmed.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

namespace geometry {
namespace {

/// Moves the values for which keep(value) holds to the front, without a branch for each; gives how
/// many they are.
template <class Keep>
std::size_t MoveToFront(double* values, std::size_t size, const Keep& keep) {
  std::size_t kept = 0;
  for (std::size_t i = 0; i < size; ++i) {
    const double value = values[i];
    values[kept] = value;
    kept += keep(value) ? 1 : 0;
  }
  return kept;
}

/// The value that has the rank when they are in order. Spoils the array.
double ValueAt(double* values, std::size_t size, std::size_t rank) {
  // A bad run of pivots is left to the library, which knows no bad ones.
  for (int round = 0; size > 12 && round < 50; ++round) {
    const double a = values[0];
    const double b = values[size / 2];
    const double c = values[size - 1];
    const double pivot = std::max(std::min(a, b), std::min(std::max(a, b), c));
    const std::size_t below = CountBelow(values, size, pivot);
    if (rank < below) {
      size = MoveToFront(values, size, [pivot](double value) { return value < pivot; });
      continue;
    }
    const std::size_t above =
        MoveToFront(values, size, [pivot](double value) { return value > pivot; });
    if (rank < size - above) return pivot;
    rank -= size - above;
    size = above;
  }
  std::nth_element(values, values + rank, values + size);
  return values[rank];
}

}  // namespace

std::size_t Draws::Below(std::size_t end) {
  state_ += 0x9e3779b97f4a7c15U;
  std::uint64_t bits = state_;
  bits = (bits ^ (bits >> 30)) * 0xbf58476d1ce4e5b9U;
  bits = (bits ^ (bits >> 27)) * 0x94d049bb133111ebU;
  bits ^= bits >> 31;
  return static_cast<std::size_t>(((bits >> 32) * end) >> 32);
}

std::vector<std::size_t> Sample(std::size_t count, std::size_t most) {
  std::vector<std::size_t> positions(std::min(count, most));
  if (count <= most) {
    std::iota(positions.begin(), positions.end(), std::size_t{0});
    return positions;
  }
  // Floyd's way: each subset is as likely as any other (Bentley and Floyd, "A sample of
  // brilliance", Communications of the ACM 30, 1987).
  std::vector<bool> taken(count);
  Draws draws;
  for (std::size_t i = 0; i < most; ++i) {
    const std::size_t last = count - most + i;
    const std::size_t any = draws.Below(last + 1);
    positions[i] = taken[any] ? last : any;
    taken[positions[i]] = true;
  }
  return positions;
}

std::size_t KeptOfSample(std::size_t count, std::size_t kept, std::size_t size) {
  if (size == count) return kept;
  // Hypergeometric.
  const auto n = static_cast<double>(count);
  const auto m = static_cast<double>(size);
  const double share = static_cast<double>(kept) / n;
  const double deviation = std::sqrt(m * share * (1.0 - share) * (n - m) / (n - 1.0));
  return static_cast<std::size_t>(std::max(m * share - 4.0 * deviation, 0.0));
}

std::size_t SampleSize(std::size_t count, std::size_t kept) {
  constexpr std::size_t kUsual = 512;
  constexpr std::size_t kMost = 32768;
  const std::size_t most = std::min(count, kMost);
  std::size_t size = std::min(count, kUsual);
  const double majority = 2.0 * static_cast<double>(kept) / static_cast<double>(count) - 1.0;
  if (majority <= 0.0) return size;
  // The margin of the sample must leave most of what the kept points are more than the others.
  const auto is_enough = [&] {
    const double lost =
        static_cast<double>(kept) / static_cast<double>(count) -
        static_cast<double>(KeptOfSample(count, kept, size)) / static_cast<double>(size);
    return lost <= 0.25 * majority;
  };
  while (size < most && !is_enough()) size = std::min(2 * size, most);
  return size;
}

Frame FrameOfMost(const CNuvPoint* points, const std::vector<std::size_t>& sample, std::size_t kept,
                  std::size_t count, const Box& box) {
  const std::size_t size = sample.size();
  std::vector<double> values(size);
  const auto fill = [&](const auto& of) {
    for (std::size_t i = 0; i < size; ++i) values[i] = of(points[sample[i]]);
  };
  fill([](const CNuvPoint& point) { return point.x; });
  const double x = ValueAt(values.data(), size, size / 2);
  fill([](const CNuvPoint& point) { return point.y; });
  const double y = ValueAt(values.data(), size, size / 2);
  // Halves: differences of huge coordinates may not fit.
  fill([=](const CNuvPoint& point) {
    return std::max(std::fabs(point.x * 0.5 - x * 0.5), std::fabs(point.y * 0.5 - y * 0.5));
  });
  double spread =
      ValueAt(values.data(), size, std::max(KeptOfSample(count, kept, size), std::size_t{1}) - 1);
  if (spread == 0.0) {
    spread = std::max(box.right * 0.5 - box.left * 0.5, box.bottom * 0.5 - box.top * 0.5);
  }
  return {x, y, spread, box.Magnitude()};
}

PointSet InFrame(const Frame& frame, const CNuvPoint* points,
                 const std::vector<std::size_t>& positions) {
  PointSet set(positions.size());
  for (std::size_t i = 0; i < set.Size(); ++i) {
    frame.Map(points[positions[i]], &set.x[i], &set.y[i]);
  }
  return set;
}

PointSet InFrame(const Frame& frame, const CNuvPoint* points, std::size_t count) {
  PointSet set(count);
  for (std::size_t i = 0; i < count; ++i) frame.Map(points[i], &set.x[i], &set.y[i]);
  return set;
}

Nearest::Nearest(const PointSet& set, std::size_t kept)
    : set_(set),
      kept_(kept),
      squared_(set.Size()),
      scratch_(set.Size() + 1),
      kept_x_(kept + 1),
      kept_y_(kept + 1) {}

/// Only the values between `low` and `high` need to be ordered, if it is there.
double Nearest::FindReach(std::size_t kept, double low, double high) {
  std::size_t below = CountBelow(squared_.data(), squared_.size(), low);
  std::size_t near = 0;
  for (const double squared : squared_) {
    scratch_[near] = squared;
    near += static_cast<std::size_t>(squared >= low) & static_cast<std::size_t>(squared <= high);
  }
  if (below >= kept || below + near < kept) {
    std::copy(squared_.begin(), squared_.end(), scratch_.begin());
    below = 0;
    near = squared_.size();
  }
  return ValueAt(scratch_.data(), near, kept - 1 - below);
}

double Nearest::Reach(std::size_t kept, double limit) {
  if (CountBelow(squared_.data(), squared_.size(), limit) < kept) return limit;
  return FindReach(kept, 0.25 * limit, limit);
}

/// Calls visit(position, 1 or 0) for each point, 1 for selected ones.
template <class Visit>
void Nearest::Visits(const Visit& visit) const {
  std::size_t ties = kept_ - CountBelow(squared_.data(), squared_.size(), reach_);
  for (std::size_t i = 0; i < squared_.size(); ++i) {
    const auto tie = static_cast<std::size_t>((squared_[i] == reach_) & (ties != 0));
    ties -= tie;
    visit(i, static_cast<std::size_t>(squared_[i] < reach_) | tie);
  }
}

double Nearest::Gather() {
  // Written without a branch, so that there is room for one more.
  const double* const x = set_.x.data();
  const double* const y = set_.y.data();
  double* const kept_x = kept_x_.data();
  double* const kept_y = kept_y_.data();
  double* const kept_squared = scratch_.data();
  std::size_t place = 0;
  const auto gather = [&](std::size_t i, std::size_t selected) {
    kept_x[place] = x[i];
    kept_y[place] = y[i];
    kept_squared[place] = squared_[i];
    place += selected;
  };
  const std::size_t size = squared_.size();
  const std::size_t within =
      CountBelow(squared_.data(), size, std::nextafter(reach_, std::numeric_limits<double>::max()));
  if (within == kept_) {
    for (std::size_t i = 0; i < size; ++i) gather(i, squared_[i] <= reach_ ? 1 : 0);
  } else {
    Visits(gather);
  }
  return SumOf(kept_squared, kept_);
}

Selection Nearest::Selected() const {
  Selection flags(squared_.size());
  Visits([&](std::size_t i, std::size_t selected) {
    flags[i] = static_cast<unsigned char>(selected);
  });
  return flags;
}

}  // namespace geometry
