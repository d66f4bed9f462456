#include "plugin/imp_instr_plugin_lib.h"

void* CImpInstrPluginLib::DeletingDestructor(std::uint32_t /*flags*/) {
  DestroyPrototypes();
  return this;
}

// The host may change the array while it is walked, so each step asks for the size anew.
std::uint64_t CImpInstrPluginLib::InitPlugins() {
  std::size_t index = 0;
  for (; index < prototypes_.Size(); ++index) prototypes_[index]->BuildDescriptor();
  return index;
}

void CImpInstrPluginLib::ReleasePlugins() {
  for (std::size_t index = 0; index < prototypes_.Size(); ++index) {
    prototypes_[index]->ClearDescriptor();
    prototypes_[index]->DeletingDestructor(1);
  }
  prototypes_.Clear();
}

void CImpInstrPluginLib::Register(IXInstrPlugin* prototype) {
  prototypes_.PushBack(prototype);
}

void CImpInstrPluginLib::DestroyPrototypes() noexcept {
  for (IXInstrPlugin* prototype : prototypes_) prototype->DeletingDestructor(1);
  prototypes_.Release();
}
