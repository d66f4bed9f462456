#include "algorithm/cluster.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>

namespace formula {
namespace {

/// How many of the sorted numbers lie below a value; without branches that no processor could
/// foresee.
std::size_t CountBelow(const double* numbers, std::size_t size, double value) {
  constexpr std::size_t kFew = 8;
  std::size_t below = 0;
  while (size > kFew) {
    const std::size_t half = size / 2;
    below += half * static_cast<std::size_t>(numbers[below + half - 1] < value);
    size -= half;
  }
  const double* const rest = numbers + below;
  for (std::size_t i = 0; i < size; ++i) below += static_cast<std::size_t>(rest[i] < value);
  return below;
}

/// Finite centres in increasing order, each with its cluster's number, in blocks small enough to
/// insert into. Two infinities stand at either end, so that neighbours of every place have
/// neighbours.
class SortedCentres {
 public:
  /// A centre's place, or the place behind the last of a block.
  struct Place {
    std::size_t block;
    std::size_t at;
  };

  SortedCentres() {
    AddBlock(0);
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    for (const double end : {kInfinity, kInfinity, -kInfinity, -kInfinity}) Insert({0, 0}, end, 0);
  }

  /// Where the centres that are not below the number begin.
  Place Begin(double number) const {
    const std::size_t below = CountBelow(firsts_.data(), firsts_.size(), number);
    const Block& block = *blocks_[below - 1];
    return {below - 1, CountBelow(block.centres, block.size, number)};
  }
  Place Before(Place place) const {
    if (place.at > 0) return {place.block, place.at - 1};
    return {place.block - 1, blocks_[place.block - 1]->size - 1};
  }
  /// The place itself, unless it is behind the last of a block.
  Place Settled(Place place) const {
    if (place.at < blocks_[place.block]->size) return place;
    return {place.block + 1, 0};
  }
  Place Behind(Place place) const { return Settled({place.block, place.at + 1}); }
  double Centre(Place place) const { return blocks_[place.block]->centres[place.at]; }
  std::size_t Cluster(Place place) const { return blocks_[place.block]->clusters[place.at]; }

  /// The place must be where Begin(centre) is.
  void Insert(Place place, double centre, std::size_t cluster) {
    if (blocks_[place.block]->size == kBlockSize) {
      Split(place.block);
      if (place.at > kHalf) place = {place.block + 1, place.at - kHalf};
    }
    Block& block = *blocks_[place.block];
    for (std::size_t i = block.size; i > place.at; --i) {
      block.centres[i] = block.centres[i - 1];
      block.clusters[i] = block.clusters[i - 1];
    }
    block.centres[place.at] = centre;
    block.clusters[place.at] = cluster;
    ++block.size;
    firsts_[place.block] = block.centres[0];
  }

  void Remove(Place place) {
    Block& block = *blocks_[place.block];
    --block.size;
    for (std::size_t i = place.at; i < block.size; ++i) {
      block.centres[i] = block.centres[i + 1];
      block.clusters[i] = block.clusters[i + 1];
    }
    if (block.size > 0) {
      firsts_[place.block] = block.centres[0];
    } else {
      firsts_.erase(firsts_.begin() + static_cast<std::ptrdiff_t>(place.block));
      blocks_.erase(blocks_.begin() + static_cast<std::ptrdiff_t>(place.block));
    }
  }

  /// Gives a centre another value; it mostly stays between its neighbours.
  void Move(Place place, double centre) {
    if (Centre(Before(place)) <= centre && centre <= Centre(Behind(place))) {
      blocks_[place.block]->centres[place.at] = centre;
      if (place.at == 0) firsts_[place.block] = centre;
      return;
    }
    const std::size_t cluster = Cluster(place);
    Remove(place);
    Insert(Begin(centre), centre, cluster);
  }

 private:
  static constexpr std::size_t kBlockSize = 128;
  static constexpr std::size_t kHalf = kBlockSize / 2;
  struct Block {
    std::size_t size = 0;
    double centres[kBlockSize];
    std::size_t clusters[kBlockSize];
  };

  void AddBlock(std::size_t at) {
    firsts_.insert(firsts_.begin() + static_cast<std::ptrdiff_t>(at), 0.0);
    blocks_.insert(blocks_.begin() + static_cast<std::ptrdiff_t>(at), std::make_unique<Block>());
  }
  /// Moves the upper half of a full block to a new one.
  void Split(std::size_t at) {
    AddBlock(at + 1);
    Block& lower = *blocks_[at];
    Block& upper = *blocks_[at + 1];
    std::copy_n(lower.centres + kHalf, kHalf, upper.centres);
    std::copy_n(lower.clusters + kHalf, kHalf, upper.clusters);
    lower.size = upper.size = kHalf;
    firsts_[at + 1] = upper.centres[0];
  }

