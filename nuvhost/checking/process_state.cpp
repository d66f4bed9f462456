#include "nuvhost/checking/process_state.h"

#include <fmt/format.h>

#include <cstdlib>
#include <cstring>

#include "host/setting.h"

namespace nuvhost::check {

void AddSettings(ProcessFacts& facts) {
  const CNuvSetting& settings = CNuvSetting::Inst();
  facts["the host's angle unit"] =
      settings.GetAngleUnit() == NuvAngleUnit::kDegrees ? "degrees" : "radians";
  facts["the host's default colour"] = std::to_string(settings.GetDefaultAnnotationColor());
  facts["the host's limit of arrays"] = std::to_string(settings.GetVectorLimit());
  facts["the host's log file"] = "\"" + settings.GetLogFile() + "\"";
}

void FillHeap(unsigned char byte) {
  constexpr std::size_t kLargest = 512;
  constexpr std::size_t kStep = 16;
  FillFreshHeap(byte);
  // What is freed last is handed out first.
  void* blocks[4 * kLargest / kStep];
  std::size_t size = kStep;
  for (void*& block : blocks) {
    block = std::malloc(size);
    if (block != nullptr) std::memset(block, byte, size);
    size = size % kLargest + kStep;
  }
  for (void* block : blocks) std::free(block);
}

std::string Difference(const ProcessFacts& before, const ProcessFacts& after) {
  const auto content = [](const ProcessFacts& facts, const std::string& name) {
    const auto found = facts.find(name);
    return found == facts.end() ? std::string("not there") : found->second;
  };
  for (const ProcessFacts* facts : {&before, &after}) {
    for (const auto& [name, ignored] : *facts) {
      const std::string was = content(before, name);
      const std::string is = content(after, name);
      if (was != is) return fmt::format("{} was {}, is {}", name, was, is);
    }
  }
  return "";
}

}  // namespace nuvhost::check
