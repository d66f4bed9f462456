#include "instr/geometric/fit_points.h"

#include <algorithm>
#include <cstddef>

#include "algorithm/cluster.h"
#include "host/geometry.h"

namespace formula {

FitPoints::FitPoints(const CNuvPointVector& array,
                     std::initializer_list<const CNuvPointVector*> written)
    : points_(array.GetStorage(), array.Size()) {
  if (std::find(written.begin(), written.end(), &array) == written.end()) return;
  own_.assign(points_.begin(), points_.end());
  points_ = own_;
}

FitPoints::FitPoints(Repeated<CNuvPoint> given) {
  own_.reserve(static_cast<std::size_t>(given.Size()));
  for (std::int32_t i = 0; i < given.Size(); ++i) own_.push_back(given[i]);
  points_ = own_;
}

std::vector<CNuvPoint> FitPoints::KeepLargestCluster(double tolerance) {
  const std::vector<std::size_t> cluster = LargestCluster(NeighborGaps(points_), tolerance);
  std::vector<CNuvPoint> kept;
  std::vector<CNuvPoint> removed;
  kept.reserve(cluster.size());
  removed.reserve(points_.size() - cluster.size());
  auto member = cluster.begin();
  for (std::size_t i = 0; i < points_.size(); ++i) {
    const bool is_member = member != cluster.end() && *member == i;
    if (is_member) ++member;
    (is_member ? kept : removed).push_back(points_[i]);
  }
  own_ = std::move(kept);
  points_ = own_;
  return removed;
}

std::vector<double> NeighborGaps(std::span<const CNuvPoint> points) {
  std::vector<double> gaps(points.size());
  if (points.size() < 2) return gaps;
  double before = CNuvGeometry::Point2PointDist(points[0], points[1]);
  gaps.front() = before;
  for (std::size_t i = 1; i + 1 < points.size(); ++i) {
    const double behind = CNuvGeometry::Point2PointDist(points[i], points[i + 1]);
    gaps[i] = std::min(behind, before);
    before = behind;
  }
  gaps.back() = before;
  return gaps;
}

}  // namespace formula
