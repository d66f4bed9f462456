// Comparisons of two numbers. Each is false where a number is NaN.

#include <cmath>
#include <limits>

#include "instr/numeric/families.h"

namespace formula {
namespace {

/// How far two numbers may lie apart and still count as equal, whatever their size.
constexpr double kTolerance = std::numeric_limits<double>::epsilon();

}  // namespace

struct CGreater final : Comparison<CGreater> {
  static constexpr Definition kDefinition =
      Row("Greater", "_Nuv_Numeric_CGreater_", 460124, "Returns true if n1 > n2, false otherwise.",
          "n1 > n2");
  static bool Of(double n1, double n2) { return n1 > n2; }
};

struct CGreaterOrEqual final : Comparison<CGreaterOrEqual> {
  static constexpr Definition kDefinition =
      Row("GreaterOrEq", "_Nuv_Numeric_CGreaterOrEqual_", 460125,
          "Returns true if n1 >= n2, false otherwise.", "n1 >= n2");
  static bool Of(double n1, double n2) { return n1 >= n2; }
};

struct CLess final : Comparison<CLess> {
  static constexpr Definition kDefinition =
      Row("Less", "_Nuv_Numeric_CLess_", 460126, "Returns true if n1 < n2, false otherwise.",
          "n1 < n2");
  static bool Of(double n1, double n2) { return n1 < n2; }
};

struct CLessOrEqual final : Comparison<CLessOrEqual> {
  static constexpr Definition kDefinition =
      Row("LessOrEq", "_Nuv_Numeric_CLessOrEqual_", 460127,
          "Returns true if n1 <= n2, false otherwise.", "n1 <= n2");
  static bool Of(double n1, double n2) { return n1 <= n2; }
};

/// Two infinities of one sign are not equal: their difference is NaN.
struct CEqual final : Comparison<CEqual> {
  static constexpr Definition kDefinition =
      Row("Eq", "_Nuv_Numeric_CEqual_", 460128, "Returns true if n1 == n2, false otherwise.",
          "n1 == n2");
  static bool Of(double n1, double n2) { return std::fabs(n1 - n2) <= kTolerance; }
};

/// Not the opposite of "Eq" where the difference is NaN: both are false then.
struct CNotEqual final : Comparison<CNotEqual> {
  static constexpr Definition kDefinition =
      Row("NotEq", "_Nuv_Numeric_CNotEqual_", 460129, "Returns true if n1 != n2, false otherwise.",
          "n1 != n2");
  static bool Of(double n1, double n2) { return std::fabs(n1 - n2) > kTolerance; }
};

template IXInstrPlugin* NewInstruction<CGreater>() noexcept;
template IXInstrPlugin* NewInstruction<CGreaterOrEqual>() noexcept;
template IXInstrPlugin* NewInstruction<CLess>() noexcept;
template IXInstrPlugin* NewInstruction<CLessOrEqual>() noexcept;
template IXInstrPlugin* NewInstruction<CEqual>() noexcept;
template IXInstrPlugin* NewInstruction<CNotEqual>() noexcept;

}  // namespace formula
