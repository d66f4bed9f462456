// Samples: the numbers that a statistics instruction works on, given one by one or as an array.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "plugin/call.h"

namespace formula {

/// The inputs of a call from a position on, one number each.
class InputSample {
 public:
  InputSample(const Call& call, std::int32_t first)
      : call_(call), first_(first), size_(call.Count() - std::int64_t{first}) {}
  std::int64_t Size() const { return size_; }
  double operator[](std::int64_t index) const {
    return call_.Number(first_ + static_cast<std::int32_t>(index));
  }

 private:
  const Call& call_;
  std::int32_t first_;
  std::int64_t size_;
};

/// The elements of an array input.
class ArraySample {
 public:
  ArraySample(const Call& call, std::int32_t input)
      : data_(call.Numbers(input).GetStorage()),
        size_(static_cast<std::int64_t>(call.Numbers(input).Size())) {}
  std::int64_t Size() const { return size_; }
  double operator[](std::int64_t index) const { return data_[index]; }

 private:
  const double* data_;
  std::int64_t size_;
};

/// The sum of a sample, from 0 in its order.
template <class Sample>
double Sum(const Sample& sample) {
  double sum = 0.0;
  for (std::int64_t i = 0; i < sample.Size(); ++i) sum += sample[i];
  return sum;
}

/// The sum of a sample and of its squares, in one pass in its order.
struct PowerSums {
  double values = 0.0;
  double squares = 0.0;
};

template <class Sample>
PowerSums SumPowers(const Sample& sample) {
  PowerSums sums;
  for (std::int64_t i = 0; i < sample.Size(); ++i) {
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
