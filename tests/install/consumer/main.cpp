// Loads a plug-in, tells how many instructions it has and uses the host's libraries.
#include <cstdio>

#include "host/geometry.h"
#include "host/instr_plugin_lib.h"
#include "host/log.h"
#include "host/nuv_object.h"
#include "host/os.h"
#include "host/services.h"
#include "host/setting.h"

#if defined(_WIN32)
#include <windows.h>
#else
#include <dlfcn.h>
#endif

int main(int, char** words) {
#if defined(_WIN32)
  const HMODULE module = LoadLibraryA(words[1]);
  if (module == nullptr) return 1;
  void* const found = reinterpret_cast<void*>(GetProcAddress(module, "NuvPluginLibGet"));
#else
  void* const module = dlopen(words[1], RTLD_NOW);
  if (module == nullptr) return 1;
  void* const found = dlsym(module, "NuvPluginLibGet");
#endif
  IXInstrPluginLib* const library = reinterpret_cast<IXInstrPluginLib* (*)()>(found)();
  CNuvObject number;
  number = 0.25;
  std::printf("%u instructions, %g, %s\n", static_cast<unsigned>(library->InitPlugins()),
              static_cast<double>(number), CNuvOs::FileExists(words[1]) ? "a file" : "no file");
  library->ReleasePlugins();
}
