// CFormulaLib: the library object, with one prototype of every instruction in the catalogue.
#pragma once

#include "plugin/imp_instr_plugin_lib.h"

/// Made once, as a static object, while the library is loaded.
class CFormulaLib final : public CImpInstrPluginLib {
 public:
  /// Registers the catalogue. Throws std::bad_alloc, with all that was registered released.
  CFormulaLib();

  const LibraryInfo* GetLibInfo() override;
};
