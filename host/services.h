// The services that the host offers to a running instruction, by their slots.
//
// Slot 0 of each table is the host's own. Instructions call a service during Execute, on the thread
// that runs it; where the host runs several at once, guarding the service is the host's. Texts,
// values and figures passed to it are the instruction's and live only for the call.
#pragma once

#include <cstdint>

#include "host/std_str.h"
#include "host/values.h"
#include "host/vectors.h"

/// The numbers by which a context hands out its services.
enum NuvService : std::int32_t {
  NUV_SERVICE_ANNOTATION = 4100,
  NUV_SERVICE_NAMED_DATA = 4102,
  NUV_SERVICE_MESSAGE = 4105,
};

/// How grave a report is.
enum NuvSeverity : std::int32_t {
  NUV_SEVERITY_WARNING = 1,
  NUV_SEVERITY_ERROR = 2,
};

/// Service 4105: messages to the user and events to the controlling application.
class IXMessageService {
 public:
  /* 0*/ virtual void* DeletingDestructor(std::uint32_t flags) = 0;
  /* 1*/ virtual void Report(std::int32_t severity, const CStdStr& source, const CStdStr& text) = 0;
  /* 2*/ virtual void Reserved2() {}
  /* 3*/ virtual void Reserved3() {}
  /* 4*/ virtual void Reserved4() {}
  /* 5*/ virtual void RaiseProgramEvent(std::int32_t code, std::int32_t value) = 0;

 protected:
  ~IXMessageService() = default;
};

/// Service 4102: pointers stored under names for the life of the host's program run.
class IXNamedDataStore {
 public:
  /* 0*/ virtual void* DeletingDestructor(std::uint32_t flags) = 0;
  /// The pointer stored under the name; null when there is none.
  /* 1*/ virtual void* LookUp(const char* name) = 0;
  /// Keeps memory of the C runtime's heap, which is the store's own from then on.
  /* 2*/ virtual void Store(const char* name, void* pointer) = 0;

 protected:
  ~IXNamedDataStore() = default;
};

/// Service 4100: overlay graphics on the current image. A colour is 0x00BBGGRR, 0 for the host's
/// default; a label may be null. Instructions always pass the two last flags as true.
class IXAnnotationService {
 public:
  /* 0*/ virtual void* DeletingDestructor(std::uint32_t flags) = 0;
  /* 1*/ virtual void DrawPoint(const char* label, const CNuvPoint& point, std::uint32_t color,
                                bool flag1, bool flag2) = 0;
  /* 2*/ virtual void DrawSegment(const char* label, const CNuvPoint& start, const CNuvPoint& end,
                                  std::uint32_t color, bool flag1, bool flag2) = 0;
  /* 3*/ virtual void DrawLine(const char* label, const CNuvLine& line, std::uint32_t color,
                               bool flag1, bool flag2) = 0;
  /* 4*/ virtual void DrawCircle(const char* label, const CNuvCircle& circle, std::uint32_t color,
                                 bool fill, bool flag1, bool flag2) = 0;
  /* 5*/ virtual void DrawCircles(const char* label, const CNuvPointVector& centers, double radius,
                                  std::uint32_t color, bool fill, bool flag1, bool flag2) = 0;
  /* 6*/ virtual void DrawRect(const char* label, const CNuvRect& rect, std::uint32_t color,
                               bool fill, bool flag1, bool flag2) = 0;
  /* 7*/ virtual void DrawPoints(const char* label, const CNuvPointVector& points,
                                 std::uint32_t color, bool flag1, bool flag2) = 0;
  /* 8*/ virtual void DrawText(const CNuvPoint& location, const char* label, const char* font,
                               std::uint32_t color, bool paint_background, bool flag1,
                               bool flag2) = 0;
  /* 9*/ virtual void DrawPolyline(const char* label, const CNuvPointVector& points,
                                   std::uint32_t color, bool flag1, bool flag2) = 0;
  /*10*/ virtual void DrawPixels(const char* label, const CNuvPointVector& pixels,
                                 std::uint32_t color, bool flag1, bool flag2) = 0;

 protected:
  ~IXAnnotationService() = default;
};
