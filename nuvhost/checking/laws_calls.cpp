// The laws of Execute: what every instruction must answer, whatever it is called with.

#include <fmt/format.h>

#include <algorithm>
#include <string_view>

#include "nuvhost/checking/calling.h"
#include "nuvhost/checking/law.h"
#include "nuvhost/text/names.h"

namespace nuvhost::check {
namespace {

/// Kept: these report their errors and succeed; saved programs go on after them.
bool SucceedsAfterErrors(std::string_view identifier) {
  return identifier == "_Nuv_Geometric_PtsToGrid_" || identifier == "_Nuv_Geometric_RakePt2BestLn_";
}

std::string StatusComplaint(std::string_view identifier, std::int32_t status,
                            const std::vector<Message>& messages) {
  if (status != 0 && status != 3) return "returned status " + std::to_string(status);
  for (const Message& message : messages) {
    if (message.severity != NUV_SEVERITY_WARNING && message.severity != NUV_SEVERITY_ERROR) {
      return "reported a message of severity " + std::to_string(message.severity);
    }
    if (message.source.empty() || message.text.empty()) {
      return "reported a message without a source or without a text";
    }
  }
  const auto is_error = [](const Message& m) { return m.severity == NUV_SEVERITY_ERROR; };
  const bool error = std::ranges::any_of(messages, is_error);
  if (status == 0 && error && !SucceedsAfterErrors(identifier)) {
    return "reported an error and returned status 0";
  }
  if (status == 3 && !error && !messages.empty()) return "reported a warning and returned status 3";
  return "";
}

bool HaveDeclaredTypes(const std::vector<CNuvObject>& inputs, const DescriptorRecord& descriptor) {
  for (std::size_t i = 0; i < inputs.size(); ++i) {
    const std::size_t declared = std::min(i, descriptor.inputs.Size() - 1);
    if (inputs[i].GetType() != NuvValueType(descriptor.inputs[declared].type)) return false;
  }
  return true;
}

/// A result that was written has the declared type, where the inputs have theirs.
std::string ResultComplaint(const DescriptorRecord& descriptor,
                            const std::vector<std::string>& before,
                            const std::vector<CNuvObject>& results) {
  const std::vector<std::string> after = AllShown(results);
  for (std::size_t i = 0; i < results.size(); ++i) {
    const std::uint32_t declared = descriptor.results[i].type;
    if (results[i].GetType() == NuvValueType(declared) || after[i] == before[i]) continue;
    return fmt::format("result {} has type code {} and was given a value of type {}", i, declared,
                       results[i].GetType());
  }
  return "";
}

}  // namespace

std::string CallComplaint(IXInstrPlugin& object, const DescriptorRecord& descriptor,
                          const Case& call, Services& services) {
  CallContext context(descriptor, services);
  call.prepare(context);
  const std::vector<std::string> inputs = AllShown(context.inputs);
  const std::vector<std::string> constants = AllShown(context.constants);
  const std::vector<std::string> results = AllShown(context.results);
  services.Take();
  std::int32_t status = 0;
  std::string complaint = Execute(context, object, status);
  if (!complaint.empty()) return complaint;
  complaint = StatusComplaint(TextOrEmpty(descriptor.identifier), status, services.Take().messages);
  if (complaint.empty()) complaint = Changed("input", inputs, context.inputs);
  if (complaint.empty()) complaint = Changed("constant", constants, context.constants);
  if (complaint.empty() && status == 0 && HaveDeclaredTypes(context.inputs, descriptor)) {
    complaint = ResultComplaint(descriptor, results, context.results);
  }
  return complaint;
}

namespace {

/// Calls an instruction in every way until it does something wrong.
void JudgeInstruction(Trial& trial, const CatalogueEntry& instruction, const Cases& calls,
                      Services& services) {
  const std::string label = Label(instruction);
  trial.At("creating an object of " + label);
  const WorkingObject object(*instruction.prototype);
  for (const Case& call : calls) {
    const std::string what = fmt::format("{} with {}", label, call.how);
    trial.At("executing " + what);
    const std::string complaint =
        CallComplaint(object.Get(), *instruction.descriptor, call, services);
    if (complaint.empty()) continue;
    return trial.Complain(what + ": " + complaint);
  }
  trial.At("destroying an object of " + label);
}

/// Whether an instruction answers the same with and without services.
void JudgeServices(Trial& trial, const CatalogueEntry& instruction, const Cases& calls,
                   Services& services) {
  const std::string label = Label(instruction);
  const WorkingObject object(*instruction.prototype);
  for (const Case& call : calls) {
    const std::string what = fmt::format("{} without services, with {}", label, call.how);
    trial.At("executing " + what);
    const DescriptorRecord& descriptor = *instruction.descriptor;
    const auto answer = [&](bool has_services) {
      return AnswerOf(descriptor, call, services, [&](CallContext& context) {
        context.has_services = has_services;
        return context.Execute(object.Get());
      });
    };
    const Answer with = answer(true);
    const Answer without = answer(false);
    if (!without.complaint.empty()) return trial.Complain(what + ": " + without.complaint);
    if (with.status != without.status) {
      return trial.Complain(fmt::format("{}: returned status {}, and {} with them", what,
                                        without.status, with.status));
    }
    if (with.results != without.results) return trial.Complain(what + ": gave other results");
  }
}

/// Values that an instruction wrote, and what they were when the library was there.
struct Kept {
  std::string label;
  std::vector<CNuvObject> values;
  std::vector<std::string> shown;
};

/// The defaults of every instruction and, where it may be called, its results.
std::vector<Kept> ValuesOf(Trial& trial, const Entries& entries) {
  Services services;
  std::vector<Kept> kept;
  const auto keep = [&kept](const std::string& label, const std::vector<CNuvObject>& values) {
    kept.push_back({label, values, AllShown(values)});
  };
  for (const CatalogueEntry& instruction : entries) {
    const std::string label = Label(instruction);
    CallContext defaults(*instruction.descriptor, services);
    keep("the default inputs of " + label, defaults.inputs);
    keep("the default constants of " + label, defaults.constants);
    if (TouchesOuterWorld(trial, instruction)) continue;
    for (const Case& call : ResultCases(*instruction.descriptor)) {
      trial.At(fmt::format("executing {} with {}", label, call.how));
      CallContext context(*instruction.descriptor, services);
      call.prepare(context);
      std::int32_t status = 0;
      const std::string complaint = Execute(context, *instruction.prototype, status);
      if (!complaint.empty()) trial.Complain(label + ": " + complaint);
      services.Take();
      // The results themselves, not copies of them.
      const std::vector<std::string> shown = AllShown(context.results);
      kept.push_back({fmt::format("what {} wrote to {}", label, call.how), {}, shown});
      kept.back().values.swap(context.results);
    }
  }
  return kept;
}

void JudgeUnload(Trial& trial) {
  std::vector<Kept> kept;
  WithSubject(trial, [&](const Entries& entries) { kept = ValuesOf(trial, entries); });
  for (Kept& one : kept) {
    trial.At("reading, copying, comparing and clearing, after the library was unloaded, " +
             one.label);
    std::vector<CNuvObject> copies = one.values;
    for (CNuvObject& copy : copies) copy = CNuvObject(copy);
    if (AllShown(one.values) != one.shown || AllShown(copies) != one.shown) {
      trial.Complain(one.label + " changed when the library was unloaded");
    }
    for (std::size_t i = 0; i < copies.size(); ++i) {
      [[maybe_unused]] const bool equal = copies[i] == one.values[i];
      one.values[i].Clear();
    }
  }
}

template <auto MakeCases, auto judge = JudgeInstruction>
void JudgeCalls(Trial& trial) {
  Services services;
  WithSubject(trial, [&](const Entries& entries) {
    ForEachCallable(trial, entries, MakeCases,
                    [&](const CatalogueEntry& instruction, const Cases& calls) {
                      judge(trial, instruction, calls, services);
                    });
  });
}

// Each of these laws asks the same of every call; docs/check.md tells it in full.
constexpr Law kCallLaws[] = {
    {"calls", "call-defaults",
     "Every instruction keeps its promises when called with its defaults.",
     JudgeCalls<DefaultCases>},
    {"calls", "call-numbers",
     "Every instruction keeps its promises with NaN, infinities, -0.0, huge and tiny numbers.",
     JudgeCalls<NumberCases>},
    {"calls", "call-texts",
     "Every instruction keeps its promises with texts that are empty, long, with percent signs or "
     "of every character there is.",
     JudgeCalls<TextCases>},
    {"calls", "call-arrays",
     "Every instruction keeps its promises with arrays that are empty, short, long, of unequal "
     "lengths or full of hostile elements.",
     JudgeCalls<ArrayCases>},
    {"calls", "call-types",
     "Every instruction keeps its promises with inputs of any other type than the declared one.",
     JudgeCalls<WrongTypeCases>},
    {"calls", "call-results",
     "Every instruction keeps its promises with results that hold values of any type beforehand.",
     JudgeCalls<ResultCases>},
    {"calls", "call-counts",
     "Every instruction with a repeatable input keeps its promises with none and with 1000 of it.",
     JudgeCalls<CountCases>},
    {"calls", "call-constants",
     "Every instruction keeps its promises with each choice and both ends of each range of its "
     "constants.",
     JudgeCalls<ConstantCases>},
    {"calls", "call-services",
     "Every instruction answers the same where the host has no services: what it reports or draws "
     "is dropped.",
     JudgeCalls<ServiceCases, JudgeServices>},
    {"calls", "unload",
     "Defaults and results stay whole after the library is unloaded: they are read, copied, "
     "compared and cleared.",
     JudgeUnload},
};

}  // namespace

std::span<const Law> CallLaws() {
  return kCallLaws;
}

}  // namespace nuvhost::check
