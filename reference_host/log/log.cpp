#include "host/log.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include "host/setting.h"

namespace {

const char* Label(LEVEL level) {
  switch (level) {
    case LEVEL_DEBUG: return "debug";
    case LEVEL_INFORMATION: return "information";
  }
  return "log";
}

std::string Line(LEVEL level, const char* text) {
  std::string line = std::string(Label(level)) + ": ";
  for (const char* c = text; *c != '\0'; ++c) {
    if (*c == '\n') {
      line += "\\n";
    } else if (*c == '\r') {
      line += "\\r";
    } else {
      line += *c;
    }
  }
  return line + '\n';
}

/// Prints a line on standard error in UTF-8, each byte a character.
void Print(const std::string& line) {
  std::string utf8;
  for (const char c : line) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte >= 0x80) utf8 += static_cast<char>(0xC0 | byte >> 6);
    utf8 += static_cast<char>(byte < 0x80 ? byte : 0x80 | (byte & 0x3F));
  }
  std::fwrite(utf8.data(), 1, utf8.size(), stderr);
}

bool Append(const std::string& path, const std::string& line) {
  const std::filesystem::path file(std::u8string(path.begin(), path.end()));
  std::ofstream stream(file, std::ios::binary | std::ios::app);
  stream << line << std::flush;
  return stream.good();
}

}  // namespace

CNuvLog& CNuvLog::Instance() noexcept {
  static constinit CNuvLog log;
  return log;
}

void CNuvLog::Log(LEVEL level, const char* text) noexcept {
  if (text == nullptr) text = "";
  if (sink_ != nullptr) sink_(owner_, level, text);
  const std::string& file = CNuvSetting::Inst().GetLogFile();
  if (sink_ != nullptr && file.empty()) return;
  try {
    const std::string line = Line(level, text);
    if (!file.empty() && Append(file, line)) return;
    Print(line);
  } catch (...) {
    // Without memory the entry is lost; whoever logged it goes on.
  }
}

void CNuvLog::SetSink(Sink sink, void* owner) noexcept {
  sink_ = sink;
  owner_ = owner;
}
