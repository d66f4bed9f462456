// Calls of every instruction, held against what all of them promise.

#include <algorithm>
#include <array>
#include <cstdio>
#include <optional>
#include <string_view>
#include <vector>

#include "host/setting.h"
#include "nuvhost/library/outer_world.h"
#include "tests/fuzz/borrowed_context.h"
#include "tests/fuzz/sandbox.h"
#include "tests/fuzz/targets.h"
#include "tests/fuzz/values.h"

namespace fuzz {
namespace {

using nuvhost::CallContext;
using nuvhost::CatalogueEntry;
using nuvhost::Services;

std::vector<std::uint64_t>& Calls() {
  // Never destroyed, since they are written when the process ends.
  static auto& calls = *new std::vector<std::uint64_t>(Instructions().Entries().size());
  return calls;
}

/// A result that is an input of the same call.
struct Wire {
  std::size_t result;
  std::size_t input;
};

/// Where a result is one of the inputs.
class WiredContext final : public BorrowedContext {
 public:
  WiredContext(CallContext& call, const Wire& wire) : BorrowedContext(call, call.results) {
    results_[wire.result] = inputs_[wire.input];
  }
};

CNuvObject AnyConstant(Bytes& bytes, const ConstantRecord& constant) {
  if (constant.type == NUV_PARAM_BOOLEAN) return AnyValue(bytes, NUV_OBJ_BOOL);
  const auto* node = constant.choices.First();
  if (node == nullptr || bytes.Next() % 8 == 0) return AnyValue(bytes, NUV_OBJ_DOUBLE);
  for (std::size_t steps = bytes.Below(8); steps > 0; --steps) {
    if (const auto* next = CChoiceMap::Next(node)) node = next;
  }
  CNuvObject value;
  value = node->key;
  return value;
}

/// Fills a call's values; mostly of the types that are declared.
void FillCall(Bytes& bytes, const DescriptorRecord& descriptor, CallContext& call) {
  const std::uint8_t how = bytes.Next();
  for (std::size_t i = 0; i < call.constants.size(); ++i) {
    call.constants[i] = AnyConstant(bytes, descriptor.constants[i]);
  }
  const std::size_t declared = call.inputs.size();
  if (descriptor.repeatable != 0 && declared > 0) {
    call.inputs.resize(declared + bytes.Below(12));
    call.input_count = static_cast<std::int32_t>(call.inputs.size());
    if (how % 16 == 1) call.input_count = static_cast<std::int32_t>(bytes.Below(declared + 1));
  }
  for (std::size_t i = 0; i < call.inputs.size(); ++i) {
    const std::uint32_t type = descriptor.inputs[std::min(i, declared - 1)].type;
    const bool any = how % 8 == 2 && bytes.Flag();
    call.inputs[i] = AnyValue(bytes, any ? AnyType(bytes) : NuvValueType(type));
  }
  if (how % 8 == 3) call.has_services = false;
  if (how % 8 != 4) return;
  for (CNuvObject& result : call.results) result = AnyValue(bytes, AnyType(bytes));
}

/// A long array takes millions of passes to settle, each of them asked for; they would take most of
/// the time.
void LimitPasses(const DescriptorRecord& descriptor, CallContext& call) {
  constexpr double kMostPasses = 100;
  if (std::string_view(descriptor.identifier) != "_Nuv_Array_CNArrMathSmooth_") return;
  CNuvObject& passes = call.inputs[1];
  if (passes.GetType() != NUV_OBJ_DOUBLE) return;
  passes = std::min(static_cast<double>(passes), kMostPasses);
}

/// Any pair of a result and an input, or none.
std::optional<Wire> AnyWire(Bytes& bytes, const CallContext& call) {
  if (call.results.empty() || call.inputs.empty()) return std::nullopt;
  return Wire{bytes.Below(call.results.size()), bytes.Below(call.inputs.size())};
}

std::vector<std::uint64_t> Fingerprints(const std::vector<CNuvObject>& values) {
  std::vector<std::uint64_t> fingerprints;
  for (const CNuvObject& value : values) fingerprints.push_back(Fingerprint(value));
  return fingerprints;
}

void Copy(const CallContext& from, CallContext& to) {
  to.constants = from.constants;
  to.inputs = from.inputs;
  to.results = from.results;
  to.input_count = from.input_count;
  to.has_services = from.has_services;
}

/// What a call gave, to be compared.
struct Answer {
  std::int32_t status = 0;
  std::vector<std::uint64_t> results;
  std::vector<std::array<std::int32_t, 2>> marks;
  std::string told;

