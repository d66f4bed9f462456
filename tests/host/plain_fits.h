// Sums of squared distances and fits in the plainest form, to hold the real ones against. They
// work in long double.
#pragma once

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "host/values.h"

using Points = std::vector<CNuvPoint>;

/// Of the best line; infinity where all points coincide.
inline long double LineSquares(const Points& points) {
  long double x = 0, y = 0, xx = 0, xy = 0, yy = 0, squares = 0;
  const auto n = static_cast<long double>(points.size());
  for (const CNuvPoint& p : points) {
    x += p.x / n;
    y += p.y / n;
  }
  for (const CNuvPoint& p : points) {
    xx += (p.x - x) * (p.x - x);
    xy += (p.x - x) * (p.y - y);
    yy += (p.y - y) * (p.y - y);
  }
  if (std::all_of(points.begin(), points.end(), [&](auto& p) { return p == points[0]; })) {
    return std::numeric_limits<long double>::infinity();
  }
  const long double a = std::atan2(2 * xy, xx - yy) / 2;
  const long double cosine = std::cos(a), sine = std::sin(a);
  for (const CNuvPoint& p : points) {
    const long double distance = (p.y - y) * cosine - (p.x - x) * sine;
    squares += distance * distance;
  }
  return squares;
}

/// Of the best circle about a centre.
inline long double CircleSquares(const Points& points, long double x, long double y) {
  long double mean = 0, squares = 0;
  const auto distance = [=](const CNuvPoint& p) {
    return std::sqrt((p.x - x) * (p.x - x) + (p.y - y) * (p.y - y));
  };
  for (const CNuvPoint& p : points) mean += distance(p) / static_cast<long double>(points.size());
  for (const CNuvPoint& p : points) squares += (distance(p) - mean) * (distance(p) - mean);
  return squares;
}

/// Of the circle that damped steps of Gauss and Newton descend to from a centre; infinity where the
/// centre runs away, since a line is nearer than any circle there.
inline long double CircleSquaresFrom(const Points& points, const long double x0,
                                     const long double y0) {
  constexpr long double kFarthest = 1e6L;
  long double x = x0, y = y0;
  const long double size = std::hypot(points[0].x - x, points[0].y - y);
  long double squares = CircleSquares(points, x, y), damping = 1e-3L;
  const auto n = static_cast<long double>(points.size());
  for (int step = 0; step < 60; ++step) {
    long double ux = 0, uy = 0, r = 0, xx = 0, xy = 0, yy = 0, rx = 0, ry = 0;
    for (const CNuvPoint& p : points) {
      const long double dx = p.x - x, dy = p.y - y, d = std::sqrt(dx * dx + dy * dy);
      ux += dx / d / n;
      uy += dy / d / n;
      r += d / n;
    }
    for (const CNuvPoint& p : points) {
      const long double dx = p.x - x, dy = p.y - y, d = std::sqrt(dx * dx + dy * dy);
      const long double wx = dx / d - ux, wy = dy / d - uy;
      xx += wx * wx;
      xy += wx * wy;
      yy += wy * wy;
      rx += (d - r) * wx;
      ry += (d - r) * wy;
    }
    const long double a = xx * (1 + damping), b = yy * (1 + damping), det = a * b - xy * xy;
    const long double step_x = (b * rx - xy * ry) / det, step_y = (a * ry - xy * rx) / det;
    const long double next = CircleSquares(points, x + step_x, y + step_y);
    if (next < squares) {
      x += step_x;
      y += step_y;
      if (std::hypot(x - x0, y - y0) > kFarthest * size) {
        return std::numeric_limits<long double>::infinity();
      }
      const bool is_last = squares - next < 1e-13L * squares;
      squares = next;
      damping /= 10;
      if (is_last) break;
    } else {
      damping *= 10;
      if (!(damping < 1e6L)) break;
    }
  }
  return squares;
}

/// The least of squares(subset) over all subsets of `kept` points.
template <class Squares>
long double LeastOfAllSubsets(const Points& points, std::size_t kept, const Squares& squares) {
  std::vector<bool> take(points.size());
  std::fill_n(take.begin(), kept, true);
  long double least = std::numeric_limits<long double>::infinity();
  Points subset;
  do {
    subset.clear();
    for (std::size_t i = 0; i < points.size(); ++i) {
      if (take[i]) subset.push_back(points[i]);
    }
    least = std::min(least, static_cast<long double>(squares(subset)));
  } while (std::prev_permutation(take.begin(), take.end()));
  return least;
}
