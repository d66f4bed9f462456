// The plain algorithms that the fast ones must equal to the last bit, and that benchmarks stand
// beside.
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <utility>
#include <vector>

/// The filter element by element and pass by pass, two elements of the circle behind its end.
inline void SmoothPlainly(std::vector<double>& a, std::int64_t passes, bool circular) {
  const std::size_t n = a.size();
  if (circular) a.resize(n + 2);
  for (; passes > 0; --passes) {
    if (circular) {
      a[n] = a[0];
      a[n + 1] = a[1];
    }
    double before = a[0];
    for (std::size_t i = 1; i + 1 < a.size(); ++i) {
      const double old = a[i];
      a[i] = (before + 2.0 * old + a[i + 1]) * 0.25;
      before = old;
    }
    if (circular) a[0] = a[n];
  }
  a.resize(n);
}

/// Every window of the circle on its own. There must be as many scores as the search array has
/// elements; returns how many are invalid.
inline std::size_t CorrelatePlainly(const std::vector<double>& pattern,
                                    const std::vector<double>& search,
                                    std::vector<double>& scores) {
  const std::size_t t = pattern.size();
  std::vector<double> circle = search;
  circle.insert(circle.end(), search.begin(), search.begin() + static_cast<std::ptrdiff_t>(t));
  const auto count = static_cast<double>(t);
  const double pattern_mean = std::accumulate(pattern.begin(), pattern.end(), 0.0) / count;
  double squares = 0.0;
  for (const double x : pattern) squares += (x - pattern_mean) * (x - pattern_mean);
  std::size_t invalid = 0;
  for (std::size_t p = 0; p < search.size(); ++p) {
    const double* w = circle.data() + p;
    const double mean = std::accumulate(w, w + t, 0.0) / count;
    double product = 0.0;
    double own = 0.0;
    for (std::size_t i = 0; i < t; ++i) {
      product += (w[i] - mean) * (pattern[i] - pattern_mean);
      own += (w[i] - mean) * (w[i] - mean);
    }
    const double norm = std::sqrt(own) * std::sqrt(squares);
    scores[p] = norm != 0 ? product / norm : 0.0;
    invalid += norm != 0 ? 0 : 1;
  }
  return invalid;
}

/// Every cluster with its members, its centre summed afresh for each of them.
inline std::vector<std::size_t> ClusterPlainly(const std::vector<double>& values,
                                               double tolerance) {
  struct Cluster {
    double centre = 0.0;
    std::vector<std::pair<double, std::size_t>> members;
  };
  std::vector<Cluster> clusters;
  for (std::size_t i = 0; i < values.size(); ++i) {
    std::size_t nearest = clusters.size();
    double least = tolerance;
    for (std::size_t c = 0; c < clusters.size(); ++c) {
      const double distance = std::fabs(clusters[c].centre - values[i]);
      if (!(distance < least)) continue;
      nearest = c;
      least = distance;
    }
    if (nearest == clusters.size()) clusters.emplace_back();
    Cluster& cluster = clusters[nearest];
    cluster.members.emplace_back(values[i], i);
    double sum = 0.0;
    for (const auto& member : cluster.members) sum += member.first;
    cluster.centre = sum / static_cast<double>(cluster.members.size());
  }
  std::vector<std::size_t> largest;
  for (const Cluster& cluster : clusters) {
    if (cluster.members.size() <= largest.size()) continue;
    largest.clear();
    for (const auto& member : cluster.members) largest.push_back(member.second);
  }
  return largest;
}
