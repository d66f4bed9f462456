// `nuvhost check`: every law in a process of its own, and what came of it.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <optional>
#include <random>
#include <set>
#include <sstream>

#include "host/setting.h"
#include "nuvhost/checking/fuzz.h"
#include "nuvhost/checking/law.h"
#include "nuvhost/commands/commands.h"
#include "nuvhost/commands/junit.h"
#include "nuvhost/commands/law_runs.h"
#include "nuvhost/error.h"
#include "nuvhost/system/child_process.h"
#include "nuvhost/system/console.h"
#include "nuvhost/system/output_file.h"
#include "nuvhost/system/paths.h"
#include "nuvhost/system/progress.h"
#include "nuvhost/text/names.h"
#include "nuvhost/text/text_table.h"
#include "nuvhost/values/json_value.h"

namespace nuvhost {
namespace {

using check::Law;
using check::Outcome;
using check::Verdict;

constexpr std::size_t kShownComplaints = 5;

/// How long random calls are made unless told.
constexpr int kFuzzSeconds = 60;

/// What an array may hold while instructions are called with absurd counts.
constexpr std::size_t kMaxElements = 1'000'000;

/// One line on a terminal that says what is being judged, and nothing elsewhere.
class LawOnTrial {
 public:
  void Show(std::size_t number, std::size_t total, const Law& law) const {
    if (on_) std::fprintf(stderr, "\r%2zu of %zu: %-20s", number, total, law.name);
  }
  void Wipe() const {
    if (on_) std::fprintf(stderr, "\r%*s\r", 40, "");
  }

