// Junit: what came of laws, as build servers read it.
#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "nuvhost/checking/law.h"

namespace nuvhost {

/// A law, what came of it, and how long that took.
struct JudgedLaw {
  const check::Law* law;
  check::Verdict verdict;
  std::chrono::duration<double> time;
};

/// "pass", "FAIL", "skip".
const char* Word(check::Outcome outcome);

/// JUnit's XML: a test case for each law, whose class is its group, with its complaints as a
/// failure's text, or its note as the reason for skipping it. Characters that XML cannot hold
/// become U+FFFD.
std::string JunitXml(const std::string& library, const std::vector<JudgedLaw>& judged);

}  // namespace nuvhost
