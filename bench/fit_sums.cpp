#include "bench/fit_sums.h"

#include <cstdio>

#include "tests/host/fit_sum.h"

namespace {

constexpr int kScenesPerCell = 180;
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

void Try(const Challenge& challenge, Cell* cell) {
  const long double quotient = SumQuotient(challenge);
  if (quotient == 0.0L && SquaresToReach(challenge) == kInfinity) return;
  ++cell->scenes;
  cell->worst = std::max(cell->worst, quotient);
  cell->larger += IsLarger(quotient) ? 1 : 0;
  cell->failed += quotient == kInfinity ? 1 : 0;
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
          Try(AnyChallenge(random, shape, outliers, AnyCount(random, size)), &cell);
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