  std::vector<double> firsts_;  ///< of each block
  std::vector<std::unique_ptr<Block>> blocks_;
};

/// Clusters as they grow. Which members they have stands with the values. Few are searched one by
/// one, many in order.
class Clusters {
 public:
  explicit Clusters(double tolerance) : tolerance_(tolerance) {}

  /// The number, from 0, of the cluster that the value joins or begins.
  std::size_t Add(double value) {
    if (clusters_.size() > kFew) return AddToMany(value);
    std::size_t nearest = clusters_.size();
    double distance = tolerance_;
    for (std::size_t i = 0; i < clusters_.size(); ++i) {
      const double to_this = std::fabs(clusters_[i].centre - value);
      nearest = to_this < distance ? i : nearest;
      distance = to_this < distance ? to_this : distance;
    }
    if (nearest == clusters_.size()) return Begin(value);
    Join(nearest, value);
    return nearest;
  }

  /// The largest cluster, the first created of equally large ones.
  std::size_t Largest() const {
    std::size_t largest = 0;
    for (std::size_t i = 1; i < clusters_.size(); ++i) {
      if (clusters_[i].size > clusters_[largest].size) largest = i;
    }
    return largest;
  }
  std::size_t Size(std::size_t cluster) const { return clusters_[cluster].size; }

 private:
  using Place = SortedCentres::Place;
  static constexpr std::size_t kFew = 8;

  /// The sum in joining order: its mean is the one summed afresh.
  struct Cluster {
    double centre;
    double sum;
    std::size_t size;
  };

  std::size_t Begin(double value) {
    const std::size_t number = clusters_.size();
    clusters_.push_back({value, value, 1});
    if (number < kFew) return number;
    // The first of many: those before it come into order with it.
    for (std::size_t i = number == kFew ? 0 : number; i <= number; ++i) {
      const double centre = clusters_[i].centre;
      if (std::isfinite(centre)) centres_.Insert(centres_.Begin(centre), centre, i);
    }
    return number;
  }
  void Join(std::size_t number, double value) {
    Cluster& cluster = clusters_[number];
    cluster.sum += value;
    ++cluster.size;
    cluster.centre = cluster.sum / static_cast<double>(cluster.size);
  }

  std::size_t AddToMany(double value) {
    if (!std::isfinite(value)) return Begin(value);
    const Place begin = centres_.Begin(value);
    const Place below = centres_.Before(begin);
    const Place above = centres_.Settled(begin);
    const double to_below = value - centres_.Centre(below);
    const double to_above = centres_.Centre(above) - value;
    const double nearest = std::min(to_below, to_above);
    if (!(nearest < tolerance_)) return Begin(value);
    Place place = above;
    if (below.block == above.block) {
      place.at -= static_cast<std::size_t>(to_below < to_above);  // a branch would often be wrong
    } else if (to_below < to_above) {
      place = below;
    }
    // Several may be equally near, since distances are rounded: the first created has the lowest
    // number. The infinities end the walks.
    const auto choose = [&](Place candidate) {
      if (centres_.Cluster(candidate) < centres_.Cluster(place)) place = candidate;
    };
    if (to_below == to_above) choose(below);
    for (Place at = centres_.Before(below); value - centres_.Centre(at) == nearest;
         at = centres_.Before(at)) {
      choose(at);
    }
    for (Place at = centres_.Behind(above); centres_.Centre(at) - value == nearest;
         at = centres_.Behind(at)) {
      choose(at);
    }
    const std::size_t number = centres_.Cluster(place);
    Join(number, value);
    if (std::isfinite(clusters_[number].centre)) {
      centres_.Move(place, clusters_[number].centre);
    } else {
      centres_.Remove(place);  // a sum too large: nothing will be near it
    }
    return number;
  }

  double tolerance_;
  std::vector<Cluster> clusters_;
  SortedCentres centres_;  ///< of more than kFew clusters
};

}  // namespace

std::vector<std::size_t> LargestCluster(const std::vector<double>& values, double tolerance) {
  std::vector<std::size_t> members;
  if (values.empty()) return members;
  if (!(tolerance > 0.0)) return {0};  // each value is a cluster of its own
  Clusters clusters(tolerance);
  std::vector<std::size_t> cluster_of(values.size());
  for (std::size_t i = 0; i < values.size(); ++i) cluster_of[i] = clusters.Add(values[i]);
  const std::size_t largest = clusters.Largest();
  members.reserve(clusters.Size(largest));
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (cluster_of[i] == largest) members.push_back(i);
  }
  return members;
}

}  // namespace formula