  bool operator==(const Answer&) const = default;
};

Answer AnswerOf(std::int32_t status, CallContext& call, Services& services) {
  Answer answer{status, Fingerprints(call.results), {}, {}};
  for (const CallContext::Mark& mark : call.marks) {
    answer.marks.push_back({mark.result, mark.value});
  }
  const nuvhost::Record record = services.Take();
  for (const nuvhost::Message& message : record.messages) {
    answer.told += std::to_string(message.severity) + message.source + '|' + message.text + '\n';
  }
  for (const nuvhost::Annotation& drawn : record.annotations) {
    answer.told += drawn.label.value_or("") + std::to_string(drawn.color) + '\n';
  }
  return answer;
}

/// One instruction's promises, each with its name in front of what is wrong.
class Judge {
 public:
  Judge(const CatalogueEntry& instruction, Services& services)
      : instruction_(instruction),
        descriptor_(*instruction.descriptor),
        services_(services),
        outer_world_(nuvhost::TouchesOuterWorld(descriptor_.identifier)) {}

  void Call(Bytes bytes) {
    CallContext call(descriptor_, services_);
    FillCall(bytes, descriptor_, call);
    LimitPasses(descriptor_, call);
    const bool typed = HasDeclaredTypes(call);
    const std::optional<Wire> wire = bytes.Flag() ? AnyWire(bytes, call) : std::nullopt;
    if (outer_world_) {
      EnterSandbox();
      if (!Confine(descriptor_, call)) return;
    }
    CallContext again(descriptor_, services_);
    Copy(call, again);
    const std::vector<std::uint64_t> before = Fingerprints(call.results);
    const Answer answer = Execute(call);
    for (std::size_t i = 0; i < before.size(); ++i) {
      const bool declared = call.results[i].GetType() == NuvValueType(descriptor_.results[i].type);
      Hold(declared || !typed || answer.results[i] == before[i], "a result of another type");
    }
    if (outer_world_) {
      Execute(again);  // in the world as the first call left it
    } else if (wire) {
      CallContext wired(descriptor_, services_);
      Copy(again, wired);
      again.results[wire->result] = again.inputs[wire->input];  // what is not written stays
      const Answer apart = Execute(again);
      Hold(ExecuteWired(wired, *wire) == apart, "another answer where a result is an input");
    } else {
      Hold(Execute(again) == answer, "another answer to the same call");
    }
  }

 private:
  void Hold(bool holds, const char* what) const {
    if (!holds) Require(false, std::string(descriptor_.identifier) + ": " + what);
  }

  bool HasDeclaredTypes(const CallContext& call) const {
    for (std::size_t i = 0; i < call.inputs.size(); ++i) {
      const std::size_t declared = std::min(i, descriptor_.inputs.Size() - 1);
      const NUV_OBJ_TYPE type = NuvValueType(descriptor_.inputs[declared].type);
      if (call.inputs[i].GetType() != type) return false;
    }
    return true;
  }

  Answer Execute(CallContext& call) const {
    const std::vector<std::uint64_t> constants = Fingerprints(call.constants);
    const std::vector<std::uint64_t> inputs = Fingerprints(call.inputs);
    IXInstrPlugin* const object = instruction_.prototype->Create();
    Hold(object != nullptr, "no object");
    ++Calls()[instruction_.index];
    const Answer answer = AnswerOf(call.Execute(*object), call, services_);
    instruction_.prototype->Destroy(object);
    HoldStatus(answer, call);
    Hold(Fingerprints(call.constants) == constants, "a constant was changed");
    Hold(Fingerprints(call.inputs) == inputs, "an input was changed");
    return answer;
  }

  Answer ExecuteWired(CallContext& call, const Wire& wire) const {
    const std::vector<std::uint64_t> inputs = Fingerprints(call.inputs);
    WiredContext context(call, wire);
    ++Calls()[instruction_.index];
    const auto status = static_cast<std::int32_t>(instruction_.prototype->Execute(&context));
    call.results[wire.result] = call.inputs[wire.input];
    for (std::size_t i = 0; i < inputs.size(); ++i) {
      Hold(i == wire.input || Fingerprint(call.inputs[i]) == inputs[i],
           "a wire changed another input");
    }
    return AnswerOf(status, call, services_);
  }

  void HoldStatus(const Answer& answer, const CallContext& call) const {
    Hold(answer.status == 0 || answer.status == 3, "a status that is neither 0 nor 3");
    for (const auto& [result, value] : answer.marks) {
      Hold(result >= 0 && static_cast<std::size_t>(result) < call.results.size() && value >= 0,
           "a mark of no result");
    }
  }

  const CatalogueEntry& instruction_;
  const DescriptorRecord& descriptor_;
  Services& services_;
  bool outer_world_;
};

}  // namespace

void CallInstructions(Bytes bytes) {
  CNuvSetting::Inst().SetVectorLimit(1 << 12);
  Services services;
  for (const CatalogueEntry& entry : Instructions().Entries()) Judge(entry, services).Call(bytes);
}

void WriteCalls(const char* path) {
  std::FILE* const file = std::fopen(path, "w");
  Require(file != nullptr, "cannot write the calls");
  for (const CatalogueEntry& entry : Instructions().Entries()) {
    std::fprintf(file, "%llu %s\n", static_cast<unsigned long long>(Calls()[entry.index]),
                 entry.descriptor->identifier);
  }
  std::fclose(file);
}

}  // namespace fuzz
