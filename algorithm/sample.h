// Samples: the numbers that a statistics instruction works on, given one by one (Repeated<double>)
// or as an array. A sample is what has Size() and operator[].
#pragma once

#include <cstdint>
#include <optional>

namespace formula {

/// The sum of a sample, from 0 in its order.
template <class Sample>
double Sum(const Sample& sample) {
  const auto size = static_cast<std::int64_t>(sample.Size());
  double sum = 0.0;
  for (std::int64_t i = 0; i < size; ++i) sum += sample[i];
  return sum;
}

/// The sum of a sample and of its squares, in one pass in its order.
struct PowerSums {
  double values = 0.0;
  double squares = 0.0;
};

template <class Sample>
PowerSums SumPowers(const Sample& sample) {
  const auto size = static_cast<std::int64_t>(sample.Size());
  PowerSums sums;
  for (std::int64_t i = 0; i < size; ++i) {
    const double value = sample[i];
    sums.values += value;
    sums.squares += value * value;
  }
  return sums;
}

/// Mean and sample variance (division by n - 1).
struct Moments {
  double mean;
  double variance;
};

/// The variance is that of the one-pass textbook formula, to the last bit; none below two values.
template <class Sample>
std::optional<Moments> SampleMoments(const Sample& sample) {
  if (sample.Size() < 2) return std::nullopt;
  const auto n = static_cast<double>(sample.Size());
  const PowerSums sums = SumPowers(sample);
  const double variance = (n * sums.squares - sums.values * sums.values) / n / (n - 1.0);
  return Moments{.mean = sums.values / n, .variance = variance};
}

}  // namespace formula
