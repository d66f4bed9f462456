#include "reference_host/services/services.h"

#include <utility>

namespace nuvhost {
namespace {

std::optional<std::string> Label(const char* label) {
  if (label == nullptr) return std::nullopt;
  return label;
}

void RecordLogEntry(void* record, LEVEL level, const char* text) {
  try {
    static_cast<Record*>(record)->log.push_back({level, text});
  } catch (...) {
    // A log's sink must not throw: without memory the entry is lost.
  }
}

}  // namespace

Services::Services() {
  CNuvLog::Instance().SetSink(RecordLogEntry, &record_);
}

Services::~Services() {
  CNuvLog::Instance().SetSink(nullptr, nullptr);
}

void* Services::Find(std::int32_t number) {
  switch (number) {
    case NUV_SERVICE_ANNOTATION: return static_cast<IXAnnotationService*>(&annotations_);
    case NUV_SERVICE_NAMED_DATA: return static_cast<IXNamedDataStore*>(&named_data_);
    case NUV_SERVICE_MESSAGE: return static_cast<IXMessageService*>(&messages_);
    default: return nullptr;
  }
}

Record Services::Take() {
  return std::exchange(record_, Record());
}

// The services are members, so nobody's `delete` frees them.
void* Services::MessageService::DeletingDestructor(std::uint32_t /*flags*/) {
  return this;
}
void* Services::NamedDataStore::DeletingDestructor(std::uint32_t /*flags*/) {
  return this;
}
void* Services::AnnotationService::DeletingDestructor(std::uint32_t /*flags*/) {
  return this;
}

void Services::MessageService::Report(std::int32_t severity, const CStdStr& source,
                                      const CStdStr& text) {
  record_.messages.push_back({severity, source.c_str(), text.c_str()});
}

void Services::MessageService::RaiseProgramEvent(std::int32_t code, std::int32_t value) {
  record_.events.push_back({code, value});
}

void* Services::NamedDataStore::LookUp(const char* name) {
  const auto found = pointers_.find(name);
  return found == pointers_.end() ? nullptr : found->second.get();
}

void Services::NamedDataStore::Store(const char* name, void* pointer) {
  pointers_[name].reset(pointer);
}

template <class Figure>
void Services::AnnotationService::Add(const char* label, std::uint32_t color, Figure figure) {
  record_.annotations.push_back({Label(label), color, std::move(figure)});
}

void Services::AnnotationService::DrawPoint(const char* label, const CNuvPoint& point,
                                            std::uint32_t color, bool /*flag1*/, bool /*flag2*/) {
  Add(label, color, PointFigure{point});
}

void Services::AnnotationService::DrawSegment(const char* label, const CNuvPoint& start,
                                              const CNuvPoint& end, std::uint32_t color,
                                              bool /*flag1*/, bool /*flag2*/) {
  Add(label, color, SegmentFigure{start, end});
}

void Services::AnnotationService::DrawLine(const char* label, const CNuvLine& line,
                                           std::uint32_t color, bool /*flag1*/, bool /*flag2*/) {
  Add(label, color, LineFigure{line});
}

void Services::AnnotationService::DrawCircle(const char* label, const CNuvCircle& circle,
                                             std::uint32_t color, bool fill, bool /*flag1*/,
                                             bool /*flag2*/) {
  Add(label, color, CircleFigure{circle, fill});
}

void Services::AnnotationService::DrawCircles(const char* label, const CNuvPointVector& centers,
                                              double radius, std::uint32_t color, bool fill,
                                              bool /*flag1*/, bool /*flag2*/) {
  Add(label, color, CirclesFigure{centers, radius, fill});
}

void Services::AnnotationService::DrawRect(const char* label, const CNuvRect& rect,
                                           std::uint32_t color, bool fill, bool /*flag1*/,
                                           bool /*flag2*/) {
  Add(label, color, RectFigure{rect, fill});
}

void Services::AnnotationService::DrawPoints(const char* label, const CNuvPointVector& points,
                                             std::uint32_t color, bool /*flag1*/, bool /*flag2*/) {
  Add(label, color, PointsFigure{points});
}

void Services::AnnotationService::DrawText(const CNuvPoint& location, const char* label,
                                           const char* font, std::uint32_t color,
                                           bool paint_background, bool /*flag1*/, bool /*flag2*/) {
  Add(label, color, TextFigure{location, font == nullptr ? "" : font, paint_background});
}

void Services::AnnotationService::DrawPolyline(const char* label, const CNuvPointVector& points,
                                               std::uint32_t color, bool /*flag1*/,
                                               bool /*flag2*/) {
  Add(label, color, PolylineFigure{points});
}

void Services::AnnotationService::DrawPixels(const char* label, const CNuvPointVector& pixels,
                                             std::uint32_t color, bool /*flag1*/, bool /*flag2*/) {
  Add(label, color, PixelsFigure{pixels});
}

}  // namespace nuvhost
