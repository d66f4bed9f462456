// Normalised correlation: the cosine of the angle between two arrays less their means, from -1 to
// 1 (Pearson's coefficient).
#pragma once

#include <cstddef>
#include <memory>
#include <optional>

namespace formula {

/// Of two arrays of at least one element; none where either is constant.
std::optional<double> Correlate(const double* x, const double* y, std::size_t size);

/// Of a pattern with every rotation of an array that is at least as long, where the pattern covers
/// it. It keeps copies of both.
class CircularCorrelation {
 public:
  CircularCorrelation(const double* pattern, std::size_t pattern_size, const double* search,
                      std::size_t size);
  /// Writes the scores of all rotations, from the one that begins with the first element on. A
  /// constant one scores 0; gives how many those are.
  std::size_t WriteScores(double* scores) const;

 private:
  std::size_t pattern_size_;
  std::size_t size_;
  /// The differences of the pattern from its mean, then the array with its beginning behind it.
  std::unique_ptr<double[]> work_;
  double spread_ = 0.0;
};

}  // namespace formula
