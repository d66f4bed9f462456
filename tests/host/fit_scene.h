// Random points near a figure, with gross outliers: for tests, trials and benchmarks of fits.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numbers>
#include <random>
#include <vector>

#include "host/values.h"

using Points = std::vector<CNuvPoint>;

class Random {
 public:
  explicit Random(std::uint64_t seed) : engine_(seed) {}
  double Between(double low, double high) {
    return low + (high - low) * static_cast<double>(engine_() >> 11) * 0x1p-53;
  }
  /// Even in the logarithm.
  double Scaled(double low, double high) {
    return low * std::exp(Between(0.0, std::log(high / low)));
  }
  double Normal() { return normal_(engine_); }
  int Below(int end) { return static_cast<int>(engine_() % static_cast<unsigned>(end)); }

 private:
  std::mt19937_64 engine_;
  std::normal_distribution<double> normal_;
};

/// The length of a line, the diameter of circles and arcs.
constexpr double kSize = 100.0;

enum class Shape { kLine, kCircle, kQuarterArc, kShortArc };
constexpr Shape kShapes[] = {Shape::kLine, Shape::kCircle, Shape::kQuarterArc, Shape::kShortArc};
constexpr const char* kShapeNames[] = {"line", "circle", "90 degree arc", "20-30 degree arc"};

enum class OutlierKind {
  kSpread,      ///< anywhere in a square around the figure
  kNearBlob,    ///< close together, beside the figure
  kFarBlob,     ///< close together, ten to a thousand times the size away
  kFarPoint,    ///< all at one such place
  kTwoBlobs,    ///< two near blobs
  kSecondEdge,  ///< along a straight edge as sharp as the figure
  kInnerCircle  ///< along a smaller circle or arc as sharp as the figure
};
constexpr OutlierKind kOutlierKinds[] = {OutlierKind::kSpread,     OutlierKind::kNearBlob,
                                         OutlierKind::kFarBlob,    OutlierKind::kFarPoint,
                                         OutlierKind::kTwoBlobs,   OutlierKind::kSecondEdge,
                                         OutlierKind::kInnerCircle};
constexpr const char* kOutlierNames[] = {"spread",    "near blob",   "far blob",    "far point",
                                         "two blobs", "second edge", "inner circle"};

/// Where the outliers stand in the list of points.
enum class Order { kShuffled, kRun, kPeriodic };

struct SceneKind {
  Shape shape = Shape::kLine;
  OutlierKind outliers = OutlierKind::kSpread;
  Order order = Order::kShuffled;
  std::size_t count = 0;
  std::size_t out = 0;           ///< how many of them are outliers
  double noise = 0.1;            ///< the standard deviation of the inliers from the figure
  double clearance = 0.0;        ///< the least distance of an outlier from the figure
  double offset = 10.0 * kSize;  ///< how far from the origin the middle may be in x and in y
};

struct Scene {
  Points points;
  Points inliers;
  CNuvPoint middle;  ///< of the line, or of the whole circle
};

/// The outliers of a scene in the figure's own coordinates: the line lies on the u axis, an arc
/// around the positive half of it, the middle at the origin.
class OutlierSource {
 public:
  OutlierSource(Random& random, const SceneKind& kind, double span)
      : random_(random), kind_(kind), span_(span) {
    const double far = random.Scaled(10.0, 1000.0) * kSize;
    const double direction = random.Between(-std::numbers::pi, std::numbers::pi);
    far_ = {far * std::cos(direction), far * std::sin(direction)};
    for (CNuvPoint& blob : blobs_) {
      blob = {kSize * random.Between(-0.5, 0.5), kSize * random.Between(0.45, 0.75)};
      if (random.Below(2) == 0) blob.y = -blob.y;
    }
    edge_v_ = kSize * random.Between(-0.4, 0.4);
    edge_slope_ = random.Below(2) == 0 ? 0.0 : random.Between(-1.0, 1.0);
    inner_ = 0.5 * kSize * random.Between(0.3, 0.95);
  }
  CNuvPoint Next() {
    for (;;) {
      const CNuvPoint p = Any();
      const double off = kind_.shape == Shape::kLine ? p.y : std::hypot(p.x, p.y) - 0.5 * kSize;
      if (std::fabs(off) >= kind_.clearance) return p;
    }
  }

