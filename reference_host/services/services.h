// The host's services, which keep what instructions hand them for whoever wants to show it.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "host/log.h"
#include "host/services.h"

namespace nuvhost {

struct Message {
  std::int32_t severity;
  std::string source;
  std::string text;
};

struct ProgramEvent {
  std::int32_t code;
  std::int32_t value;
};

struct LogEntry {
  LEVEL level;
  std::string text;
};

// The figures of annotations, one for each drawing operation.
struct PointFigure {
  CNuvPoint location;
};
struct SegmentFigure {
  CNuvPoint start;
  CNuvPoint end;
};
struct LineFigure {
  CNuvLine line;
};
struct CircleFigure {
  CNuvCircle circle;
  bool fill;
};
struct CirclesFigure {
  CNuvPointVector centers;
  double radius;
  bool fill;
};
struct RectFigure {
  CNuvRect rect;
  bool fill;
};
struct PointsFigure {
  CNuvPointVector points;
};
struct TextFigure {
  CNuvPoint location;
  std::string font;
  bool paint_background;
};
struct PolylineFigure {
  CNuvPointVector points;
};
struct PixelsFigure {
  CNuvPointVector points;
};

struct Annotation {
  std::optional<std::string> label;
  std::uint32_t color;
  std::variant<PointFigure, SegmentFigure, LineFigure, CircleFigure, CirclesFigure, RectFigure,
               PointsFigure, TextFigure, PolylineFigure, PixelsFigure>
      figure;
};

/// What instructions reported, drew and logged, in order.
struct Record {
  std::vector<Message> messages;
  std::vector<ProgramEvent> events;
  std::vector<Annotation> annotations;
  std::vector<LogEntry> log;
};

/// The three services and the application log, recording. The named data lasts as long as the
/// object; the record until it is taken. One object at a time may exist, since the log is one.
class Services {
 public:
  Services();
  Services(const Services&) = delete;
  Services& operator=(const Services&) = delete;
  ~Services();

  /// A service by its number; null for a number that no service has.
  void* Find(std::int32_t number);
  /// The record since it was last taken.
  Record Take();

 private:
  class MessageService final : public IXMessageService {
   public:
    explicit MessageService(Record& record) : record_(record) {}
    void* DeletingDestructor(std::uint32_t flags) override;
    void Report(std::int32_t severity, const CStdStr& source, const CStdStr& text) override;
    void RaiseProgramEvent(std::int32_t code, std::int32_t value) override;

   private:
    Record& record_;
  };

  class NamedDataStore final : public IXNamedDataStore {
   public:
    void* DeletingDestructor(std::uint32_t flags) override;
    void* LookUp(const char* name) override;
    void Store(const char* name, void* pointer) override;

   private:
    struct Free {
      void operator()(void* memory) const { std::free(memory); }
    };

    std::map<std::string, std::unique_ptr<void, Free>, std::less<>> pointers_;
  };

  class AnnotationService final : public IXAnnotationService {
   public:
    explicit AnnotationService(Record& record) : record_(record) {}
    void* DeletingDestructor(std::uint32_t flags) override;
    void DrawPoint(const char* label, const CNuvPoint& point, std::uint32_t color, bool flag1,
                   bool flag2) override;
    void DrawSegment(const char* label, const CNuvPoint& start, const CNuvPoint& end,
                     std::uint32_t color, bool flag1, bool flag2) override;
    void DrawLine(const char* label, const CNuvLine& line, std::uint32_t color, bool flag1,
                  bool flag2) override;
    void DrawCircle(const char* label, const CNuvCircle& circle, std::uint32_t color, bool fill,
                    bool flag1, bool flag2) override;
    void DrawCircles(const char* label, const CNuvPointVector& centers, double radius,
                     std::uint32_t color, bool fill, bool flag1, bool flag2) override;
    void DrawRect(const char* label, const CNuvRect& rect, std::uint32_t color, bool fill,
                  bool flag1, bool flag2) override;
    void DrawPoints(const char* label, const CNuvPointVector& points, std::uint32_t color,
                    bool flag1, bool flag2) override;
    void DrawText(const CNuvPoint& location, const char* label, const char* font,
                  std::uint32_t color, bool paint_background, bool flag1, bool flag2) override;
    void DrawPolyline(const char* label, const CNuvPointVector& points, std::uint32_t color,
                      bool flag1, bool flag2) override;
    void DrawPixels(const char* label, const CNuvPointVector& pixels, std::uint32_t color,
                    bool flag1, bool flag2) override;

   private:
    template <class Figure>
    void Add(const char* label, std::uint32_t color, Figure figure);

    Record& record_;
  };

  Record record_;
  MessageService messages_{record_};
  NamedDataStore named_data_;
  AnnotationService annotations_{record_};
};

}  // namespace nuvhost
