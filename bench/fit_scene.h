// Random points near a line or a circle, with gross outliers, for trials and benchmarks of fits.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <random>
#include <vector>

#include "host/values.h"

enum class Shape { kLine, kCircle, kQuarterArc };
enum class OutlierKind { kSpread, kClustered };

/// The size of the figures is 100, the noise a thousandth of it.
constexpr double kSize = 100.0;
constexpr double kNoise = 0.1;

struct Scene {
  std::vector<CNuvPoint> points;
  std::vector<CNuvPoint> inliers;
};

/// Outliers are at least ten times the noise away from the figure: either anywhere in a square
/// around it, or close together on one side. They stand among the points at random.
inline Scene MakeScene(std::mt19937_64& random, Shape shape, OutlierKind kind, std::size_t count,
                       std::size_t outliers) {
  std::uniform_real_distribution<double> unit(-1.0, 1.0);
  std::normal_distribution<double> normal;
  const double x = 10.0 * kSize * unit(random);
  const double y = 10.0 * kSize * unit(random);
  const double turn = std::numbers::pi * unit(random);
  const double cosine = std::cos(turn);
  const double sine = std::sin(turn);
  const double radius = kSize / 2.0;
  const auto place = [&](double u, double v) {
    return CNuvPoint(x + u * cosine - v * sine, y + u * sine + v * cosine);
  };
  const auto off = [&](double u, double v) {
    return std::fabs(shape == Shape::kLine ? v : std::hypot(u, v) - radius);
  };
  const double blob_u = radius * unit(random);
  const double blob_v = radius * (1.2 + 0.3 * unit(random));
  Scene scene;
  for (std::size_t i = 0; i < count; ++i) {
    // Whether this one is an outlier: as many as remain to be drawn, of the points that remain.
    const std::size_t left = outliers - (i - scene.inliers.size());
    if (random() % (count - i) >= left) {
      double u = radius * unit(random);
      double v = kNoise * normal(random);
      if (shape != Shape::kLine) {
        const double span = shape == Shape::kCircle ? std::numbers::pi : std::numbers::pi / 4.0;
        const double t = span * unit(random);
        const double r = radius + v;
        u = r * std::cos(t);
        v = r * std::sin(t);
      }
      scene.inliers.push_back(place(u, v));
      scene.points.push_back(scene.inliers.back());
      continue;
    }
    double u = 0.0;
    double v = 0.0;
    do {
      if (kind == OutlierKind::kSpread) {
        u = kSize * unit(random);
        v = kSize * unit(random);
      } else {
        u = blob_u + 0.05 * kSize * normal(random);
        v = blob_v + 0.05 * kSize * normal(random);
      }
    } while (off(u, v) < 10.0 * kNoise);
    scene.points.push_back(place(u, v));
  }
  return scene;
}
