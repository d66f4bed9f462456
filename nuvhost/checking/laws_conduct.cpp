// The laws of what a call leaves alone: what it was handed, the host's memory and process. That no
// exception leaves Execute, the laws of the answers see to.

#include <fmt/format.h>

#include <atomic>
#include <thread>

#include "nuvhost/checking/calling.h"
#include "nuvhost/checking/facts.h"
#include "nuvhost/checking/guarded_call.h"
#include "nuvhost/checking/law.h"
#include "nuvhost/checking/process_state.h"
#include "nuvhost/text/names.h"

namespace nuvhost::check {
namespace {

/// What memory before the values is filled with, so that reading there shows.
constexpr unsigned char kFills[] = {0xA5, 0x5A};

/// Kept: these empty or fill their results before they find that they fail; saved programs go on
/// with what they leave.
bool WritesBeforeFailing(std::string_view identifier) {
  constexpr std::string_view kIdentifiers[] = {
      "_Nuv_Geometric_Pt2BestCircle_",   "_Nuv_Geometric_CPt2BestCircleInf_",
      "_Nuv_Geometric_Pt2BestLn_",       "_Nuv_Geometric_CPt2BestLnInf_",
      "_Nuv_Geometric_Pt2BestLnMaxOut_", "_Nuv_Geometric_AngleBis_",
      "_Nuv_Geometric_Ln2LnDist_",       "_Nuv_Geometric_LnInters_",
      "_Nuv_Geometric_CircInTriangle_",  "_Nuv_Array_CNArrCreateRep_",
      "_Nuv_Array_CNArrGetRange_",       "_Nuv_Array_CBArrCreateRep_",
      "_Nuv_Array_CBArrGetRange_",       "_Nuv_Array_CSArrCreateRep_",
      "_Nuv_Array_CSArrGetRange_",       "_Nuv_Array_CPArrCreateRep_",
      "_Nuv_Array_CPArrGetRange_",       "_Nuv_Array_CPArrCluster1D_",
      "_Nuv_Array_CLArrCreateRep_",      "_Nuv_Array_CLArrGetRange_"};
  return std::ranges::find(kIdentifiers, identifier) != std::end(kIdentifiers);
}

/// Calls an object of the instruction in each way until `judge` complains; `judge` gets the case,
/// and gives a complaint or "".
template <class Judge>
void JudgeEachCase(Trial& trial, const CatalogueEntry& instruction, const Cases& calls,
                   Judge judge) {
  const std::string label = Label(instruction);
  for (const Case& call : calls) {
    const std::string what = fmt::format("{} with {}", label, call.how);
    trial.At("executing " + what);
    const std::string complaint = judge(call);
    if (!complaint.empty()) return trial.Complain(what + ": " + complaint);
  }
}

/// Calls in each way, whatever comes of it.
void CallInEachWay(Trial& trial, const CatalogueEntry& instruction, const Cases& calls,
                   IXInstrPlugin& object, Services& services) {
  JudgeEachCase(trial, instruction, calls, [&](const Case& call) {
    CallContext context(*instruction.descriptor, services);
    call.prepare(context);
    std::int32_t status = 0;
    Execute(context, object, status);
    services.Take();
    return "";
  });
}

/// A law of single calls: `judge` looks at one call of an object.
using JudgeCall = std::string (*)(const CatalogueEntry& instruction, IXInstrPlugin& object,
                                  const Case& call, Services& services);

template <JudgeCall judge>
void JudgeCalls(Trial& trial) {
  Services services;
  WithSubject(trial, [&](const Entries& entries) {
    ForEachCallable(trial, entries, AllCases,
                    [&](const CatalogueEntry& instruction, const Cases& calls) {
                      const WorkingObject object(*instruction.prototype);
                      JudgeEachCase(trial, instruction, calls, [&](const Case& call) {
                        return judge(instruction, object.Get(), call, services);
                      });
                    });
  });
}

std::string FailureComplaint(const CatalogueEntry& instruction, IXInstrPlugin& object,
                             const Case& call, Services& services) {
  if (WritesBeforeFailing(TextOrEmpty(instruction.descriptor->identifier))) return "";
  CallContext context(*instruction.descriptor, services);
  for (CNuvObject& result : context.results) result = Sample(result.GetType());
  call.prepare(context);
  const std::vector<std::string> before = AllShown(context.results);
  std::int32_t status = 0;
  const std::string exception = Execute(context, object, status);
  services.Take();
  if (!exception.empty() || status != 3) return "";
  const std::string changed = Changed("result", before, context.results);
  return changed.empty() ? "" : "returned status 3, and " + changed;
}

std::string MarkComplaint(const CatalogueEntry& instruction, IXInstrPlugin& object,
                          const Case& call, Services& services) {
  CallContext context(*instruction.descriptor, services);
  call.prepare(context);
  std::int32_t status = 0;
  Execute(context, object, status);
  services.Take();
  for (const CallContext::Mark& mark : context.marks) {
    if (mark.result >= 0 && static_cast<std::size_t>(mark.result) < context.results.size()) {
      continue;
    }
    return fmt::format("marked result {} of {}", mark.result, context.results.size());
  }
  return "";
}

/// Calls within guarded memory; what steps beyond it ends the trial.
std::string GuardComplaint(const CatalogueEntry& instruction, IXInstrPlugin& object,
                           const Case& call, Services& services) {
  static GuardedMemory memory;
  CallContext context(*instruction.descriptor, services);
  call.prepare(context);
  GuardedEnd end;
  CaughtFrom([&] { end = ExecuteGuarded(context, object, memory, kFills[0]); });
  services.Take();
  return end.complaint;
}

/// Fills the stack below with a byte.
[[gnu::noinline]] void FillStack(unsigned char byte) {
  volatile unsigned char bytes[32768];
  for (volatile unsigned char& one : bytes) one = byte;
}

/// Calls again with another object, other memory and another stack, and a third time as at first.
std::string AnswerComplaint(const CatalogueEntry& instruction, IXInstrPlugin& object,
                            const Case& call, Services& services) {
  static GuardedMemory memory(false);
  const auto answer = [&](IXInstrPlugin& called, unsigned char fill) {
    return AnswerOf(*instruction.descriptor, call, services, [&](CallContext& context) {
      FillHeap(fill);
      FillStack(fill);
      const std::int32_t status = ExecuteGuarded(context, called, memory, fill).status;
      FillFreshHeap(0);
      return status;
    });
  };
  const Answer first = answer(object, kFills[0]);
  for (IXInstrPlugin* called : {instruction.prototype, &object}) {
    const Answer again = answer(*called, called == &object ? kFills[0] : kFills[1]);
    const char* which = called == &object ? "called again" : "called again by its prototype";
    if (!again.complaint.empty()) return "";
    if (again.status != first.status) {
      return fmt::format("returned status {}, and {} when {}", first.status, again.status, which);
    }
    for (std::size_t i = 0; i < first.results.size(); ++i) {
      if (first.results[i] == again.results[i]) continue;
      return fmt::format("gave another result {} when {}", i, which);
    }
    if (first.record != again.record) return fmt::format("reported something else when {}", which);
  }
  return "";
}

/// Executes many times; what heap and memory grew by.
MemoryInUse GrowthOver(std::size_t calls, CallContext& context, IXInstrPlugin& object,
                       Services& services) {
  constexpr std::size_t kBatch = 100;
  const MemoryInUse before = MeasureMemory();
  for (std::size_t i = 0; i < calls; ++i) {
    std::int32_t status = 0;
    Execute(context, object, status);
    if (i % kBatch == kBatch - 1) services.Take();
  }
  const MemoryInUse after = MeasureMemory();
  const auto growth = [](std::size_t was, std::size_t is) { return is > was ? is - was : 0; };
  return {growth(before.heap, after.heap), growth(before.pages, after.pages)};
}

void JudgeMemory(Trial& trial) {
  constexpr std::size_t kCalls = 10'000;
  constexpr std::size_t kHeap = 64 << 10;  // what a heap may be up to by itself
  constexpr std::size_t kPages = 4 << 20;
  Services services;
  WithSubject(trial, [&](const Entries& entries) {
    ForEachCallable(
        trial, entries, DefaultCases, [&](const CatalogueEntry& instruction, const Cases& calls) {
          const WorkingObject object(*instruction.prototype);
          JudgeEachCase(trial, instruction, calls, [&](const Case& call) -> std::string {
            CallContext context(*instruction.descriptor, services);
            call.prepare(context);
            GrowthOver(kCalls / 100, context, object.Get(), services);
            const MemoryInUse growth = GrowthOver(kCalls, context, object.Get(), services);
            if (growth.heap < kHeap && growth.pages < kPages) return "";
            // What grows once is kept for later.
            const MemoryInUse again = GrowthOver(kCalls, context, object.Get(), services);
            if (again.heap < kHeap && again.pages < kPages) return "";
            return fmt::format("{} calls kept {} bytes of the heap and {} of memory", kCalls,
                               again.heap, again.pages);
          });
        });
  });
}

/// What is compared with what it was at the beginning.
class ProcessOnTrial {
 public:
  explicit ProcessOnTrial(Trial& trial) : trial_(trial) {
    TakeProcessFacts();  // what the first time opens stays open
    before_ = TakeProcessFacts();
  }

