// ReadyContext: a context whose values are ready, so that only the instruction's work is measured.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "host/context.h"
#include "host/nuv_object.h"
#include "nuvhost/library/catalogue.h"

namespace bench {

/// The plug-in beside the benchmark.
inline const nuvhost::Catalogue& Loaded() {
  static const nuvhost::Catalogue catalogue(nuvhost::DefaultPluginPath());
  return catalogue;
}

/// The inputs stay the caller's; the constants and the results are its own. There are no services:
/// reports and drawings are dropped.
class ReadyContext final : public IXInstrContext {
 public:
  ReadyContext(std::vector<CNuvObject*> inputs, const DescriptorRecord& descriptor,
               std::vector<CNuvObject> constants)
      : constants_(std::move(constants)),
        results_(descriptor.results.Size()),
        input_pointers_(std::move(inputs)) {
    for (std::size_t i = constants_.size(); i < descriptor.constants.Size(); ++i) {
      constants_.push_back(descriptor.constants[i].default_value);
    }
    for (CNuvObject& constant : constants_) constant_pointers_.push_back(&constant);
    for (CNuvObject& result : results_) result_pointers_.push_back(&result);
  }
  ReadyContext(const ReadyContext&) = delete;
  ReadyContext& operator=(const ReadyContext&) = delete;
  const std::vector<CNuvObject>& Results() const { return results_; }

  void* DeletingDestructor(std::uint32_t /*flags*/) override { return this; }
  CNuvObject** ConstantValues() override { return constant_pointers_.data(); }
  CNuvObject** InputValues() override { return input_pointers_.data(); }
  std::int32_t InputCount() override { return static_cast<std::int32_t>(input_pointers_.size()); }
  CNuvObject** ResultValues() override { return result_pointers_.data(); }
  CNuvObject* ConstantValue(std::int32_t index) override {
    return constant_pointers_[static_cast<std::size_t>(index)];
  }
  CNuvObject* ResultValue(std::int32_t index) override {
    return result_pointers_[static_cast<std::size_t>(index)];
  }
  void MarkResult(std::int32_t /*index*/, std::int32_t /*value*/) override {}
  void* Service(std::int32_t /*number*/) override { return nullptr; }

 private:
  std::vector<CNuvObject> constants_;
  std::vector<CNuvObject> results_;
  std::vector<CNuvObject*> constant_pointers_;
  std::vector<CNuvObject*> input_pointers_;
  std::vector<CNuvObject*> result_pointers_;
};

}  // namespace bench
