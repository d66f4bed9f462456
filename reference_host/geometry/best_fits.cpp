// The fits of CNuvGeometry.

#include <algorithm>
#include <cstdint>
#include <limits>
#include <vector>

#include "host/geometry.h"
#include "reference_host/geometry/circle_fit.h"
#include "reference_host/geometry/enumerate.h"
#include "reference_host/geometry/frame.h"
#include "reference_host/geometry/line_fit.h"
#include "reference_host/geometry/trimmed.h"

namespace {

constexpr std::uint32_t kSuccess = 0;
constexpr std::uint32_t kFailure = 1;

constexpr geometry::Effort kLineEffort = {
    .least_draws = 60, .starts = 6, .first = 4, .carried = 4, .alike = 1e-4};
constexpr geometry::Effort kCircleEffort = {
    .least_draws = 120, .starts = 20, .first = 20, .carried = 10, .alike = 1e-9};

geometry::Selection BestSubset(const geometry::LineFigure& /*figure*/, const CNuvPoint* points,
                               std::size_t count, std::size_t kept, const geometry::Box& box) {
  if (count > geometry::kMostSweptPoints) {
    return geometry::SearchTrimmed<geometry::LineFigure>(
        points, count, kept, box, kLineEffort,
        [](const geometry::Selection& /*selected*/, double squares) { return squares; });
  }
  const geometry::Frame frame =
      geometry::FrameOfMost(points, geometry::Sample(count, count), kept, count, box);
  return geometry::BestLineSubset(geometry::InFrame(frame, points, count), kept);
}

geometry::Selection BestSubset(const geometry::CircleFigure& /*figure*/, const CNuvPoint* points,
                               std::size_t count, std::size_t kept, const geometry::Box& box) {
  if (!geometry::AreCircleSubsetsFew(count, kept)) {
    // By the fit that will be reported: it need not descend to where the search has been.
    std::vector<CNuvPoint> used(kept);
    return geometry::SearchTrimmed<geometry::CircleFigure>(
        points, count, kept, box, kCircleEffort,
        [&](const geometry::Selection& selected, double /*squares*/) {
          auto next = used.begin();
          for (std::size_t i = 0; i < count; ++i) {
            if (selected[i]) *next++ = points[i];
          }
          geometry::CircleFit fit;
          const bool is_fit = geometry::FitCircle(used.data(), kept, &fit);
          return is_fit ? fit.error : std::numeric_limits<double>::infinity();
        });
  }
  const geometry::Frame frame =
      geometry::FrameOfMost(points, geometry::Sample(count, count), kept, count, box);
  return geometry::BestCircleSubset(points, frame, geometry::InFrame(frame, points, count), kept);
}

/// Divides the points into outliers and points used, in their order; false where there is no
/// figure.
template <class Figure>
bool Divide(const CNuvPoint* points, std::uint32_t count, std::uint32_t percent,
            CNuvPointVector* outliers, CNuvPointVector* used) {
  if (points == nullptr || count == 0 || percent >= 100) return false;
  const std::uint64_t out = std::uint64_t{count} * percent / 100;
  const std::size_t kept = count - out;
  if (kept < Figure::kPoints) return false;
  if (out == 0) {
    outliers->Resize(0);
    used->Resize(count);
    std::copy_n(points, count, used->GetStorage());
    return true;
  }
  const geometry::Box box = geometry::BoundingBox(points, count);
  if (!box.IsFinite()) return false;
  const geometry::Selection flags = BestSubset(Figure(), points, count, kept, box);
  if (flags.empty()) return false;
  outliers->Resize(static_cast<std::uint32_t>(out));
  used->Resize(static_cast<std::uint32_t>(kept));
  CNuvPoint* next[2] = {outliers->GetStorage(), used->GetStorage()};
  for (std::uint32_t i = 0; i < count; ++i) *next[flags[i]]++ = points[i];
  return true;
}

std::uint32_t NoFit(CNuvPointVector* outliers, CNuvPointVector* used) {
  outliers->Resize(0);
  used->Resize(0);
  return kFailure;
}

}  // namespace

std::uint32_t CNuvGeometry::Points2BestLine(const CNuvPoint* points, const std::uint32_t& count,
                                            const std::uint32_t& percent, std::uint32_t* included,
                                            CNuvLine* line, CNuvPointVector* outliers,
                                            CNuvPointVector* used) {
  *included = 0;
  *line = CNuvLine();
  geometry::LineFit fit;
  if (!Divide<geometry::LineFigure>(points, count, percent, outliers, used) ||
      !geometry::FitLine(used->GetStorage(), used->Size(), &fit)) {
    return NoFit(outliers, used);
  }
  *included = static_cast<std::uint32_t>(used->Size());
  *line = fit.line;
  return kSuccess;
}

std::uint32_t CNuvGeometry::Points2BestLineMaxOutliers(
    const CNuvPoint* points, const std::uint32_t& count, const std::uint32_t& percent,
    std::uint32_t* included, double* min_distance, double* max_distance, CNuvPoint* min_point,
    CNuvPoint* max_point, CNuvLine* line, CNuvPointVector* outliers) {
  *included = 0;
  *min_distance = 0.0;
  *max_distance = 0.0;
  *min_point = CNuvPoint();
  *max_point = CNuvPoint();
  *line = CNuvLine();
  CNuvPointVector used;
  geometry::LineFit fit;
  if (!Divide<geometry::LineFigure>(points, count, percent, outliers, &used) ||
      !geometry::FitLine(used.GetStorage(), used.Size(), &fit)) {
    return NoFit(outliers, &used);
  }
  *included = static_cast<std::uint32_t>(used.Size());
  *line = fit.line;
  for (std::size_t i = 0; i < used.Size(); ++i) {
    const double distance = fit.SignedDistance(used[i]);
    if (i == 0 || distance < *min_distance) {
      *min_distance = distance;
      *min_point = used[i];
    }
    if (i == 0 || distance > *max_distance) {
      *max_distance = distance;
      *max_point = used[i];
    }
  }
  return kSuccess;
}

std::uint32_t CNuvGeometry::Points2BestCircle(const CNuvPoint* points, const std::uint32_t& count,
                                              const std::uint32_t& percent, double* diameter,
                                              std::uint32_t* included, double* average_error,
                                              CNuvPoint* center, CNuvPointVector* outliers,
                                              CNuvPointVector* used) {
  *diameter = 0.0;
  *included = 0;
  *average_error = 0.0;
  *center = CNuvPoint();
  geometry::CircleFit fit;
  if (!Divide<geometry::CircleFigure>(points, count, percent, outliers, used) ||
      !geometry::FitCircle(used->GetStorage(), used->Size(), &fit)) {
    return NoFit(outliers, used);
  }
  *diameter = fit.diameter;
  *included = static_cast<std::uint32_t>(used->Size());
  *average_error = fit.mean_error;
  *center = CNuvPoint(fit.x, fit.y);
  return kSuccess;
}
