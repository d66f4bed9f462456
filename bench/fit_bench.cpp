// The fits beside OpenCV's line fits of the same points, and beside the sums that any fit of a
// circle needs. The points rotate, so that no branch predictor learns them.

#include <benchmark/benchmark.h>

#include "host/geometry.h"
#include "tests/host/fit_scene.h"
#ifdef FORMULA_WITH_OPENCV
#include <opencv2/imgproc.hpp>
#endif

namespace {

std::vector<Points> MakePool(Shape shape, std::size_t size, std::size_t percent) {
  Random random(1);
  std::vector<Points> pool;
  for (std::size_t i = 0; i < std::max<std::size_t>(4, 20000 / size); ++i) {
    pool.push_back(
        MakeScene(
            random,
            {.shape = shape, .count = size, .out = size * percent / 100, .clearance = kSize * 1e-2})
            .points);
  }
  return pool;
}

template <class Pool, class Task>
void Rotate(benchmark::State& state, const Pool& pool, const Task& task) {
  std::size_t next = 0;
  for (auto _ : state) {
    task(pool[next]);
    if (++next == pool.size()) next = 0;
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void Line(benchmark::State& state) {
  const auto pool = MakePool(Shape::kLine, static_cast<std::size_t>(state.range(0)),
                             static_cast<std::size_t>(state.range(1)));
  const auto percent = static_cast<std::uint32_t>(state.range(1));
  CNuvPointVector outliers;
  CNuvPointVector used;
  Rotate(state, pool, [&](const Points& points) {
    std::uint32_t included = 0;
    CNuvLine line;
    benchmark::DoNotOptimize(
        CNuvGeometry::Points2BestLine(points.data(), static_cast<std::uint32_t>(points.size()),
                                      percent, &included, &line, &outliers, &used));
  });
}

void Circle(benchmark::State& state) {
  const auto pool = MakePool(Shape::kCircle, static_cast<std::size_t>(state.range(0)),
                             static_cast<std::size_t>(state.range(1)));
  const auto percent = static_cast<std::uint32_t>(state.range(1));
  CNuvPointVector outliers;
  CNuvPointVector used;
  Rotate(state, pool, [&](const Points& points) {
    std::uint32_t included = 0;
    double diameter = 0.0;
    double error = 0.0;
    CNuvPoint center;
    benchmark::DoNotOptimize(CNuvGeometry::Points2BestCircle(
        points.data(), static_cast<std::uint32_t>(points.size()), percent, &diameter, &included,
        &error, &center, &outliers, &used));
  });
}

void Sums(benchmark::State& state) {
  const auto pool = MakePool(Shape::kCircle, static_cast<std::size_t>(state.range(0)), 0);
  Rotate(state, pool, [](const Points& points) {
    double xx = 0.0;
    double yy = 0.0;
    double xy = 0.0;
    for (const CNuvPoint& p : points) {
      xx += p.x * p.x;
      yy += p.y * p.y;
      xy += p.x * p.y;
    }
    benchmark::DoNotOptimize(xx);
    benchmark::DoNotOptimize(yy);
    benchmark::DoNotOptimize(xy);
  });
}

#ifdef FORMULA_WITH_OPENCV
void OpenCvLine(benchmark::State& state, int distance) {
  std::vector<std::vector<cv::Point2f>> pool;
  for (const Points& points : MakePool(Shape::kLine, static_cast<std::size_t>(state.range(0)),
                                       static_cast<std::size_t>(state.range(1)))) {
    auto& list = pool.emplace_back();
    for (const CNuvPoint& p : points) {
      list.emplace_back(static_cast<float>(p.x), static_cast<float>(p.y));
    }
  }
  Rotate(state, pool, [distance](const std::vector<cv::Point2f>& points) {
    cv::Vec4f line;
    cv::fitLine(points, line, distance, 0.0, 0.01, 0.01);
    benchmark::DoNotOptimize(line);
  });
}
BENCHMARK_CAPTURE(OpenCvLine, L2, cv::DIST_L2)->ArgsProduct({{100, 1000, 10000}, {0}});
#endif
BENCHMARK(Line)->ArgsProduct({{100, 1000, 10000, 100000, 1000000}, {0, 30}});
#ifdef FORMULA_WITH_OPENCV
BENCHMARK_CAPTURE(OpenCvLine, Huber, cv::DIST_HUBER)->ArgsProduct({{100, 1000, 10000}, {30}});
#endif
BENCHMARK(Sums)->ArgsProduct({{100, 1000, 10000}, {0}});
BENCHMARK(Circle)->ArgsProduct({{100, 1000, 10000, 100000, 1000000}, {0, 30}});

}  // namespace
