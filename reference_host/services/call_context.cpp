#include "reference_host/services/call_context.h"

namespace nuvhost {
namespace {

std::vector<CNuvObject*> PointersTo(std::vector<CNuvObject>& values) {
  std::vector<CNuvObject*> pointers;
  pointers.reserve(values.size() + 1);
  for (CNuvObject& value : values) pointers.push_back(&value);
  pointers.push_back(nullptr);  // never an array without storage
  return pointers;
}

CNuvObject* At(std::vector<CNuvObject>& values, std::int32_t index) {
  if (index < 0 || static_cast<std::size_t>(index) >= values.size()) return nullptr;
  return &values[static_cast<std::size_t>(index)];
}

}  // namespace

CallContext::CallContext(const DescriptorRecord& descriptor, Services& services)
    : services_(services) {
  constants.reserve(descriptor.constants.Size());
  inputs.reserve(descriptor.inputs.Size());
  results.reserve(descriptor.results.Size());
  for (const ConstantRecord& constant : descriptor.constants) {
    constants.push_back(constant.default_value);
  }
  for (const ParameterRecord& input : descriptor.inputs) inputs.push_back(input.default_value);
  for (const ResultRecord& result : descriptor.results) {
    results.emplace_back(NuvValueType(result.type));
  }
}

std::int32_t CallContext::Execute(IXInstrPlugin& instruction) {
  constant_pointers_ = PointersTo(constants);
  input_pointers_ = PointersTo(inputs);
  result_pointers_ = PointersTo(results);
  marks.clear();
  return static_cast<std::int32_t>(instruction.Execute(this));
}

std::int32_t CallContext::InputCount() {
  return input_count.value_or(static_cast<std::int32_t>(inputs.size()));
}

CNuvObject* CallContext::ConstantValue(std::int32_t index) {
  return At(constants, index);
}

CNuvObject* CallContext::ResultValue(std::int32_t index) {
  return At(results, index);
}

void CallContext::MarkResult(std::int32_t index, std::int32_t value) {
  marks.push_back({index, value});
}

}  // namespace nuvhost
