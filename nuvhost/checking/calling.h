// How the laws of calls call instructions.
#pragma once

#include <fmt/format.h>

#include <algorithm>
#include <exception>
#include <string>
#include <vector>

#include "nuvhost/checking/hostile.h"
#include "nuvhost/checking/subject.h"

namespace nuvhost::check {

/// Values in a form that tells every bit of a number but which NaN it is.
std::vector<std::string> AllShown(const std::vector<CNuvObject>& values);

/// Where values are not what they were, "input 0 was changed from 1 to 2"; "" where they are.
std::string Changed(const char* list, const std::vector<std::string>& before,
                    const std::vector<CNuvObject>& values);

/// Runs what executes; a complaint where an exception comes out. It is read here, since its class
/// goes with the library.
template <class Run>
std::string CaughtFrom(Run run) {
  try {
    run();
    return "";
  } catch (const std::exception& error) {
    return std::string("an exception left Execute: ") + error.what();
  } catch (...) {
    return "an exception of an unknown type left Execute";
  }
}

std::string Execute(CallContext& context, IXInstrPlugin& object, std::int32_t& status);

/// A working object as hosts make them; the prototype itself where there is none to be had.
class WorkingObject {
 public:
  explicit WorkingObject(IXInstrPlugin& prototype)
      : prototype_(prototype), created_(prototype.Create()) {}
  WorkingObject(const WorkingObject&) = delete;
  WorkingObject& operator=(const WorkingObject&) = delete;
  ~WorkingObject() {
    if (created_ != &prototype_) prototype_.Destroy(created_);
  }

  IXInstrPlugin& Get() const { return created_ == nullptr ? prototype_ : *created_; }

 private:
  IXInstrPlugin& prototype_;
  IXInstrPlugin* created_;
};

/// Whether arbitrary values must not reach the instruction.
bool TouchesOuterWorld(const Trial& trial, const CatalogueEntry& instruction);

/// Notes how many instructions were called, or skips the law where there was none.
void NoteCalls(Trial& trial, std::size_t called, std::size_t not_called);

/// Applies `judge` to each of the instructions that may be called, in the ways that suit it.
template <class MakeCases, class Judge>
void ForEachCallable(Trial& trial, const Entries& entries, MakeCases make_cases, Judge judge) {
  std::size_t called = 0;
  std::size_t not_called = 0;
  for (const CatalogueEntry& instruction : entries) {
    const Cases calls = make_cases(*instruction.descriptor);
    if (calls.empty()) continue;
    if (TouchesOuterWorld(trial, instruction)) {
      ++not_called;
      continue;
    }
    ++called;
    judge(instruction, calls);
  }
  NoteCalls(trial, called, not_called);
}

/// Calls that end well, fail and report.
Cases ServiceCases(const DescriptorRecord& descriptor);
/// Every call there is.
Cases AllCases(const DescriptorRecord& descriptor);

/// Makes a call; what was wrong with it, "" for nothing.
std::string CallComplaint(IXInstrPlugin& object, const DescriptorRecord& descriptor,
                          const Case& call, Services& services);

/// What a call gives.
struct Answer {
  std::int32_t status = 0;
  std::vector<std::string> results;
  std::vector<std::string> record;  ///< what it reported, drew and marked
  std::string complaint;
};

/// Calls in a way of its own: `execute` runs the instruction with the prepared context.
template <class Run>
Answer AnswerOf(const DescriptorRecord& descriptor, const Case& call, Services& services, Run run) {
  CallContext context(descriptor, services);
  call.prepare(context);
  Answer answer;
  services.Take();
  answer.complaint = CaughtFrom([&] { answer.status = run(context); });
  answer.results = AllShown(context.results);
  for (const Message& message : services.Take().messages) {
    answer.record.push_back(
        fmt::format("{} {}: {}", message.severity, message.source, message.text));
  }
  for (const CallContext::Mark& mark : context.marks) {
    answer.record.push_back(fmt::format("mark {} {}", mark.result, mark.value));
  }
  return answer;
}

}  // namespace nuvhost::check
