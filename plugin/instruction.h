// Instruction<I>: the host's sixteen slots over an instruction's Definition and Run.
//
// An instruction is a struct without data that states two things:
//   static constexpr Definition kDefinition{...};       what the host shows
//   static Status Run(Call& call, double number, ...);  what it computes, of its inputs
// and its source ends with one line for all its instructions:
//   template struct Instructions<I, ...>;
#pragma once

#include <cstddef>
#include <new>
#include <utility>

#include "host/instr_plugin.h"
#include "plugin/call.h"
#include "plugin/catalogue.h"
#include "plugin/copied_inputs.h"
#include "plugin/definition.h"
#include "plugin/descriptor_builder.h"
#include "plugin/inputs.h"

namespace formula {

constexpr bool HasTextResult(const Definition& definition) {
  for (const Parameter& result : definition.results) {
    if (result.type == NUV_PARAM_STRING) return true;
  }
  return false;
}

/// Whether an array result may end an input that Run reads in place.
template <class... Parameters>
constexpr bool MayEndInputs(const Definition& definition,
                            Status (* /*run*/)(Call&, Parameters...)) {
  bool may = false;
  for (const Parameter& result : definition.results) {
    if (result.type < NUV_PARAM_BOOLEAN_ARRAY) continue;
    const Parameter* input = definition.inputs.begin();
    ((may = may || (kReadInPlace<Parameters> && input->type != result.type), ++input), ...);
  }
  return may;
}

/// Reads the inputs of a call and hands them to the instruction's Run, whose parameters they are.
template <class I, class... Parameters, std::size_t... index>
[[gnu::always_inline]] inline Status RunInstruction(IXInstrContext& context,
                                                    Status (* /*run*/)(Call&, Parameters...),
                                                    std::index_sequence<index...> /*indices*/) {
  constexpr const Definition& kDefinition = I::kDefinition;
  static_assert(sizeof...(Parameters) == kDefinition.inputs.size(),
                "Run takes the call and one parameter for each input of kDefinition");
  static_assert((Place<Parameters>::Fits(kDefinition, index) && ...),
                "Run's parameters are of the types of kDefinition's inputs, in their order");
  static_assert(!kDefinition.repeatable || kDefinition.inputs.size() > 0,
                "only an input can be repeatable");
  [[maybe_unused]] CNuvObject* const* const inputs = context.InputValues();
  [[maybe_unused]] const std::int32_t count = kDefinition.repeatable ? context.InputCount() : 0;
  constexpr bool kHasSeveral = kDefinition.results.size() > 1;
  static_assert(!kHasSeveral || !HasTextResult(kDefinition),
                "a text can be an instruction's one result only: of several all are written at "
                "once, without memory");
  Call call(context, kHasSeveral);
  const Status status = I::Run(call, Place<Parameters>::Read(inputs, index, count)...);
  if constexpr (kHasSeveral) call.WriteKept();
  return status;
}

template <class I, class... Parameters>
[[gnu::always_inline]] inline Status RunInstruction(IXInstrContext& context,
                                                    Status (*run)(Call&, Parameters...)) {
  return RunInstruction<I>(context, run, std::index_sequence_for<Parameters...>());
}

template <class I>
class Instruction : public IXInstrPlugin {
  static_assert(Catalogue::kContains<I>, "an instruction must stand in plugin/catalogue.h");

 public:
  void* DeletingDestructor(std::uint32_t flags) final {
    I* self = static_cast<I*>(this);
    self->~I();
    if ((flags & 1U) != 0) ::operator delete(self);
    // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDelete): the address alone, as compilers return
    // it.
    return self;
  }
  void BuildDescriptor() final {
    try {
      formula::BuildDescriptor(descriptor_, I::kDefinition);
    } catch (...) {
      // Without memory the descriptor stays as it was; an empty one tells the host by its format.
    }
  }
  void ClearDescriptor() final { formula::ClearDescriptor(descriptor_); }
  DescriptorRecord* GetDescriptor() final { return &descriptor_; }
  /// The one place where exceptions end: memory that ran out, or what a host's container threw.
  Status Execute(IXInstrContext* context) final {
    try {
      if constexpr (MayEndInputs(I::kDefinition, &I::Run)) {
        if (EndsAnInput(*context, I::kDefinition)) {
          return ExecuteOnCopies(*this, *context, I::kDefinition);
        }
      }
      return RunInstruction<I>(*context, &I::Run);
    } catch (...) {
      return FailAfterException(*context, I::kDefinition);
    }
  }
  IXInstrPlugin* Create() final { return NewInstruction<I>(); }

 private:
  static inline constinit DescriptorRecord descriptor_{};
};

template <class I>
IXInstrPlugin* NewInstruction() noexcept {
  return new (std::nothrow) I();
}

/// Its instantiation defines NewInstruction for the catalogue's loop.
template <class... I>
struct Instructions {
  static constexpr IXInstrPlugin* (*kNew[])() noexcept = {&NewInstruction<I>...};
};

}  // namespace formula
