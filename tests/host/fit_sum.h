// How near a trimmed fit comes to the smallest sum of squared distances.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "tests/host/fit_calls.h"
#include "tests/host/plain_fits.h"

/// So many points have all their subsets tried.
constexpr std::size_t kMostExact = 14;

struct Challenge {
  Scene scene;
  std::uint32_t percent;
  bool circle;
};

/// A scene with any noise, order and place whose share of outliers is the percentage to fit with,
/// so that the true inliers are one of the subsets to choose from.
inline Challenge AnyChallenge(Random& random, Shape shape, OutlierKind outliers,
                              std::size_t count) {
  const bool is_hard = outliers == OutlierKind::kFarPoint || outliers == OutlierKind::kTwoBlobs;
  const int percent = 5 + random.Below(is_hard ? 45 : 41);
  SceneKind kind = {.shape = shape, .outliers = outliers, .count = count};
  kind.out = count * static_cast<std::size_t>(percent) / 100;
  kind.order = static_cast<Order>(random.Below(3));
  kind.noise = kSize * random.Scaled(1e-6, 5e-2);
  if (random.Below(2) == 0) kind.offset = 1e6;
  return {MakeScene(random, kind), static_cast<std::uint32_t>(percent), shape != Shape::kLine};
}

/// The sum of the least squares fit of the true inliers, or of the best subset where there are few
/// points; infinity where there is no figure, as where a line is nearer than any circle.
inline long double SquaresToReach(const Challenge& challenge) {
  const Scene& scene = challenge.scene;
  const auto squares = [&](const Points& subset) -> long double {
    if (!challenge.circle) return LineSquares(subset);
    const Result fit = FitCircle(subset, 0);
    return fit.status == 0 ? CircleSquares(subset, fit.center.x, fit.center.y) : kInfinity;
  };
  if (scene.points.size() <= kMostExact) {
    return LeastOfAllSubsets(scene.points, scene.inliers.size(), squares);
  }
  const long double least = squares(scene.inliers);
  // A fit that is not the best of the inliers makes no promise easier.
  if (!challenge.circle || least == kInfinity) return least;
  return std::min(least, CircleSquaresFrom(scene.inliers, scene.middle.x, scene.middle.y));
}

/// The sum of the trimmed fit over the one to reach; infinity where it fails, 0 where there is
/// nothing to reach.
inline long double SumQuotient(const Challenge& challenge) {
  const long double bound = SquaresToReach(challenge);
  if (bound == kInfinity) return 0;
  const Points& points = challenge.scene.points;
  const Result fit = (challenge.circle ? FitCircle : FitLine)(points, challenge.percent);
  if (fit.status != 0) return kInfinity;
  // Judged about the figure that is reported. Coordinates as large as the largest are rounded by up
  // to 2^-53 of it each, a point's and the centre's both: no distance is known to better than four
  // times that.
  const long double found = challenge.circle ? CircleSquares(fit.used, fit.center.x, fit.center.y)
                                             : LineSquares(fit.used);
  double magnitude = 0.0;
  for (const CNuvPoint& p : points) {
    magnitude = std::max({magnitude, std::fabs(p.x), std::fabs(p.y)});
  }
  const long double unknown = 0x1p-51L * magnitude;
  const long double rounding = unknown * unknown * static_cast<long double>(fit.used.size());
  return std::max(found - rounding, 0.0L) / std::max(bound, 1e-300L);
}

/// Whether a sum exceeds the one to reach.
inline bool IsLarger(long double quotient) {
  return quotient > 1.0L + 1e-6L;
}
