#include "plugin/formula_lib.h"

#include <new>
#include <optional>

#include "plugin/catalogue.h"

#if defined(_WIN32)
#include <windows.h>
#endif

namespace {

IXInstrPlugin* RequireMemory(IXInstrPlugin* prototype) {
  if (prototype == nullptr) throw std::bad_alloc();
  return prototype;
}

/// The one library object; none where the memory for it was short.
struct LoadedLibrary {
  LoadedLibrary() noexcept {
    try {
      object.emplace();
    } catch (...) {
      // What was registered is released; nobody gets to see half a catalogue.
    }
  }
  std::optional<CFormulaLib> object;
};

LoadedLibrary library;

}  // namespace

CFormulaLib::CFormulaLib() {
  Reserve(formula::Catalogue::kSize);
  [this]<class... Instructions>(formula::InstructionList<Instructions...>) {
    for (const auto make : {formula::NewInstruction<Instructions>...}) {
      Register(RequireMemory(make()));
    }
  }(formula::Catalogue());
}

const LibraryInfo* CFormulaLib::GetLibInfo() {
  static constexpr LibraryInfo kInfo{
      .version = 1,
      .padding4 = 0,
      .text = "Formula Library\nThis is the very first version of it",
  };
  return &kInfo;
}

IXInstrPluginLib* NuvPluginLibGet() {
  return library.object ? &*library.object : nullptr;
}

#if defined(_WIN32)
/// Refuses to load where the library object could not be made.
BOOL WINAPI DllMain(HINSTANCE /*module*/, DWORD reason, LPVOID /*reserved*/) {
  return reason != DLL_PROCESS_ATTACH || NuvPluginLibGet() != nullptr;
}
#endif
