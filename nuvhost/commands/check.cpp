// `nuvhost check`: every law in a process of its own, and what came of it.

#include <chrono>
#include <cstdio>

#include "host/setting.h"
#include "nuvhost/checking/law.h"
#include "nuvhost/commands/commands.h"
#include "nuvhost/error.h"
#include "nuvhost/system/child_process.h"
#include "nuvhost/system/console.h"
#include "nuvhost/system/paths.h"
#include "nuvhost/system/progress.h"
#include "nuvhost/system/temporary_folder.h"
#include "nuvhost/text/text_table.h"
#include "nuvhost/values/json_value.h"

namespace nuvhost {
namespace {

using check::Law;
using check::Outcome;
using check::Verdict;

constexpr std::size_t kShownComplaints = 5;

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

Verdict JudgeInChild(const Law& law, const std::filesystem::path& library, int seconds,
                     const TemporaryFolder& folder) {
  const std::filesystem::path record = folder.Path() / law.name;
  const ChildEnd end =
      RunChild(ProgramPath(),
               {"check", "--law", law.name, "--record", ToUtf8(record), "--", ToUtf8(library)},
               std::chrono::seconds(seconds));
  const std::string ending =
      end.in_time ? "crashed" : fmt::format("no answer within {} s", seconds);
  Verdict verdict = check::ReadVerdict(record, ending);
  if (!verdict.cannot_load.empty()) throw UserError(verdict.cannot_load);
  return verdict;
}

Verdict SkippedForWantOf(const Law& essential) {
  Verdict verdict;
  verdict.outcome = Outcome::kSkipped;
  verdict.note = fmt::format("cannot be judged while \"{}\" fails", essential.name);
  return verdict;
}

const char* Word(Outcome outcome) {
  switch (outcome) {
    case Outcome::kPassed: return "pass";
    case Outcome::kFailed: return "FAIL";
    case Outcome::kSkipped: break;
  }
  return "skip";
}

void Show(const Law& law, const Verdict& verdict) {
  const bool failed = verdict.outcome == Outcome::kFailed;
  const std::string remark = failed                 ? std::string("  ") + law.demand
                             : verdict.note.empty() ? ""
                                                    : "  (" + verdict.note + ")";
  Print(std::string(Word(verdict.outcome)) + "  " + Padded(law.group, 11) + "  " + law.name +
        remark + '\n');
  for (std::size_t i = 0; i < verdict.complaints.size() && i < kShownComplaints; ++i) {
    Print("        " + verdict.complaints[i] + '\n');
  }
  if (verdict.complaint_count > kShownComplaints) {
    Print(fmt::format("        and {} more\n", verdict.complaint_count - kShownComplaints));
  }
  FlushOutput();
}

Json VerdictToJson(const Law& law, const Verdict& verdict) {
  return {{"law", law.name},
          {"group", law.group},
          {"demand", law.demand},
          {"verdict", Word(verdict.outcome)},
          {"note", verdict.note},
          {"complaintCount", verdict.complaint_count},
          {"complaints", verdict.complaints}};
}

}  // namespace

int Check(const std::filesystem::path& library, int seconds, bool as_json) {
  std::error_code ignored;
  if (!std::filesystem::is_regular_file(library, ignored)) {
    throw UserError("no plug-in library at {}; name one: nuvhost check LIBRARY", ToUtf8(library));
  }
  const std::vector<const Law*> laws = check::AllLaws();
  const TemporaryFolder folder;
  const LawOnTrial progress;
  Json list = Json::array();
  std::size_t counts[3] = {};
  const Law* unmet = nullptr;
  for (const Law* law : laws) {
    progress.Show(list.size() + 1, laws.size(), *law);
    const Verdict verdict =
        unmet != nullptr ? SkippedForWantOf(*unmet) : JudgeInChild(*law, library, seconds, folder);
    progress.Wipe();
    if (law->essential && verdict.outcome == Outcome::kFailed) unmet = law;
    ++counts[static_cast<std::size_t>(verdict.outcome)];
    if (!as_json) Show(*law, verdict);
    list.push_back(VerdictToJson(*law, verdict));
  }
  const auto [passed, failed, skipped] = counts;
  if (as_json) {
    const Json answer{{"library", ToUtf8(library)},
                      {"laws", list},
                      {"passed", passed},
                      {"failed", failed},
                      {"skipped", skipped}};
    Print(answer.dump(2, ' ', false, Json::error_handler_t::replace) + '\n');
  } else {
    Print(fmt::format("{} passed, {} failed, {} skipped\n", passed, failed, skipped));
  }
  return failed == 0 ? kExitSuccess : kExitFailed;
}

int CheckLaw(const std::filesystem::path& library, const std::string& law,
             const std::filesystem::path& record) {
  ExpectTheWorst();
  CNuvSetting::Inst().SetVectorLimit(kMaxElements);
  for (const Law* known : check::AllLaws()) {
    if (known->name != law) continue;
    check::JudgeLaw(*known, library, record);
    return kExitSuccess;
  }
  throw UserError("unknown law \"{}\"", law);
}

}  // namespace nuvhost