  void Compare(const std::string& what) {
    ProcessFacts after = TakeProcessFacts();
    const std::string difference = Difference(before_, after);
    if (!difference.empty()) trial_.Complain(what + ": " + difference);
    before_ = std::move(after);
    const std::string written = output_.Take();
    if (written.empty()) return;
    trial_.Complain(fmt::format("{}: wrote {} to standard output or standard error", what,
                                Quoted(written.c_str())));
  }

 private:
  Trial& trial_;
  CaughtOutput output_;
  ProcessFacts before_;
};

void JudgeProcess(Trial& trial) {
  Services services;
  ProcessOnTrial process(trial);
  WithSubject(trial, [&](const Entries& entries) {
    process.Compare("loading the library and building its descriptors");
    ForEachCallable(trial, entries, AllCases,
                    [&](const CatalogueEntry& instruction, const Cases& calls) {
                      const WorkingObject object(*instruction.prototype);
                      CallInEachWay(trial, instruction, calls, object.Get(), services);
                      process.Compare("calls of " + Label(instruction));
                    });
  });
  process.Compare("unloading the library");
}

void JudgeDescriptorsKept(Trial& trial) {
  Services services;
  WithSubject(trial, [&](const Entries& entries) {
    std::vector<Facts> before;
    for (const CatalogueEntry& entry : entries) before.push_back(AllFacts(*entry.descriptor));
    ForEachCallable(trial, entries, AllCases,
                    [&](const CatalogueEntry& instruction, const Cases& calls) {
                      CallInEachWay(trial, instruction, calls, *instruction.prototype, services);
                    });
    for (std::size_t i = 0; i < entries.size(); ++i) {
      trial.At("reading the descriptor of " + std::to_string(i) + " after all calls");
      const std::string difference = Difference(before[i], AllFacts(*entries[i].descriptor));
      if (difference.empty()) continue;
      trial.Complain(fmt::format("prototype {}, after all calls: {}", i, difference));
    }
  });
}

/// Calls an instruction on several threads at once, each with an object and values of its own.
void JudgeOnThreads(Trial& trial, const CatalogueEntry& instruction, const Cases& calls,
                    Services& services) {
  constexpr std::size_t kThreads = 4;
  constexpr std::size_t kRounds = 5;
  const auto answer = [&](IXInstrPlugin& object, const Case& call) {
    CallContext context(*instruction.descriptor, services);
    call.prepare(context);
    context.has_services = false;  // a host's services are for one thread at a time
    std::int32_t status = 0;
    std::vector<std::string> shown{Execute(context, object, status)};
    shown.push_back(std::to_string(status));
    for (std::string& one : AllShown(context.results)) shown.push_back(std::move(one));
    return shown;
  };
  std::vector<std::vector<std::string>> expected;
  for (const Case& call : calls) expected.push_back(answer(*instruction.prototype, call));
  std::atomic<std::size_t> wrong = 0;
  std::vector<std::thread> threads;
  for (std::size_t thread = 0; thread < kThreads; ++thread) {
    threads.emplace_back([&, thread] {
      const WorkingObject object(*instruction.prototype);
      for (std::size_t i = thread; i < kRounds * calls.size(); ++i) {
        const std::size_t number = i % calls.size();
        if (answer(object.Get(), calls[number]) != expected[number]) ++wrong;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  if (wrong == 0) return;
  trial.Complain(fmt::format("{} answered otherwise on {} threads at once, {} times",
                             Label(instruction), kThreads, wrong.load()));
}

void JudgeThreads(Trial& trial) {
  Services services;
  WithSubject(trial, [&](const Entries& entries) {
    ForEachCallable(trial, entries, ServiceCases,
                    [&](const CatalogueEntry& instruction, const Cases& calls) {
                      trial.At("executing " + Label(instruction) + " on several threads at once");
                      JudgeOnThreads(trial, instruction, calls, services);
                    });
  });
}

constexpr Law kConductLaws[] = {
    {"conduct", "results-kept",
     "After status 3 every result is what it was, but for the instructions that say otherwise.",
     JudgeCalls<FailureComplaint>},
    {"conduct", "marks", "An instruction marks only results that it has.",
     JudgeCalls<MarkComplaint>},
    {"conduct", "bounds",
     "A call steps neither beyond the constants, inputs and results that it is handed, nor beyond "
     "their elements and texts, changes no array of pointers, asks the context for nothing that "
     "it does not have, and uses none of it after Execute.",
     JudgeCalls<GuardComplaint>},
    {"conduct", "same-answer",
     "The same call has the same answer, whichever object is called, whenever, and whatever memory "
     "and stack held before.",
     JudgeCalls<AnswerComplaint>},
    {"conduct", "threads",
     "Every instruction answers the same on four threads at once, each with an object of its own.",
     JudgeThreads},
    {"conduct", "memory", "After 10,000 calls an instruction has given all memory back.",
     JudgeMemory},
    {"conduct", "descriptors-kept", "Calls leave every descriptor as it was.",
     JudgeDescriptorsKept},
    {"conduct", "process",
     "Loading, calling and unloading leave the process as it was: locale, floating-point control, "
     "current folder, environment, signal handlers, open files, threads, standard output and the "
     "host's settings.",
     JudgeProcess},
};

}  // namespace

std::span<const Law> ConductLaws() {
  return kConductLaws;
}

}  // namespace nuvhost::check
