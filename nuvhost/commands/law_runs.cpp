#include "nuvhost/commands/law_runs.h"

#include <algorithm>
#include <chrono>

#include "nuvhost/checking/fuzz.h"
#include "nuvhost/error.h"
#include "nuvhost/system/child_process.h"
#include "nuvhost/system/paths.h"

namespace nuvhost {

using check::FuzzPlan;
using check::Law;
using check::Outcome;
using check::Verdict;

namespace {

/// A process of random calls lasts so long, lest a hang take all the time that there is.
constexpr std::chrono::milliseconds kSlice(10'000);

}  // namespace

Verdict LawRuns::Run(const Law& law, std::vector<std::string> more,
                     std::chrono::milliseconds time) const {
  std::vector<std::string> words = {"check", "--law", law.name};
  for (const std::string& identifier : charge_.outer_world) {
    words.insert(words.end(), {"--outer-world", identifier});
  }
  words.insert(words.end(), more.begin(), more.end());
  words.insert(words.end(), {"--", ToUtf8(charge_.library)});
  const ChildEnd end = RunChild(ProgramPath(), words, time + std::chrono::seconds(seconds_));
  const std::string ending = !end.in_time    ? fmt::format("no answer within {} s", seconds_)
                             : end.code != 0 ? "crashed"
                                             : "";
  Verdict verdict = check::ReadVerdict(end.output, ending);
  if (!verdict.cannot_load.empty()) throw UserError(verdict.cannot_load);
  return verdict;
}

Verdict LawRuns::Judge(const Law& law) const {
  return Run(law, {}, {});
}

Verdict LawRuns::RunFuzz(const FuzzPlan& plan) const {
  std::string left_out;
  for (const std::size_t instruction : plan.left_out) {
    left_out += (left_out.empty() ? "" : ",") + std::to_string(instruction);
  }
  std::vector<std::string> words = {"--seed",  std::to_string(plan.seed),
                                    "--calls", std::to_string(plan.calls),
                                    "--time",  std::to_string(plan.time.count())};
  if (!left_out.empty()) words.insert(words.end(), {"--left-out", left_out});
  return Run(check::kFuzzLaw, std::move(words), plan.time);
}

void LawRuns::FindAgain(Verdict& verdict, FuzzPlan& rest) const {
  FuzzPlan again = rest;
  again.seed = verdict.reached.seed;
  again.calls = verdict.reached.calls;
  again.time = {};
  const Verdict found = RunFuzz(again);
  if (found.over) {
    verdict.complaints.back() +=
        fmt::format(" from seed {} to {}, and not when these were made again", again.seed,
                    again.seed + again.calls - 1);
    rest.seed = again.seed + again.calls;
  } else {
    verdict.complaints.back() = found.complaints.back();
    rest.seed = found.reached.seed + 1;
    rest.left_out.push_back(found.reached.instruction);
  }
}

Verdict LawRuns::JudgeFuzz() const {
  const FuzzPlan& plan = charge_.plan;
  if (plan.calls > 0) return RunFuzz(plan);
  using Clock = std::chrono::steady_clock;
  const Clock::time_point deadline = Clock::now() + plan.time;
  FuzzPlan slice = plan;
  Verdict all;
  for (bool goes_on = true; goes_on && Clock::now() < deadline;) {
    slice.time =
        std::min(kSlice, std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()));
    Verdict verdict = RunFuzz(slice);
    if (verdict.outcome == Outcome::kSkipped) return verdict;
    slice.left_out.insert(slice.left_out.end(), verdict.left_out.begin(), verdict.left_out.end());
    if (verdict.over) {
      goes_on = verdict.reached.seed != slice.seed;  // else every instruction is left out
      slice.seed = verdict.reached.seed;
    } else if (verdict.reached.calls > 0) {
      FindAgain(verdict, slice);
    } else {
      goes_on = false;  // it was no call
    }
    all.not_called = verdict.not_called;
    all.complaint_count += verdict.complaint_count;
    all.complaints.insert(all.complaints.end(), verdict.complaints.begin(),
                          verdict.complaints.end());
  }
  all.outcome = all.complaint_count == 0 ? Outcome::kPassed : Outcome::kFailed;
  all.note = fmt::format("seed {}, {} calls", plan.seed, slice.seed - plan.seed);
  return all;
}

}  // namespace nuvhost
