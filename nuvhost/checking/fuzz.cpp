#include "nuvhost/checking/fuzz.h"

#include <chrono>
#include <memory>
#include <set>

#include "nuvhost/checking/calling.h"
#include "nuvhost/checking/fuzz_call.h"
#include "nuvhost/system/paths.h"

namespace nuvhost::check {
namespace {

using Clock = std::chrono::steady_clock;

/// How many calls are told of at once, so that one that crashes is soon found again.
constexpr std::uint64_t kCallsTold = 1000;

struct Callable {
  const CatalogueEntry* instruction;
  std::unique_ptr<WorkingObject> object;
};

/// How a call is made again: with all judgement, and by `nuvhost exec`.
std::string Reproducer(const Trial& trial, std::uint64_t seed, const std::string& exec_line) {
  std::string outer_world;
  for (const std::string& identifier : trial.Charged().outer_world) {
    outer_world += fmt::format(" --outer-world \"{}\"", identifier);
  }
  return fmt::format("\nnuvhost check \"{}\" --level stress --only {} --seed {} --seconds 0{}\n{}",
                     ToUtf8(trial.Charged().library), kFuzzLaw.name, seed, outer_world, exec_line);
}

/// Whether there is time for one more call; a plan for a number of calls has all the time.
bool HasTime(const FuzzPlan& plan, std::uint64_t done, Clock::time_point deadline) {
  return plan.calls > 0 ? done < plan.calls : Clock::now() < deadline;
}

void MakeCalls(Trial& trial, const std::vector<Callable>& callable) {
  const FuzzPlan& plan = trial.Charged().plan;
  Services services;
  std::set<std::size_t> left_out(plan.left_out.begin(), plan.left_out.end());
  const Clock::time_point deadline = Clock::now() + plan.time;
  std::uint64_t done = 0;
  trial.At("making random calls");
  for (; HasTime(plan, done, deadline) && left_out.size() < callable.size(); ++done) {
    const std::uint64_t seed = plan.seed + done;
    if (done % kCallsTold == 0) trial.Reached({seed, kCallsTold});
    Random random(seed);
    const auto& [instruction, object] = callable[random.Below(callable.size())];
    if (left_out.contains(instruction->index)) continue;
    const DescriptorRecord& descriptor = *instruction->descriptor;
    const FuzzCall call(descriptor, random);
    if (plan.calls > 0) {
      trial.Reached({seed, 1, instruction->index});
      trial.At("executing " + Label(*instruction) +
               Reproducer(trial, seed, call.ExecLine(descriptor)));
    }
    const std::string complaint = CallComplaint(object->Get(), descriptor, call.AsCase(), services);
    if (complaint.empty()) continue;
    trial.Complain(Label(*instruction) + ": " + complaint +
                   Reproducer(trial, seed, call.ExecLine(descriptor)));
    left_out.insert(instruction->index);
    trial.LeaveOut(instruction->index);
  }
  trial.Reached({plan.seed + done, 0});
  trial.At("destroying the objects of the instructions");
}

void JudgeFuzz(Trial& trial) {
  WithSubject(trial, [&](const Entries& entries) {
    std::vector<Callable> callable;
    for (const CatalogueEntry& instruction : entries) {
      if (TouchesOuterWorld(trial, instruction)) continue;
      trial.At("creating an object of " + Label(instruction));
      callable.push_back({&instruction, std::make_unique<WorkingObject>(*instruction.prototype)});
    }
    trial.NotCalled(entries.size() - callable.size());
    if (callable.empty()) return trial.Skip("no instruction can be called so");
    MakeCalls(trial, callable);
  });
}

}  // namespace

constinit const Law kFuzzLaw = {
    "stress", "fuzz",
    "Every instruction keeps its promises with random values of its types, many of them hostile.",
    JudgeFuzz};

}  // namespace nuvhost::check
