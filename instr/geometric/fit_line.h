// What the line fits through a set of points have in common: their results.
#pragma once

#include "host/geometry.h"
#include "instr/geometric/fit_points.h"
#include "plugin/call.h"
#include "plugin/definition.h"

namespace formula {

inline constexpr ConstantList<Parameter, 16> kLineFitResults = {
    Number("points included"), Line("line"), Points("outliers"), Points("points used")};

/// The results of a line fit: of none, zero and empty. Arrays are not emptied before a fit, which
/// would have to fill them once more.
class LineFitResults {
 public:
  explicit LineFitResults(Call& call) : call_(call), outliers_(Outliers(call)), used_(Used(call)) {}
  static CNuvPointVector& Outliers(Call& call) { return call.ArrayResult<CNuvPointVector>(2); }
  static CNuvPointVector& Used(Call& call) { return call.ArrayResult<CNuvPointVector>(3); }

  void SetNone() {
    Set(0, CNuvLine(0.0, 0.0));
    outliers_.Resize(0);
    used_.Resize(0);
  }

  /// Fits the line and writes it. Whether there is one.
  bool Fit(const CNuvPoint* points, std::size_t count, std::uint32_t percent) {
    std::uint32_t included = 0;
    CNuvLine line;
    try {
      const bool fitted =
          CNuvGeometry::Points2BestLine(points, static_cast<std::uint32_t>(count), percent,
                                        &included, &line, &outliers_, &used_) == 0;
      Set(included, line);
      return fitted;
    } catch (...) {
      SetNone();
      throw;
    }
  }

 private:
  void Set(std::uint32_t included, const CNuvLine& line) {
    call_.Set(0, static_cast<double>(included));
    call_.Set(1, line);
  }

  Call& call_;
  CNuvPointVector& outliers_;
  CNuvPointVector& used_;
};

/// The display attribute that the fits set for their array of outliers.
constexpr std::int32_t kOutlierMark = 65535;

}  // namespace formula
