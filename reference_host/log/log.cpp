#include "host/log.h"

#include <cstdio>

namespace {

const char* Label(LEVEL level) {
  switch (level) {
    case LEVEL_DEBUG: return "debug";
    case LEVEL_INFORMATION: return "information";
  }
  return "log";
}

}  // namespace

CNuvLog& CNuvLog::Instance() noexcept {
  static constinit CNuvLog log;
  return log;
}

void CNuvLog::Log(LEVEL level, const char* text) noexcept {
  if (text == nullptr) text = "";
  if (sink_ != nullptr) {
    sink_(owner_, level, text);
    return;
  }
  std::fprintf(stderr, "%s: ", Label(level));
  for (const char* c = text; *c != '\0'; ++c) {
    if (*c == '\n') {
      std::fputs("\\n", stderr);
    } else if (*c == '\r') {
      std::fputs("\\r", stderr);
    } else {
      std::fputc(*c, stderr);
    }
  }
  std::fputc('\n', stderr);
}

void CNuvLog::SetSink(Sink sink, void* owner) noexcept {
  sink_ = sink;
  owner_ = owner;
}
