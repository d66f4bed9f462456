// Instruction<I>: the host's sixteen slots over an instruction's Definition and Run.
//
// An instruction is a struct without data that states two things:
//   static constexpr Definition kDefinition{...};   what the host shows
//   static Status Run(Call& call);                  what it computes
// and its source ends with
//   template IXInstrPlugin* NewInstruction<I>() noexcept;
#pragma once

#include <new>

#include "plugin/call.h"
#include "plugin/catalogue.h"
#include "plugin/definition.h"
#include "plugin/descriptor_builder.h"
#include "host/instr_plugin.h"

namespace formula {

template <class I>
class Instruction : public IXInstrPlugin {
  static_assert(Catalogue::kContains<I>, "an instruction must stand in plugin/catalogue.h");

 public:
  void* DeletingDestructor(std::uint32_t flags) final {
    I* self = static_cast<I*>(this);
    self->~I();
    if ((flags & 1U) != 0) ::operator delete(self);
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
      Call call(*context);
      return I::Run(call);
    } catch (...) {
      return Status::kFailure;
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

}  // namespace formula
