// Overlay: the graphics on the current image, as an instruction draws them.
#pragma once

#include <cstdint>

#include "host/services.h"

namespace formula {

/// The host's annotation service, without the two flags that every drawing operation ends with.
/// A colour is 0x00BBGGRR, 0 for the host's default; a label may be null. Where the host has no
/// such service, nothing is drawn.
class Overlay {
 public:
  explicit Overlay(IXAnnotationService* service) : service_(service) {}

  void Point(const char* label, const CNuvPoint& point, std::uint32_t color) {
    Draw(&IXAnnotationService::DrawPoint, label, point, color);
  }
  void Segment(const char* label, const CNuvPoint& start, const CNuvPoint& end,
               std::uint32_t color) {
    Draw(&IXAnnotationService::DrawSegment, label, start, end, color);
  }
  void Line(const char* label, const CNuvLine& line, std::uint32_t color) {
    Draw(&IXAnnotationService::DrawLine, label, line, color);
  }
  void Circle(const char* label, const CNuvCircle& circle, std::uint32_t color, bool fill) {
    Draw(&IXAnnotationService::DrawCircle, label, circle, color, fill);
  }
  void Circles(const char* label, const CNuvPointVector& centers, double radius,
               std::uint32_t color, bool fill) {
    Draw(&IXAnnotationService::DrawCircles, label, centers, radius, color, fill);
  }
  void Rect(const char* label, const CNuvRect& rect, std::uint32_t color, bool fill) {
    Draw(&IXAnnotationService::DrawRect, label, rect, color, fill);
  }
  void Points(const char* label, const CNuvPointVector& points, std::uint32_t color) {
    Draw(&IXAnnotationService::DrawPoints, label, points, color);
  }
  void Text(const CNuvPoint& location, const char* label, const char* font, std::uint32_t color,
            bool paint_background) {
    Draw(&IXAnnotationService::DrawText, location, label, font, color, paint_background);
  }
  void Polyline(const char* label, const CNuvPointVector& points, std::uint32_t color) {
    Draw(&IXAnnotationService::DrawPolyline, label, points, color);
  }
  void Pixels(const char* label, const CNuvPointVector& pixels, std::uint32_t color) {
    Draw(&IXAnnotationService::DrawPixels, label, pixels, color);
  }

 private:
  template <class Operation, class... Arguments>
  void Draw(Operation operation, const Arguments&... arguments) {
    if (service_ != nullptr) (service_->*operation)(arguments..., true, true);
  }

  IXAnnotationService* service_;
};

}  // namespace formula
