// Least trimmed squares for few points, exactly: all subsets that can be the best are tried.
#pragma once

#include <cstddef>
#include <vector>

#include "reference_host/geometry/trimmed.h"

namespace geometry {

/// For so many points the best line is searched exactly.
constexpr std::size_t kMostSweptPoints = 48;

/// Which `kept` of the points have the line with the least sum of squared distances. Empty where
/// all subsets coincide.
///
/// The points nearest to a line lie in a strip along it. So the best subset is one of the runs of
/// `kept` points in the order across some direction, and while the direction turns once around,
/// each pair of points changes its order once: n (n - 1) / 2 changes, each of which makes at most
/// two runs new (the sweep of Edelsbrunner and Guibas, "Topologically sweeping an arrangement",
/// JCSS 38, 1989, in its simple form).
Selection BestLineSubset(const PointSet& set, std::size_t kept);

/// Whether all subsets can be tried for the best circle: those of up to 14 points can.
bool AreCircleSubsetsFew(std::size_t count, std::size_t kept);

/// Which `kept` of the points have the circle with the least sum of squared distances, in a
/// frame of that resolution. Empty where no subset has a circle.
Selection BestCircleSubset(const CNuvPoint* points, const Frame& frame, const PointSet& set,
                           std::size_t kept);

}  // namespace geometry
