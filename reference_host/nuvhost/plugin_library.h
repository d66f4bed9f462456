// PluginLibrary: a plug-in library, loaded through its export as a host does.
#pragma once

#include <filesystem>
#include <string>

#include "plugin/instr_plugin_lib.h"

namespace nuvhost {

/// The folder of the running program, and the plug-in that stands beside it.
std::filesystem::path ProgramFolder();
std::filesystem::path DefaultPluginPath();

/// Paths and texts in UTF-8, on every platform.
std::filesystem::path PathFromUtf8(const std::string& text);
std::string ToUtf8(const std::filesystem::path& path);

/// A loaded dynamic library; nothing of it is called but the export.
class PluginLibrary {
 public:
  /// Throws UserError where the file is no library, or has no plug-in's export.
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
