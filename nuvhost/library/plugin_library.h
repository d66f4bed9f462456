// PluginLibrary: a plug-in library, loaded through its export as a host does.
#pragma once

#include <filesystem>
#include <string>

#include "host/instr_plugin_lib.h"
#include "nuvhost/error.h"

namespace nuvhost {

/// The file is a dynamic library, but not a plug-in library.
struct NoPluginError : UserError {
  using UserError::UserError;
};

/// The plug-in that came with the running program.
std::filesystem::path DefaultPluginPath();

/// A loaded dynamic library; nothing of it is called but the export.
class PluginLibrary {
 public:
  /// Throws UserError where the file is no library, NoPluginError where it has no plug-in's export
  /// or that gives no object.
  explicit PluginLibrary(const std::filesystem::path& path);
  PluginLibrary(const PluginLibrary&) = delete;
  PluginLibrary& operator=(const PluginLibrary&) = delete;
  ~PluginLibrary();

  IXInstrPluginLib& Get() const { return *library_; }
  /// Calls the export once more.
  IXInstrPluginLib* CallExport() const { return export_(); }

 private:
  void* module_ = nullptr;
  IXInstrPluginLib* (*export_)() = nullptr;
  IXInstrPluginLib* library_ = nullptr;
};

}  // namespace nuvhost
