// Line and circle fits of points near a figure, without outliers and with 30 % of them, beside
// OpenCV's line fits, and beside the sums over the points that any fit needs.

#include "bench/rows.h"
#include "tests/host/fit_scene.h"
#ifdef FORMULA_WITH_OPENCV
#include <opencv2/imgproc.hpp>
#endif

namespace bench {
namespace {

Inputs AnyScene(Shape shape, std::size_t percent, Random& random, std::size_t count) {
  ::Random scene_random(random());
  const Scene scene = MakeScene(
      scene_random,
      {.shape = shape, .count = count, .out = count * percent / 100, .clearance = kSize * 1e-2});
  CNuvObject object;
  auto& array = static_cast<CNuvPointVector&>(object);
  for (const CNuvPoint& point : scene.points) array.PushBack(point);
  return List(static_cast<double>(percent), object);
}

#ifdef FORMULA_WITH_OPENCV
Peer OpenCvLine(const char* name, int distance) {
  return Other(
      name,
      [distance](const Inputs& /*in*/, Out& out) {
        const cv::Mat points(static_cast<int>(out.floats.size() / 2), 1, CV_32FC2,
                             out.floats.data());
        cv::Vec4f line;
        cv::fitLine(points, line, distance, 0.0, 0.01, 0.01);
        asm volatile("" : : "r"(&line) : "memory");
      },
      [](const Inputs& in, Out& out) {
        for (const CNuvPoint& point : Points(in[1])) {
          out.floats.push_back(static_cast<float>(point.x));
          out.floats.push_back(static_cast<float>(point.y));
        }
      });
}
#endif

Peer Sums() {
  return Other("plain sums", [](const Inputs& in, Out& out) {
    double xx = 0.0;
    double yy = 0.0;
    double xy = 0.0;
    for (const CNuvPoint& p : Points(in[1])) {
      xx += p.x * p.x;
      yy += p.y * p.y;
      xy += p.x * p.y;
    }
    out.copy.assign({xx, yy, xy});
  });
}

}  // namespace

void AddFitRows(std::vector<Row>& rows) {
  for (const Shape shape : {Shape::kLine, Shape::kCircle}) {
    for (const std::size_t percent : {0, 30}) {
      const bool is_line = shape == Shape::kLine;
      Row row = {std::string(is_line ? "line" : "circle") + " fit, " +
                     (percent == 0 ? "no outliers" : "30 % outliers"),
                 is_line ? "_Nuv_Geometric_Pt2BestLn_" : "_Nuv_Geometric_Pt2BestCircle_",
                 {100, 1000, 10000},
                 [=](Random& random, std::size_t n) { return AnyScene(shape, percent, random, n); },
                 percent == 0 ? std::vector<Peer>{Sums()} : std::vector<Peer>{},
                 percent != 0};
#ifdef FORMULA_WITH_OPENCV
      if (is_line) {
        row.peers.push_back(percent == 0 ? OpenCvLine("OpenCV L2", cv::DIST_L2)
                                         : OpenCvLine("OpenCV Huber", cv::DIST_HUBER));
      }
#endif
      rows.push_back(row);
    }
  }
}

}  // namespace bench
