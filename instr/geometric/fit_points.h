// The points that a fit starts from: gathered from the inputs, and thinned by their spacing.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <span>
#include <vector>

#include "host/vectors.h"
#include "plugin/inputs.h"

namespace formula {

/// Points as a fit reads them, in an input array or in a copy of their own.
class FitPoints {
 public:
  /// The points of an array; a copy where a result that will be written shares their storage.
  FitPoints(const CNuvPointVector& array, std::initializer_list<const CNuvPointVector*> written);
  /// The points given one by one.
  explicit FitPoints(Repeated<CNuvPoint> given);
  FitPoints(const FitPoints&) = delete;
  FitPoints& operator=(const FitPoints&) = delete;

  const CNuvPoint* Data() const { return points_.data(); }
  std::uint32_t Count() const { return static_cast<std::uint32_t>(points_.size()); }

  /// Leaves those points whose neighbour gaps make the largest cluster, and gives the others.
  std::vector<CNuvPoint> KeepLargestCluster(double tolerance);

 private:
  std::vector<CNuvPoint> own_;
  std::span<const CNuvPoint> points_;
};

/// How far each point is from the nearer one of its neighbours in the list; 0 for a single point.
/// Kept: the removal of isolated points takes the farther neighbour instead; what either lets
/// through is part of saved programs.
std::vector<double> NeighborGaps(std::span<const CNuvPoint> points);

}  // namespace formula
