#include "algorithm/correlation.h"

#include <algorithm>
#include <cmath>

#include "algorithm/kernels.h"

namespace formula {
namespace {

double Mean(const double* values, std::size_t size) {
  double sum = 0.0;
  for (std::size_t i = 0; i < size; ++i) sum += values[i];
  return sum / static_cast<double>(size);
}

}  // namespace

std::optional<double> Correlate(const double* x, const double* y, std::size_t size) {
  const double mean_x = Mean(x, size);
  const double mean_y = Mean(y, size);
  double sxy = 0.0;
  double sxx = 0.0;
  double syy = 0.0;
  for (std::size_t i = 0; i < size; ++i) {
    const double dx = x[i] - mean_x;
    const double dy = y[i] - mean_y;
    sxy += dx * dy;
    sxx += dx * dx;
    syy += dy * dy;
  }
  const double norm = std::sqrt(syy) * std::sqrt(sxx);
  if (norm == 0.0) return std::nullopt;
  return sxy / norm;
}

CircularCorrelation::CircularCorrelation(const double* pattern, std::size_t pattern_size,
                                         const double* search, std::size_t size)
    : pattern_size_(pattern_size),
      size_(size),
      work_(std::make_unique_for_overwrite<double[]>(pattern_size + size + pattern_size +
                                                     kCorrelationPadding)) {
  double* differences = work_.get();
  const double mean = Mean(pattern, pattern_size);
  double squares = 0.0;
  for (std::size_t i = 0; i < pattern_size; ++i) {
    const double difference = pattern[i] - mean;
    differences[i] = difference;
    squares += difference * difference;
  }
  spread_ = std::sqrt(squares);
  double* end = std::copy_n(search, size, differences + pattern_size);
  end = std::copy_n(search, pattern_size, end);
  std::fill_n(end, kCorrelationPadding, 0.0);
}

std::size_t CircularCorrelation::WriteScores(double* scores) const {
  const double* differences = work_.get();
  return kKernels->correlate(scores, differences + pattern_size_, size_, differences, pattern_size_,
                             spread_);
}

}  // namespace formula
