#include "nuvhost/library/plugin_library.h"

#include "nuvhost/system/paths.h"

#if defined(_WIN32)
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace nuvhost {
namespace {

#if defined(_WIN32)

std::string LastError() {
  const DWORD code = GetLastError();
  wchar_t text[512];
  DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                code, 0, text, 512, nullptr);
  while (length > 0 && (text[length - 1] == L'\n' || text[length - 1] == L'\r')) --length;
  if (length == 0) return "error " + std::to_string(code);
  return ToUtf8(std::filesystem::path(std::wstring(text, length)));
}

void* Load(const std::filesystem::path& path) {
  // What it needs lies beside it, beside this program or in the system, and nowhere else: not in
  // the current folder, nor in those of PATH.
  std::filesystem::path file = path;
  return LoadLibraryExW(file.make_preferred().c_str(), nullptr,
                        LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_LIBRARY_SEARCH_DEFAULT_DIRS);
}

void* FindExport(void* module) {
  return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(module), "NuvPluginLibGet"));
}

void Unload(void* module) {
  FreeLibrary(static_cast<HMODULE>(module));
}

#else

std::string LastError() {
  const char* error = dlerror();
  return error == nullptr ? "unknown error" : error;
}

void* Load(const std::filesystem::path& path) {
  return dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
}

void* FindExport(void* module) {
  return dlsym(module, "NuvPluginLibGet");
}

void Unload(void* module) {
  dlclose(module);
}

#endif

}  // namespace

std::filesystem::path DefaultPluginPath() {
  // Beside the program where it was built, in a folder for libraries where it is installed.
  std::error_code ignored;
  const std::filesystem::path beside = ProgramFolder() / PLUGIN_NAME;
  const std::filesystem::path installed =
      (ProgramFolder() / INSTALLED_PLUGIN / PLUGIN_NAME).lexically_normal();
  return std::filesystem::exists(beside, ignored) ? beside : installed;
}

PluginLibrary::PluginLibrary(const std::filesystem::path& path) {
  const std::string name = ToUtf8(path);
  std::error_code ignored;
  if (!std::filesystem::is_regular_file(path, ignored)) {
    throw UserError("no plug-in library at {}; name one with --plugin PATH", name);
  }
  // An absolute path, so that no search goes elsewhere.
  module_ = Load(std::filesystem::absolute(path));
  if (module_ == nullptr) throw UserError("cannot load {}: {}", name, LastError());
  export_ = reinterpret_cast<IXInstrPluginLib* (*)()>(FindExport(module_));
  if (export_ != nullptr) library_ = export_();
  if (library_ != nullptr) return;

  Unload(module_);
  throw NoPluginError(export_ == nullptr
                          ? name + " is no plug-in library: it does not export NuvPluginLibGet"
                          : name + " has no library object: NuvPluginLibGet returned null");
}

PluginLibrary::~PluginLibrary() {
  Unload(module_);
}

}  // namespace nuvhost
