// Fuzz targets: what each does with any bytes, whether a fuzz engine makes them up (engine.cpp) or
// they come from files (replay.cpp). A target that finds something wrong ends the process.
#pragma once

#include <span>
#include <string_view>

#include "nuvhost/library/catalogue.h"
#include "tests/fuzz/bytes.h"

namespace fuzz {

/// Ends the process, with the text on standard error, where something does not hold.
void Require(bool holds, std::string_view what);

/// The instructions of the plug-in beside the program.
const nuvhost::Catalogue& Instructions();
/// The same, where those that touch the outer world do nothing and succeed: for requests and
/// programs, which name any instruction and pass it anything.
const nuvhost::Catalogue& HarmlessInstructions();

/// Every instruction in turn, with values made of the bytes.
void CallInstructions(Bytes bytes);
/// How often each was executed, one line an instruction.
void WriteCalls(const char* path);

void AnswerRequest(Bytes bytes);
void RunProgram(Bytes bytes);
void ReadCsv(Bytes bytes);
void ReadJson(Bytes bytes);
void ReadHeader(Bytes bytes);
void DrawOverlay(Bytes bytes);
void Format(Bytes bytes);
void Scan(Bytes bytes);
void FormatTime(Bytes bytes);

struct Target {
  std::string_view name;
  void (*run)(Bytes bytes);
};
inline constexpr Target kTargets[] = {
    {"call", CallInstructions}, {"exec", AnswerRequest}, {"program", RunProgram},
    {"csv", ReadCsv},           {"json", ReadJson},      {"image", ReadHeader},
    {"overlay", DrawOverlay},   {"format", Format},      {"scan", Scan},
    {"picture", FormatTime}};

}  // namespace fuzz
