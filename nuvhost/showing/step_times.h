// StepTimes: how long the steps take, as a table on standard error.
#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <vector>

#include "nuvhost/running/run_observer.h"
#include "nuvhost/system/progress.h"

namespace nuvhost {

/// The number of durations in each of many classes, which are narrow enough to tell the median to
/// three percent and need no more memory however many there are.
class Durations {
 public:
  void Add(std::chrono::nanoseconds duration);
  std::uint64_t Count() const { return count_; }
  std::chrono::nanoseconds Total() const { return total_; }
  /// The middle of the class that the median is in; 0 without any.
  std::chrono::nanoseconds Median() const;

 private:
  static constexpr int kClassBits = 4;  ///< of a duration's leading digits, below the first

  std::array<std::uint64_t, std::size_t{64} << kClassBits> classes_{};
  std::uint64_t count_ = 0;
  std::chrono::nanoseconds total_{0};
};

/// It refers to what it is given. The time runs from when it is made.
class StepTimes final : public RunObserver {
 public:
  StepTimes(const Program& program, Progress& progress)
      : program_(program), progress_(progress), steps_(program.steps.size()) {}

  void StepRan(std::size_t run, std::size_t step, const StepOutcome& outcome) override;
  int Finish() override;

 private:
  using Clock = std::chrono::steady_clock;

  const Program& program_;
  Progress& progress_;
  std::vector<Durations> steps_;
  Clock::time_point begin_ = Clock::now();
};

}  // namespace nuvhost
