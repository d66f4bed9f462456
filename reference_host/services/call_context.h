// CallContext: the execution context of one call, with values of its own.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "host/context.h"
#include "host/instr_plugin.h"
#include "reference_host/services/services.h"

namespace nuvhost {

/// The values of one call: constants and inputs start with the descriptor's defaults, results
/// with their type's empty value. Fill them, then Execute.
class CallContext final : public IXInstrContext {
 public:
  struct Mark {
    std::int32_t result;
    std::int32_t value;
  };

  CallContext(const DescriptorRecord& descriptor, Services& services);
  /// Without values.
  explicit CallContext(Services& services) : services_(services) {}
  CallContext(const CallContext&) = delete;
  CallContext& operator=(const CallContext&) = delete;

  std::vector<CNuvObject> constants;
  std::vector<CNuvObject> inputs;
  std::vector<CNuvObject> results;
  /// How many inputs the instruction is told of; all of them unless set.
  std::optional<std::int32_t> input_count;
  /// Whether the instruction gets the services, or null for each.
  bool has_services = true;
  std::vector<Mark> marks;

  std::int32_t Execute(IXInstrPlugin& instruction);

  void* DeletingDestructor(std::uint32_t /*flags*/) override { return this; }
  CNuvObject** ConstantValues() override { return constant_pointers_.data(); }
  CNuvObject** InputValues() override { return input_pointers_.data(); }
  std::int32_t InputCount() override;
  CNuvObject** ResultValues() override { return result_pointers_.data(); }
  CNuvObject* ConstantValue(std::int32_t index) override;
  CNuvObject* ResultValue(std::int32_t index) override;
  void MarkResult(std::int32_t index, std::int32_t value) override;
  void* Service(std::int32_t number) override {
    return has_services ? services_.Find(number) : nullptr;
  }

 private:
  Services& services_;
  std::vector<CNuvObject*> constant_pointers_;
  std::vector<CNuvObject*> input_pointers_;
  std::vector<CNuvObject*> result_pointers_;
};

}  // namespace nuvhost
