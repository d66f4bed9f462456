// How alike two number arrays are.

#include <algorithm>

#include "algorithm/correlation.h"
#include "plugin/instruction.h"

namespace formula {

/// Of the elements that stand beside each other once array_2 has moved forward by the shift, or
/// array_1 by a negative one.
struct CNArrMathCorrelate final : Instruction<CNArrMathCorrelate> {
  static constexpr Definition kDefinition{
      .category = "Array: Number",
      .name = "Correlate",
      .identifier = "_Nuv_Array_CNArrMathCorrelate_",
      .help = 460275,
      .description = "Output = normalized_correlation(array_1, array_2)",
      .inputs = {Numbers("array_1", "First input array"), Numbers("array_2", "Second input array"),
                 Number("shift", 0.0, "Amount to shift array_1 relative to array_2")},
      .results = {Number("correlation value"), Number("status"), Number("number of values used")},
  };

  enum Outcome { kGood, kNoValues, kConstant };

  static Status Run(Call& call, const CNuvDoubleVector& array_1, const CNuvDoubleVector& array_2,
                    HostInteger shift) {
    const std::int64_t start_1 = std::max(-std::int64_t{shift}, std::int64_t{0});
    const std::int64_t start_2 = std::max(std::int64_t{shift}, std::int64_t{0});
    const std::int64_t count = std::min(static_cast<std::int64_t>(array_1.Size()) - start_1,
                                        static_cast<std::int64_t>(array_2.Size()) - start_2);
    if (count < 1) {
      call.Warn("Correlate", "No array values to correlate!");
      return Answer(call, 0.0, kNoValues, 0);
    }
    const double* x = array_1.GetStorage() + start_1;
    const double* y = array_2.GetStorage() + start_2;
    const auto size = static_cast<std::size_t>(count);
    const std::optional<double> value = Correlate(x, y, size);
    if (!value) {
      call.Warn("Correlate", "Constant array(s)!");
      return Answer(call, 0.0, kConstant, size);
    }
    return Answer(call, *value, kGood, size);
  }

 private:
  static Status Answer(Call& call, double value, Outcome outcome, std::size_t size) {
    call.Set(0, value);
    call.Set(1, static_cast<double>(outcome));
    return call.Set(2, static_cast<double>(size));
  }
};

/// Of the shorter array with every rotation of the longer. A rotation that is constant where the
/// shorter one covers it scores 0 and is counted as invalid.
struct CNArrMathCorrelateCircular final : Instruction<CNArrMathCorrelateCircular> {
  static constexpr Definition kDefinition{
      .category = "Array: Number",
      .name = "CorrelateCircular",
      .identifier = "_Nuv_Array_CNArrMathCorrelateCircular_",
      .help = 460282,
      .description =
          "Output array of normalized correlations between circular template and search arrays",
      .inputs = {Numbers("array_1", "First input array of numbers"),
                 Numbers("array_2", "Second input array of numbers"),
                 Boolean("align scores", false,
                         "If true, align array of correlation                 scores with smaller "
                         "input array center position")},
      .results = {Numbers("correlation scores"), Number("template size"), Number("# invalid")},
  };
  static Status Run(Call& call, const CNuvDoubleVector& array_1, const CNuvDoubleVector& array_2,
                    bool align) {
    CNuvDoubleVector& scores = call.NumbersResult(0);
    if (array_1.Size() == 0 || array_2.Size() == 0) {
      call.Warn("CorrelateCircular", "No array values to correlate!");
      return Status::kSuccess;
    }
    const bool first_is_shorter = array_1.Size() <= array_2.Size();
    const CNuvDoubleVector& pattern = first_is_shorter ? array_1 : array_2;
    const CNuvDoubleVector& search = first_is_shorter ? array_2 : array_1;
    const std::size_t pattern_size = pattern.Size();
    const std::size_t size = search.Size();
    const CircularCorrelation correlation(pattern.GetStorage(), pattern_size, search.GetStorage(),
                                          size);
    // The inputs are copied: the scores may be one of them.
    scores.Resize(size);
    double* out = scores.GetStorage();
    const std::size_t invalid = correlation.WriteScores(out);
    if (align && pattern_size >= 3) std::rotate(out, out + (size - pattern_size / 2), out + size);
    call.Set(1, static_cast<double>(pattern_size));
    return call.Set(2, static_cast<double>(invalid));
  }
};

template struct Instructions<CNArrMathCorrelate, CNArrMathCorrelateCircular>;

}  // namespace formula
