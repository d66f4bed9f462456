#include "bench/fit_sums.h"

#include <cstdio>

#include "tests/host/fit_calls.h"
#include "tests/host/plain_fits.h"

namespace {

constexpr int kScenesPerCell = 180;
/// So many points have all their subsets tried.
constexpr std::size_t kMostExact = 14;

struct SizeClass {
  const char* name;
  int least;
  int most;
};
constexpr SizeClass kSizes[] = {
    {"8-14", 8, 14}, {"15-48", 15, 48}, {"49-512", 49, 512}, {"513-5000", 513, 5000}};

struct Cell {
  int scenes = 0;
  int larger = 0;
  int failed = 0;
  long double worst = 0.0;  ///< the largest quotient of a sum and the one it may not exceed
};

std::size_t AnyCount(Random& random, const SizeClass& size) {
  // The sizes next to where the search begins to draw a sample.
  if (random.Below(5) == 0 && size.most >= 512) {
    if (size.least < 512) return 511 + static_cast<std::size_t>(random.Below(2));
    return random.Below(2) == 0 ? 513 : 600;
  }
  return std::min(static_cast<std::size_t>(random.Scaled(size.least, size.most + 1)),
                  static_cast<std::size_t>(size.most));
}

/// Of the true inliers, or of the best subset where there are few points; infinity where there is
/// no figure, as where a line is nearer to the points than any circle.
long double SquaresToReach(const Scene& scene, bool circle) {
  const auto squares = [&](const Points& subset) -> long double {
    if (!circle) return LineSquares(subset);
    const Result fit = FitCircle(subset, 0);
    return fit.status == 0 ? CircleSquares(subset, fit.center.x, fit.center.y) : kInfinity;
  };
  if (scene.points.size() <= kMostExact) {
    return LeastOfAllSubsets(scene.points, scene.inliers.size(), squares);
  }
  const long double least = squares(scene.inliers);
  // A fit that is not the best of the inliers makes no promise easier.
  if (!circle || least == kInfinity) return least;
  return std::min(least, CircleSquaresFrom(scene.inliers, scene.middle.x, scene.middle.y));
}

void Try(Random& random, SceneKind kind, const SizeClass& size, Cell* cell) {
  const bool hard =
      kind.outliers == OutlierKind::kFarPoint || kind.outliers == OutlierKind::kTwoBlobs;
  const int percent = 5 + random.Below(hard ? 45 : 41);
  kind.count = AnyCount(random, size);
  kind.out = kind.count * static_cast<std::size_t>(percent) / 100;
  kind.order = static_cast<Order>(random.Below(3));
  kind.noise = kSize * random.Scaled(1e-6, 5e-2);
  if (random.Below(2) == 0) kind.offset = 1e6;
  const Scene scene = MakeScene(random, kind);
  const bool circle = kind.shape != Shape::kLine;
  const long double bound = SquaresToReach(scene, circle);
  if (bound == kInfinity) return;
  const Result fit =
      (circle ? FitCircle : FitLine)(scene.points, static_cast<std::uint32_t>(percent));
  ++cell->scenes;
  if (fit.status != 0) {
    ++cell->failed;
    ++cell->larger;
    return;
  }
  // The fit is judged by the sum about the figure it reports. Coordinates as large as the largest
  // are rounded by up to 2^-53 of it each, a point's and the centre's both: no distance is known to
  // better than four times that.
  const long double found =
      circle ? CircleSquares(fit.used, fit.center.x, fit.center.y) : LineSquares(fit.used);
  double magnitude = 0.0;
  for (const CNuvPoint& p : scene.points) {
    magnitude = std::max({magnitude, std::fabs(p.x), std::fabs(p.y)});
  }
  const long double unknown = 0x1p-51L * magnitude;
  const long double rounding = unknown * unknown * static_cast<long double>(fit.used.size());
  cell->worst = std::max(cell->worst, found / (bound + rounding));
  if (found > bound * (1.0L + 1e-6L) + rounding) {
    ++cell->larger;
  }
}

}  // namespace

bool PrintSums(std::uint64_t seed) {
  std::printf(
      "scenes whose sum of squares is larger than that of the true inliers (of the best\n"
      "subset up to %zu points) by more than 1e-6 of it, of all; and the largest quotient\n",
      kMostExact);
  std::printf("%-17s%-13s", "figure", "outliers");
  for (const SizeClass& size : kSizes) std::printf("%10s points    ", size.name);
  std::puts("");
  Random random(seed);
  Cell all;
  int larger_of_few = 0;
  for (const Shape shape : kShapes) {
    for (const OutlierKind outliers : kOutlierKinds) {
      std::printf("%-17s%-13s", kShapeNames[static_cast<int>(shape)],
                  kOutlierNames[static_cast<int>(outliers)]);
      for (const SizeClass& size : kSizes) {
        Cell cell;
        for (int i = 0; i < kScenesPerCell; ++i) {
          Try(random, {.shape = shape, .outliers = outliers}, size, &cell);
        }
        std::printf("%5d/%3d %-12.7Lg", cell.larger, cell.scenes, cell.worst);
        all.scenes += cell.scenes;
        all.larger += cell.larger;
        all.failed += cell.failed;
        if (size.most <= static_cast<int>(kMostExact)) larger_of_few += cell.larger;
      }
      std::puts("");
      std::fflush(stdout);
    }
  }
  const bool good = all.larger * 1000 <= all.scenes && larger_of_few == 0;
  std::printf("%d of %d larger, %d of them without a fit: %s\n", all.larger, all.scenes, all.failed,
              good ? "as promised, 1 in 1,000 and none up to 14 points" : "NOT as promised");
  return good;
}
