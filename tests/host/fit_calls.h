// Calls of the fits, and points to fit.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <numbers>
#include <random>
#include <vector>

#include "host/geometry.h"
#include "tests/host/fit_scene.h"

constexpr double kInfinity = std::numeric_limits<double>::infinity();

inline Points ToPoints(const CNuvPointVector& vector) {
  return {vector.GetStorage(), vector.GetStorage() + vector.Size()};
}

/// Results that begin as rubbish, so that one not written shows.
struct Result {
  std::uint32_t status = 77;
  std::uint32_t included = 77;
  CNuvLine line{7.0, 7.0};
  CNuvPoint center{7.0, 7.0};
  double diameter = 7.0;
  double error = 7.0;
  Points outliers;
  Points used;

  friend bool operator==(const Result& a, const Result& b) {
    const auto same = [](double x, double y) { return std::memcmp(&x, &y, sizeof x) == 0; };
    return a.status == b.status && a.included == b.included && same(a.line.a, b.line.a) &&
           same(a.line.d, b.line.d) && same(a.center.x, b.center.x) &&
           same(a.center.y, b.center.y) && same(a.diameter, b.diameter) && same(a.error, b.error) &&
           a.outliers == b.outliers && a.used == b.used;
  }
};

using Fitting = Result (*)(const Points&, std::uint32_t percent);

inline Result FitLine(const Points& points, std::uint32_t percent) {
  Result result;
  CNuvPointVector outliers;
  CNuvPointVector used;
  outliers.Resize(3);
  used.Resize(3);
  result.status =
      CNuvGeometry::Points2BestLine(points.data(), static_cast<std::uint32_t>(points.size()),
                                    percent, &result.included, &result.line, &outliers, &used);
  result.outliers = ToPoints(outliers);
  result.used = ToPoints(used);
  return result;
}

inline Result FitCircle(const Points& points, std::uint32_t percent) {
  Result result;
  CNuvPointVector outliers;
  CNuvPointVector used;
  outliers.Resize(3);
  used.Resize(3);
  result.status = CNuvGeometry::Points2BestCircle(
      points.data(), static_cast<std::uint32_t>(points.size()), percent, &result.diameter,
      &result.included, &result.error, &result.center, &outliers, &used);
  result.outliers = ToPoints(outliers);
  result.used = ToPoints(used);
  return result;
}

/// Points near a line or a circle, a share of them anywhere around it.
inline Points NearFigure(Random& random, bool circle, int count, double out, double noise) {
  const auto n = static_cast<std::size_t>(count);
  return MakeScene(random, {.shape = circle ? Shape::kCircle : Shape::kLine,
                            .count = n,
                            .out = static_cast<std::size_t>(out * count),
                            .noise = noise,
                            .offset = kSize})
      .points;
}

/// Used and left out together are the input, each in its order.
inline bool IsDivided(const Points& points, const Result& result, std::uint32_t percent) {
  const auto in_order = [&](const Points& part) {
    auto next = points.begin();
    for (const CNuvPoint& p : part) {
      next = std::find(next, points.end(), p);
      if (next == points.end()) return false;
      ++next;
    }
    return true;
  };
  Points both = result.used;
  both.insert(both.end(), result.outliers.begin(), result.outliers.end());
  return result.outliers.size() == points.size() * percent / 100 &&
         result.included == result.used.size() && in_order(result.used) &&
         in_order(result.outliers) &&
         std::is_permutation(points.begin(), points.end(), both.begin(), both.end());
}
