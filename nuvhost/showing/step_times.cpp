#include "nuvhost/showing/step_times.h"

#include <fmt/format.h>

#include <bit>

#include "nuvhost/text/names.h"
#include "nuvhost/text/text_table.h"

namespace nuvhost {
namespace {

using std::chrono::nanoseconds;

double Milliseconds(nanoseconds duration) {
  return std::chrono::duration<double, std::milli>(duration).count();
}

}  // namespace

// A class holds what has the same leading kClassBits + 1 binary digits; smaller numbers have
// classes of their own.
void Durations::Add(nanoseconds duration) {
  const auto number = static_cast<std::uint64_t>(std::max(duration, nanoseconds(0)).count());
  const int shift = std::max(0, static_cast<int>(std::bit_width(number)) - kClassBits - 1);
  ++classes_[(static_cast<std::size_t>(shift) << kClassBits) + (number >> shift)];
  ++count_;
  total_ += duration;
}

nanoseconds Durations::Median() const {
  std::uint64_t below = 0;
  for (std::size_t i = 0; i < classes_.size(); ++i) {
    below += classes_[i];
    if (2 * below <= count_) continue;
    const std::size_t shift = i < (std::size_t{2} << kClassBits) ? 0 : (i >> kClassBits) - 1;
    const std::uint64_t digits = i - (shift << kClassBits);
    return nanoseconds((digits << shift) + ((std::uint64_t{1} << shift) >> 1));
  }
  return nanoseconds(0);
}

void StepTimes::StepRan(std::size_t /*run*/, std::size_t step, const StepOutcome& outcome) {
  steps_[step].Add(outcome.duration);
}

int StepTimes::Finish() {
  nanoseconds all(0);
  for (const Durations& step : steps_) all += step.Total();
  TextTable table("llrrrr");
  table.SetHeader({"Step", "Instruction", "Calls", "Total (ms)", "Median (ms)", "Share"});
  for (std::size_t i = 0; i < steps_.size(); ++i) {
    const double share =
        all.count() == 0 ? 0.0 : 100.0 * Milliseconds(steps_[i].Total()) / Milliseconds(all);
    const auto& generated = program_.steps[i].generated;
    table.Add(
        {generated ? generated->origin : program_.steps[i].name,
         NameFromText(program_.steps[i].instruction->descriptor->name),
         std::to_string(steps_[i].Count()), fmt::format("{:.3f}", Milliseconds(steps_[i].Total())),
         fmt::format("{:.4f}", Milliseconds(steps_[i].Median())), fmt::format("{:.1f} %", share)});
  }
  progress_.Complain(table.Text() +
                     fmt::format("  All steps took {:.3f} ms, the whole run {:.3f} ms.",
                                 Milliseconds(all), Milliseconds(Clock::now() - begin_)));
  return kExitSuccess;
}

}  // namespace nuvhost
