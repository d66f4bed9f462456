// BorrowedContext: a context of a call's own values.
#pragma once

#include <vector>

#include "reference_host/services/call_context.h"

namespace fuzz {

/// Constants, inputs, marks and services are those of a call, which outlives this.
class BorrowedContext : public IXInstrContext {
 public:
  BorrowedContext(nuvhost::CallContext& call, std::vector<CNuvObject>& results) : call_(call) {
    for (CNuvObject& one : call.constants) constants_.push_back(&one);
    for (CNuvObject& one : call.inputs) inputs_.push_back(&one);
    for (CNuvObject& one : results) results_.push_back(&one);
  }
  void* DeletingDestructor(std::uint32_t /*flags*/) override { return this; }
  CNuvObject** ConstantValues() override { return constants_.data(); }
  CNuvObject** InputValues() override { return inputs_.data(); }
  std::int32_t InputCount() override { return call_.InputCount(); }
  CNuvObject** ResultValues() override { return results_.data(); }
  CNuvObject* ConstantValue(std::int32_t index) override { return call_.ConstantValue(index); }
  CNuvObject* ResultValue(std::int32_t index) override {
    return results_[static_cast<std::size_t>(index)];
  }
  void MarkResult(std::int32_t index, std::int32_t value) override {
    call_.MarkResult(index, value);
  }
  void* Service(std::int32_t number) override { return call_.Service(number); }

 protected:
  nuvhost::CallContext& call_;
  std::vector<CNuvObject*> constants_;
  std::vector<CNuvObject*> inputs_;
  std::vector<CNuvObject*> results_;
};

}  // namespace fuzz
