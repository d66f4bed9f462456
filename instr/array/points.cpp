// Point arrays: extremes, sorting, and the points that lie evenly.

#include <algorithm>
#include <limits>
#include <memory>

#include "algorithm/cluster.h"
#include "algorithm/sort.h"
#include "host/geometry.h"
#include "instr/array/traits.h"
#include "instr/array/write.h"
#include "plugin/instruction.h"

namespace formula {

/// The box around the points, in image coordinates: the top is the smallest y. A NaN is in no
/// box; without a point each side is the largest finite number of the opposite sign.
struct CPArrExtrema final : Instruction<CPArrExtrema> {
  static constexpr Definition kDefinition{
      .category = "Array: Point",
      .name = "Extrema",
      .identifier = "_Nuv_Array_CPArrExtrema_",
      .help = 460061,
      .description = "Finds min/max in x/y",
      .inputs = {Points("arr")},
      .results = {Number("left"), Number("right"), Number("top"), Number("bottom")},
  };
  static Status Run(Call& call, const CNuvPointVector& points) {
    constexpr double kLargest = std::numeric_limits<double>::max();
    double left = kLargest;
    double right = -kLargest;
    double top = kLargest;
    double bottom = -kLargest;
    for (std::size_t i = 0; i < points.Size(); ++i) {
      left = std::min(left, points[i].x);
      right = std::max(right, points[i].x);
      top = std::min(top, points[i].y);
      bottom = std::max(bottom, points[i].y);
    }
    call.Set(0, left);
    call.Set(1, right);
    call.Set(2, top);
    return call.Set(3, bottom);
  }
};

/// Points with equal keys stay in their order. Points with a NaN as the key stand outermost.
struct CPArrSort final : Instruction<CPArrSort> {
  static constexpr Definition kDefinition{
      .category = "Array: Point",
      .name = "Sort ",
      .identifier = "_Nuv_Array_CPArrSort_",
      .help = 460242,
      .description = "Sorts an array of points according to the user criteria",
      .constants = {{.type = NUV_PARAM_CHOICE,
                     .name = "sorting criteria",
                     .choices = {{0, "increasing x"},
                                 {1, "decreasing x"},
                                 {2, "increasing y"},
                                 {3, "decreasing y"},
                                 {4, "increasing dist x*x+y*y"},
                                 {5, "decreasing dist x*x+y*y"}}}},
      .inputs = {Points("arr")},
      .results = {Points("sorted")},
  };
  static Status Run(Call& call, const CNuvPointVector& points) {
    switch (call.ConstantInteger(0)) {
      case 1: return SortBy<X>(call, points, true);
      case 2: return SortBy<Y>(call, points, false);
      case 3: return SortBy<Y>(call, points, true);
      case 4: return SortBy<SquaredDistance>(call, points, false);
      case 5: return SortBy<SquaredDistance>(call, points, true);
      default: return SortBy<X>(call, points, false);
    }
  }

 private:
  static double X(const CNuvPoint& point) { return point.x; }
  static double Y(const CNuvPoint& point) { return point.y; }
  static double SquaredDistance(const CNuvPoint& point) {
    const double sum = point.x * point.x + point.y * point.y;
    // Of two NaN either may be in the sum.
    return sum == sum ? sum : std::numeric_limits<double>::quiet_NaN();
  }

  template <double (*kCriterion)(const CNuvPoint&)>
  static Status SortBy(Call& call, const CNuvPointVector& points, bool descending) {
    const std::size_t size = points.Size();
    const auto words = std::make_unique_for_overwrite<std::uint64_t[]>(2 * size);
    const auto spare = std::make_unique_for_overwrite<double[]>(size);
    std::uint64_t* keys = words.get();
    std::uint64_t* indices = keys + size;
    for (std::size_t i = 0; i < size; ++i) spare[i] = kCriterion(points[i]);
    kKernels->sort_keys(keys, spare.get(), size, descending);
    SortIndices(indices, keys, size, spare.get());
    return Write<PointElement>(call, Picked<CNuvPointVector>{points, indices, size});
  }
};

/// A point's gap is the distance to the farther of its neighbours. The points whose gaps make the
/// largest cluster are good.
struct CPArrCluster1D final : Instruction<CPArrCluster1D> {
  static constexpr Definition kDefinition{
      .category = "Array: Point",
      .name = "Remove Isolated Outliers",
      .identifier = "_Nuv_Array_CPArrCluster1D_",
      .help = 460228,
      .description =
          "Outputs one cluster containing the most \"similar\" points as another "
          "array.\nConsecutive points are expected to be equidistant within  the value "
          "of the tolerance parameter. Otherwise the points are dismissed.",
      .inputs = {Points("points"),
                 Number("tolerance", 1.0,
                        "Max distance between the ideal point and the worst acceptable point")},
      .results = {Points("good points"), Points("bad points"), Number("percent good")},
  };
  static Status Run(Call& call, const CNuvPointVector& input, double tolerance) {
    auto& good = call.ArrayResult<CNuvPointVector>(0);
    auto& bad = call.ArrayResult<CNuvPointVector>(1);
    // A result may be the input: its points are kept before it is emptied.
    CNuvPointVector copy;
    const bool is_result = &input == &good || &input == &bad;
    if (is_result) copy = input;
    const CNuvPointVector& points = is_result ? copy : input;
    good.Resize(0);
    bad.Resize(0);
    call.Set(2, 0.0);
    const std::size_t size = points.Size();
    if (size < 3) return Status::kFailure;
    if (tolerance < 0.0) {
      return call.Fail("Remove Isolated Outliers", "Negative tolerance is not a valid input.");
    }
    const std::vector<std::size_t> members = LargestCluster(Gaps(points), tolerance);
    good.Resize(members.size());
    bad.Resize(size - members.size());
    CNuvPoint* next_good = good.GetStorage();
    CNuvPoint* next_bad = bad.GetStorage();
    auto member = members.begin();
    for (std::size_t i = 0; i < size; ++i) {
      const bool is_good = member != members.end() && *member == i;
      if (is_good) ++member;
      *(is_good ? next_good : next_bad)++ = points[i];
    }
    const std::size_t percent = members.size() * 100 / size;
    return call.Set(2, static_cast<double>(percent));
  }

 private:
  static std::vector<double> Gaps(const CNuvPointVector& points) {
    std::vector<double> gaps(points.Size());
    double before = 0.0;
    for (std::size_t i = 0; i + 1 < gaps.size(); ++i) {
      const double behind = CNuvGeometry::Point2PointDist(points[i], points[i + 1]);
      gaps[i] = i == 0 ? behind : std::max(behind, before);
      before = behind;
    }
    gaps.back() = before;
    return gaps;
  }
};

template struct Instructions<CPArrExtrema, CPArrSort, CPArrCluster1D>;

}  // namespace formula
