// Overlay: the graphics on the current image, as an instruction draws them.
#pragma once

#include <cstdint>

#include "host/services.h"

namespace formula {

/// The host's annotation service, without the two flags that every drawing operation ends with.
/// A colour is 0x00BBGGRR, 0 for the host's default; a label may be null.
class Overlay {
 public:
  explicit Overlay(IXAnnotationService& service) : service_(service) {}

  void Point(const char* label, const CNuvPoint& point, std::uint32_t color) {
    service_.DrawPoint(label, point, color, true, true);
  }
  void Segment(const char* label, const CNuvPoint& start, const CNuvPoint& end,
               std::uint32_t color) {
    service_.DrawSegment(label, start, end, color, true, true);
  }
  void Line(const char* label, const CNuvLine& line, std::uint32_t color) {
    service_.DrawLine(label, line, color, true, true);
  }
  void Circle(const char* label, const CNuvCircle& circle, std::uint32_t color, bool fill) {
    service_.DrawCircle(label, circle, color, fill, true, true);
  }
  void Circles(const char* label, const CNuvPointVector& centers, double radius,
               std::uint32_t color, bool fill) {
    service_.DrawCircles(label, centers, radius, color, fill, true, true);
  }
  void Rect(const char* label, const CNuvRect& rect, std::uint32_t color, bool fill) {
    service_.DrawRect(label, rect, color, fill, true, true);
  }
  void Points(const char* label, const CNuvPointVector& points, std::uint32_t color) {
    service_.DrawPoints(label, points, color, true, true);
  }
  void Text(const CNuvPoint& location, const char* label, const char* font, std::uint32_t color,
            bool paint_background) {
    service_.DrawText(location, label, font, color, paint_background, true, true);
  }
  void Polyline(const char* label, const CNuvPointVector& points, std::uint32_t color) {
    service_.DrawPolyline(label, points, color, true, true);
  }
  void Pixels(const char* label, const CNuvPointVector& pixels, std::uint32_t color) {
    service_.DrawPixels(label, pixels, color, true, true);
  }

 private:
  IXAnnotationService& service_;
};

}  // namespace formula