 private:
  bool on_ = ErrorsGoToTerminal();
};

Verdict SkippedForWantOf(const Law& essential) {
  Verdict verdict;
  verdict.outcome = Outcome::kSkipped;
  verdict.note = fmt::format("cannot be judged while \"{}\" fails", essential.name);
  return verdict;
}

void Show(const Law& law, const Verdict& verdict) {
  const bool failed = verdict.outcome == Outcome::kFailed;
  std::string remark = failed ? std::string("  ") + law.demand : "";
  if (!verdict.note.empty()) remark += "  (" + verdict.note + ")";
  Print(std::string(Word(verdict.outcome)) + "  " + Padded(law.group, 11) + "  " + law.name +
        remark + '\n');
  for (std::size_t i = 0; i < verdict.complaints.size() && i < kShownComplaints; ++i) {
    std::istringstream lines(verdict.complaints[i]);
    for (std::string line; std::getline(lines, line);) Print("        " + line + '\n');
  }
  if (verdict.complaint_count > kShownComplaints) {
    Print(fmt::format("        and {} more\n", verdict.complaint_count - kShownComplaints));
  }
  FlushOutput();
}

Json VerdictToJson(const JudgedLaw& judged) {
  const auto& [law, verdict, time] = judged;
  return {{"law", law->name},
          {"group", law->group},
          {"demand", law->demand},
          {"verdict", Word(verdict.outcome)},
          {"note", verdict.note},
          {"notCalled", verdict.not_called},
          {"complaintCount", verdict.complaint_count},
          {"complaints", verdict.complaints}};
}

/// The laws of a level, in the order in which they are judged.
std::vector<const Law*> LawsOf(const std::string& level) {
  std::vector<const Law*> laws = check::AllLaws();
  if (level == "quick") {
    std::erase_if(laws, [](const Law* law) {
      return law->group != std::string_view("interface") &&
             law->group != std::string_view("descriptors");
    });
  }
  if (level == "stress") laws.push_back(&check::kFuzzLaw);
  return laws;
}

const Law* Find(const std::vector<const Law*>& laws, const std::string& name) {
  const auto found = std::ranges::find(laws, name, &Law::name);
  return found == laws.end() ? nullptr : *found;
}

/// The laws that are wanted, of those of the level.
std::set<const Law*> Wanted(const CheckOptions& options, const std::vector<const Law*>& laws) {
  std::set<const Law*> wanted;
  for (const std::string& name : options.only) {
    if (const Law* law = Find(laws, name)) {
      wanted.insert(law);
      continue;
    }
    const char* level = Find(LawsOf("full"), name) != nullptr ? "full" : "stress";
    if (Find(LawsOf(level), name) != nullptr) {
      throw UserError("law \"{}\" is not judged at --level {}; add --level {}", name, options.level,
                      level);
    }
    std::vector<std::string_view> known;
    for (const Law* law : LawsOf("stress")) known.emplace_back(law->name);
    throw UserError("no law \"{}\"{}", name, DidYouMean(name, known));
  }
  if (options.only.empty()) wanted.insert(laws.begin(), laws.end());
  return wanted;
}

/// What random calls there are to be: by time, or one where there is none.
check::FuzzPlan PlanOf(const CheckOptions& options) {
  check::FuzzPlan plan;
  plan.seed = options.seed ? *options.seed : std::random_device()();
  plan.time = std::chrono::seconds(options.seconds.value_or(kFuzzSeconds));
  if (options.seconds == 0) plan.calls = 1;
  return plan;
}

/// Judges the laws that are wanted and the essential ones before them, which are told where they
/// fail.
std::vector<JudgedLaw> Judge(const CheckOptions& options, bool tell) {
  const std::vector<const Law*> laws = LawsOf(options.level);
  const std::set<const Law*> wanted = Wanted(options, laws);
  const LawRuns runs({options.library, options.outer_world, PlanOf(options)}, options.timeout);
  const LawOnTrial progress;
  std::vector<JudgedLaw> judged;
  const Law* unmet = nullptr;
  std::size_t left = wanted.size();
  for (std::size_t i = 0; i < laws.size() && left > 0; ++i) {
    const Law& law = *laws[i];
    const bool is_wanted = wanted.contains(&law);
    if (is_wanted) --left;
    if (!is_wanted && (!law.essential || unmet != nullptr)) continue;
    progress.Show(i + 1, laws.size(), law);
    const auto begin = std::chrono::steady_clock::now();
    const Verdict verdict = unmet != nullptr           ? SkippedForWantOf(*unmet)
                            : &law == &check::kFuzzLaw ? runs.JudgeFuzz()
                                                       : runs.Judge(law);
    progress.Wipe();
    if (law.essential && verdict.outcome == Outcome::kFailed) unmet = &law;
    if (!is_wanted && unmet != &law) continue;
    judged.push_back({&law, verdict, std::chrono::steady_clock::now() - begin});
    if (tell) Show(law, verdict);
  }
  return judged;
}

void CheckOptionsFit(const CheckOptions& options) {
  std::error_code ignored;
  if (!std::filesystem::is_regular_file(options.library, ignored)) {
    throw UserError("no plug-in library at {}; name one: nuvhost check LIBRARY",
                    ToUtf8(options.library));
  }
  if (options.level != "stress" && (options.seed || options.seconds)) {
    throw UserError("--seed and --seconds are of random calls; add --level stress");
  }
  if (options.junit == kPrinted && options.as_json) {
    throw UserError("--json and --junit both print; give --junit a file: --junit FILE.xml");
  }
  if (!options.junit.empty() && options.junit != kPrinted && !options.junit.ends_with(".xml")) {
    throw UserError(
        "--junit writes FILE.xml, not {}; a library stands before it: nuvhost check LIBRARY "
        "--junit",
        options.junit);
  }
}

}  // namespace

int Check(const CheckOptions& options) {
  CheckOptionsFit(options);
  std::optional<OutputFile> junit;
  const bool prints_junit = options.junit == kPrinted;
  if (!options.junit.empty() && !prints_junit) junit.emplace(options.junit, "JUnit XML");
  const bool tells = !options.as_json && !prints_junit;
  const std::vector<JudgedLaw> judged = Judge(options, tells);
  std::size_t counts[3] = {};
  std::size_t not_called = 0;
  Json list = Json::array();
  for (const JudgedLaw& one : judged) {
    ++counts[static_cast<std::size_t>(one.verdict.outcome)];
    not_called = std::max(not_called, one.verdict.not_called);
    list.push_back(VerdictToJson(one));
  }
  const auto [passed, failed, skipped] = counts;
  const std::string library = ToUtf8(options.library);
  if (options.as_json) {
    const Json answer{{"library", library}, {"laws", list},       {"passed", passed},
                      {"failed", failed},   {"skipped", skipped}, {"notCalled", not_called}};
    Print(answer.dump(2, ' ', false, Json::error_handler_t::replace) + '\n');
  } else if (tells) {
    Print(fmt::format("{} passed, {} failed, {} skipped", passed, failed, skipped));
    if (not_called > 0) Print(fmt::format("; {} instructions not called", not_called));
    Print("\n");
  }
  if (prints_junit) Print(JunitXml(library, judged));
  if (junit) {
    junit->Write(JunitXml(library, judged));
    junit->Finish();
  }
  return failed == 0 ? kExitSuccess : kExitFailed;
}

int CheckLaw(const check::Charge& charge, const std::string& law) {
  const Law* known = Find(LawsOf("stress"), law);
  if (known == nullptr) throw UserError("unknown law \"{}\"", law);
  ExpectTheWorst();
  CNuvSetting::Inst().SetVectorLimit(kMaxElements);
  PrivateOutput output;
  // What sets up handlers is told by "process", before which they must not be refused.
  if (law != "process") RefuseCrashHandlers();
  check::JudgeLaw(*known, charge, [&](std::string_view line) {
#if defined(_WIN32)
    if (law != "process") RefuseCrashHandlers();  // once more, before what comes next
#endif
    output.Write(line);
  });
  return kExitSuccess;
}

}  // namespace nuvhost
