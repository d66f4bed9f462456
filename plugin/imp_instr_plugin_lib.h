// CImpInstrPluginLib: a plug-in library that owns its prototypes.
#pragma once

#include "host/instr_plugin_lib.h"
#include "host/std_vector.h"

/// Answers every slot of IXInstrPluginLib but GetLibInfo over one array of prototypes.
class CImpInstrPluginLib : public IXInstrPluginLib {
 public:
  void* DeletingDestructor(std::uint32_t flags) override;
  IXInstrPlugin** GetPlugins() override { return prototypes_.Data(); }
  std::uint64_t GetPluginCount() override { return prototypes_.Size(); }
  std::uint64_t InitPlugins() override;
  void ReleasePlugins() override;

 protected:
  CImpInstrPluginLib() = default;
  CImpInstrPluginLib(const CImpInstrPluginLib&) = delete;
  CImpInstrPluginLib& operator=(const CImpInstrPluginLib&) = delete;
  ~CImpInstrPluginLib() { DestroyPrototypes(); }

  /// Takes over a prototype, which must not be null.
  void Register(IXInstrPlugin* prototype);
  void Reserve(std::size_t count) { prototypes_.Reserve(count); }

 private:
  void DestroyPrototypes() noexcept;

  TStdVector<IXInstrPlugin*> prototypes_;
};
