#include "plugin/copied_inputs.h"

#include <algorithm>
#include <cstddef>
#include <span>
#include <vector>

namespace formula {
namespace {

std::span<CNuvObject* const> GivenInputs(IXInstrContext& context, const Definition& definition) {
  const std::size_t declared = definition.inputs.size();
  if (!definition.repeatable) return {context.InputValues(), declared};
  const std::int32_t given = std::max(context.InputCount(), 0);
  return {context.InputValues(), std::max(declared, static_cast<std::size_t>(given))};
}

/// A call as it is, but for its inputs.
class ContextWithInputs final : public IXInstrContext {
 public:
  ContextWithInputs(IXInstrContext& context, CNuvObject** inputs)
      : context_(context), inputs_(inputs) {}

  void* DeletingDestructor(std::uint32_t /*flags*/) override { return this; }
  CNuvObject** ConstantValues() override { return context_.ConstantValues(); }
  CNuvObject** InputValues() override { return inputs_; }
  std::int32_t InputCount() override { return context_.InputCount(); }
  CNuvObject** ResultValues() override { return context_.ResultValues(); }
  CNuvObject* ConstantValue(std::int32_t index) override { return context_.ConstantValue(index); }
  CNuvObject* ResultValue(std::int32_t index) override { return context_.ResultValue(index); }
  void MarkResult(std::int32_t index, std::int32_t value) override {
    context_.MarkResult(index, value);
  }
  void* Service(std::int32_t number) override { return context_.Service(number); }

 private:
  IXInstrContext& context_;
  CNuvObject** inputs_;
};

}  // namespace

bool EndsAnInput(IXInstrContext& context, const Definition& definition) {
  CNuvObject** result = context.ResultValues();
  for (const Parameter& declared : definition.results) {
    if ((*result)->GetType() != NuvValueType(declared.type)) {
      const auto inputs = GivenInputs(context, definition);
      if (std::ranges::find(inputs, *result) != inputs.end()) return true;
    }
    ++result;
  }
  return false;
}

Status ExecuteOnCopies(IXInstrPlugin& instruction, IXInstrContext& context,
                       const Definition& definition) {
  const auto given = GivenInputs(context, definition);
  std::vector<CNuvObject*> inputs(given.begin(), given.end());
  std::vector<CNuvObject> copies(definition.results.size());
  CNuvObject** result = context.ResultValues();
  for (CNuvObject& copy : copies) {
    if (std::ranges::find(given, *result) != given.end()) {
      copy = **result;
      std::ranges::replace(inputs, *result, &copy);
    }
    ++result;
  }
  ContextWithInputs copied(context, inputs.data());
  return instruction.Execute(&copied);
}

}  // namespace formula