 private:
  CNuvPoint Around(const CNuvPoint& p) {
    return {p.x + 0.05 * kSize * random_.Normal(), p.y + 0.05 * kSize * random_.Normal()};
  }
  CNuvPoint Any() {
    switch (kind_.outliers) {
      case OutlierKind::kSpread:
        return {random_.Between(-kSize, kSize), random_.Between(-kSize, kSize)};
      case OutlierKind::kNearBlob: return Around(blobs_[0]);
      case OutlierKind::kFarBlob: return Around(far_);
      case OutlierKind::kFarPoint: return far_;
      case OutlierKind::kTwoBlobs: return Around(blobs_[random_.Below(2)]);
      case OutlierKind::kSecondEdge: {
        const double u = kSize * random_.Between(-0.5, 0.5);
        return {u, edge_v_ + edge_slope_ * u + kind_.noise * random_.Normal()};
      }
      default: {
        const double t = random_.Between(-0.5, 0.5) * span_;
        const double r = inner_ + kind_.noise * random_.Normal();
        return {r * std::cos(t), r * std::sin(t)};
      }
    }
  }

  Random& random_;
  const SceneKind& kind_;
  double span_;
  CNuvPoint far_;
  CNuvPoint blobs_[2];
  double edge_v_;
  double edge_slope_;
  double inner_;
};

/// Which of the points are outliers.
inline std::vector<bool> OutlierPlaces(Random& random, const SceneKind& kind) {
  std::vector<bool> places(kind.count);
  const std::size_t start =
      kind.order == Order::kRun
          ? static_cast<std::size_t>(random.Below(static_cast<int>(kind.count - kind.out) + 1))
          : 0;
  std::size_t left = kind.out;
  for (std::size_t i = 0; i < kind.count; ++i) {
    switch (kind.order) {
      case Order::kShuffled:
        // As many as remain to be drawn, of the places that remain.
        places[i] = static_cast<std::size_t>(random.Below(static_cast<int>(kind.count - i))) < left;
        if (places[i]) --left;
        break;
      case Order::kRun: places[i] = i >= start && i < start + kind.out; break;
      case Order::kPeriodic:
        places[i] = (i + 1) * kind.out / kind.count > i * kind.out / kind.count;
        break;
    }
  }
  return places;
}

inline Scene MakeScene(Random& random, const SceneKind& kind) {
  constexpr double kPi = std::numbers::pi;
  const bool is_line = kind.shape == Shape::kLine;
  const double turn = random.Between(-kPi, kPi);
  const double cosine = std::cos(turn);
  const double sine = std::sin(turn);
  double span = 2.0 * kPi;
  if (kind.shape == Shape::kQuarterArc) span = kPi / 2.0;
  if (kind.shape == Shape::kShortArc) span = random.Between(20.0, 30.0) * kPi / 180.0;
  Scene scene;
  scene.middle = {random.Between(-kind.offset, kind.offset),
                  random.Between(-kind.offset, kind.offset)};
  OutlierSource outliers(random, kind, span);
  for (const bool is_outlier : OutlierPlaces(random, kind)) {
    CNuvPoint p;
    if (is_outlier) {
      p = outliers.Next();
    } else {
      const double along = random.Between(-0.5, 0.5);
      const double off = kind.noise * random.Normal();
      const double t = along * span;
      const double r = 0.5 * kSize + off;
      p = is_line ? CNuvPoint(along * kSize, off) : CNuvPoint(r * std::cos(t), r * std::sin(t));
    }
    scene.points.emplace_back(scene.middle.x + p.x * cosine - p.y * sine,
                              scene.middle.y + p.x * sine + p.y * cosine);
    if (!is_outlier) scene.inliers.push_back(scene.points.back());
  }
  return scene;
}
