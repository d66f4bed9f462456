// How often the fits find the truth under gross outliers: prints a table.
//
// A trial is found when every parameter lies within three standard errors of the fit to the true
// inliers alone. OpenCV's line fits stand beside ours where OpenCV was found.

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "bench/fit_sums.h"
#include "tests/host/fit_calls.h"
#ifdef FORMULA_WITH_OPENCV
#include <opencv2/imgproc.hpp>
#endif

namespace {

constexpr std::size_t kTrials = 1000;
constexpr std::size_t kPoints = 60;
constexpr double kNoise = kSize * 1e-3;

/// Whether a line is that of the inliers, by its angle and by where it passes their middle.
bool IsLine(const std::vector<CNuvPoint>& inliers, const CNuvLine& truth, const CNuvLine& line) {
  double x = 0.0;
  double y = 0.0;
  const auto n = static_cast<double>(inliers.size());
  for (const CNuvPoint& p : inliers) {
    x += p.x / n;
    y += p.y / n;
  }
  double along = 0.0;
  for (const CNuvPoint& p : inliers) {
    const double t = (p.x - x) * std::cos(truth.a) + (p.y - y) * std::sin(truth.a);
    along += t * t;
  }
  const double turn = std::remainder(line.a - truth.a, std::numbers::pi);
  const double offset = y * std::cos(line.a) - x * std::sin(line.a) - line.d;
  return std::fabs(turn) <= 3.0 * kNoise / std::sqrt(along) &&
         std::fabs(offset) <= 3.0 * kNoise / std::sqrt(n);
}

/// The covariance of a circle's parameters is the inverse of the sums of products of the
/// derivatives (cos, sin, 1) of a distance; its diagonal by cofactors.
bool IsCircle(const std::vector<CNuvPoint>& inliers, const Result& truth, const Result& fit) {
  std::array<std::array<double, 3>, 3> m{};
  for (const CNuvPoint& p : inliers) {
    const double d = std::hypot(p.x - truth.center.x, p.y - truth.center.y);
    const double row[3] = {(p.x - truth.center.x) / d, (p.y - truth.center.y) / d, 1.0};
    for (std::size_t i = 0; i < 3; ++i) {
      for (std::size_t k = 0; k < 3; ++k) m[i][k] += row[i] * row[k];
    }
  }
  const auto cofactor = [&](std::size_t i) {
    const std::size_t a = (i + 1) % 3;
    const std::size_t b = (i + 2) % 3;
    return m[a][a] * m[b][b] - m[a][b] * m[b][a];
  };
  const double determinant = m[0][0] * cofactor(0) -
                             m[0][1] * (m[1][0] * m[2][2] - m[1][2] * m[2][0]) +
                             m[0][2] * (m[1][0] * m[2][1] - m[1][1] * m[2][0]);
  const double errors[3] = {fit.center.x - truth.center.x, fit.center.y - truth.center.y,
                            0.5 * (fit.diameter - truth.diameter)};
  for (std::size_t i = 0; i < 3; ++i) {
    const double standard = kNoise * std::sqrt(cofactor(i) / determinant);
    if (!(std::fabs(errors[i]) <= 3.0 * standard)) return false;
  }
  return fit.status == 0;
}

#ifdef FORMULA_WITH_OPENCV
CNuvLine OpenCvLine(const std::vector<CNuvPoint>& points, int distance) {
  std::vector<cv::Point2f> list;
  for (const CNuvPoint& p : points) {
    list.emplace_back(static_cast<float>(p.x), static_cast<float>(p.y));
  }
  cv::Vec4f line;
  cv::fitLine(list, line, distance, 0.0, 0.01, 0.01);
  const double a = std::atan2(line[1], line[0]);
  return CNuvLine(a, line[3] * std::cos(a) - line[2] * std::sin(a));
}
#endif

struct Score {
  std::size_t ours = 0;
  std::size_t l2 = 0;
  std::size_t huber = 0;
};

Score Run(Shape shape, OutlierKind kind, std::size_t percent) {
  Random random(percent);
  Score score;
  for (std::size_t trial = 0; trial < kTrials; ++trial) {
    const Scene scene = MakeScene(random, {.shape = shape,
                                           .outliers = kind,
                                           .count = kPoints,
                                           .out = kPoints * percent / 100,
                                           .noise = kNoise,
                                           .clearance = 10.0 * kNoise});
    const auto fit_figure = shape == Shape::kLine ? FitLine : FitCircle;
    const Result truth = fit_figure(scene.inliers, 0);
    const Result fit = fit_figure(scene.points, static_cast<std::uint32_t>(percent));
    if (shape != Shape::kLine) {
      score.ours += IsCircle(scene.inliers, truth, fit) ? 1 : 0;
      continue;
    }
    score.ours += fit.status == 0 && IsLine(scene.inliers, truth.line, fit.line) ? 1 : 0;
#ifdef FORMULA_WITH_OPENCV
    const auto scores = [&](int distance) {
      return IsLine(scene.inliers, truth.line, OpenCvLine(scene.points, distance)) ? 1U : 0U;
    };
    score.l2 += scores(cv::DIST_L2);
    score.huber += scores(cv::DIST_HUBER);
#endif
  }
  return score;
}

/// The share of trials in which the fits find the truth; whether it is as promised.
bool PrintFound() {
  std::printf("found in %% of %zu trials of %zu points\n", kTrials, kPoints);
  std::printf("%-17s%-11s%9s%8s%12s%15s\n", "figure", "outliers", "share", "ours", "OpenCV L2",
              "OpenCV Huber");
  bool good = true;
  for (const Shape shape : {Shape::kLine, Shape::kCircle, Shape::kQuarterArc}) {
    for (const OutlierKind kind : {OutlierKind::kSpread, OutlierKind::kNearBlob}) {
      for (const std::size_t percent : {10U, 20U, 30U, 40U}) {
        const Score score = Run(shape, kind, percent);
        const auto share = [](std::size_t n) { return 100.0 * static_cast<double>(n) / kTrials; };
        std::printf("%-17s%-11s%7zu %%%8.1f", kShapeNames[static_cast<int>(shape)],
                    kOutlierNames[static_cast<int>(kind)], percent, share(score.ours));
#ifdef FORMULA_WITH_OPENCV
        if (shape == Shape::kLine) std::printf("%12.1f%15.1f", share(score.l2), share(score.huber));
#endif
        std::printf("\n");
        good = good && share(score.ours) >= (percent <= 30 ? 99.0 : 95.0);
      }
    }
  }
  std::puts(good ? "as promised: 99 % up to 30 % of outliers, 95 % at 40 %" : "NOT as promised");
  return good;
}

}  // namespace

/// `fit_trials [SEED]`
int main(int count, char** arguments) {
  const bool found = PrintFound();
  std::puts("");
  const bool least = PrintSums(count > 1 ? std::strtoull(arguments[1], nullptr, 10) : 1);
  return found && least ? 0 : 1;
}
