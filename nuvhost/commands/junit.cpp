#include "nuvhost/commands/junit.h"

#include <fmt/format.h>

#include <algorithm>

#include "nuvhost/drawing/svg_writer.h"

namespace nuvhost {
namespace {

using check::Outcome;

/// A text as XML holds it between tags. In an attribute a line end would become a blank.
std::string Escaped(std::string_view text) {
  return XmlEscaped(XmlText(text));
}

std::string Attribute(std::string_view text) {
  std::string attribute;
  for (const char c : Escaped(text)) {
    const bool is_space = c == '\n' || c == '\r' || c == '\t';
    attribute += is_space ? fmt::format("&#{};", static_cast<int>(c)) : std::string(1, c);
  }
  return attribute;
}

std::string TestCase(const JudgedLaw& judged) {
  const auto& [law, verdict, time] = judged;
  std::string text = fmt::format("    <testcase classname=\"{}\" name=\"{}\" time=\"{:.3f}\">\n",
                                 law->group, law->name, time.count());
  if (verdict.outcome == Outcome::kFailed) {
    text += fmt::format("      <failure message=\"{}\">", Attribute(law->demand));
    for (const std::string& complaint : verdict.complaints) text += Escaped(complaint) + '\n';
    const std::size_t untold = verdict.complaint_count - verdict.complaints.size();
    if (untold > 0) text += fmt::format("and {} more\n", untold);
    text += "</failure>\n";
  } else if (verdict.outcome == Outcome::kSkipped) {
    text += fmt::format("      <skipped message=\"{}\"/>\n", Attribute(verdict.note));
  }
  if (verdict.outcome != Outcome::kSkipped && !verdict.note.empty()) {
    text += fmt::format("      <system-out>{}</system-out>\n", Escaped(verdict.note));
  }
  return text + "    </testcase>\n";
}

}  // namespace

const char* Word(Outcome outcome) {
  switch (outcome) {
    case Outcome::kPassed: return "pass";
    case Outcome::kFailed: return "FAIL";
    case Outcome::kSkipped: break;
  }
  return "skip";
}

std::string JunitXml(const std::string& library, const std::vector<JudgedLaw>& judged) {
  const auto count = [&](Outcome outcome) {
    return std::ranges::count_if(
        judged, [&](const JudgedLaw& one) { return one.verdict.outcome == outcome; });
  };
  std::chrono::duration<double> time{};
  std::string cases;
  for (const JudgedLaw& one : judged) {
    time += one.time;
    cases += TestCase(one);
  }
  const std::string counts =
      fmt::format(R"(tests="{}" failures="{}" errors="0" skipped="{}" time="{:.3f}")",
                  judged.size(), count(Outcome::kFailed), count(Outcome::kSkipped), time.count());
  return fmt::format(
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuites {0}>\n"
      "  <testsuite name=\"nuvhost check {1}\" {0}>\n{2}  </testsuite>\n</testsuites>\n",
      counts, Attribute(library), cases);
}

}  // namespace nuvhost
