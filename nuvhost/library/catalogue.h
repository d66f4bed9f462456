// Catalogue: the instructions of a loaded plug-in, found by the names that people and programs
// use. Names and complaints are UTF-8, in which each byte of a descriptor's text is a character.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "nuvhost/library/plugin_library.h"

namespace nuvhost {

/// One instruction: its prototype, and its descriptor once built.
struct CatalogueEntry {
  std::size_t index;
  IXInstrPlugin* prototype;
  const DescriptorRecord* descriptor;
};

/// The catalogue of a library, whose descriptors it builds, and releases at the end.
class Catalogue {
 public:
  explicit Catalogue(const std::filesystem::path& plugin_path);
  Catalogue(const Catalogue&) = delete;
  Catalogue& operator=(const Catalogue&) = delete;
  ~Catalogue() { library_.Get().ReleasePlugins(); }

  const std::vector<CatalogueEntry>& Entries() const { return entries_; }
  /// The instruction with exactly this identifier; null where there is none.
  const CatalogueEntry* FindIdentifier(std::string_view identifier) const;
  /// The instruction with this identifier, display name, or category and name: "Numeric: Multiply".
  /// Throws UserError with the nearest names for an unknown name, with the others by which they go
  /// for one that several instructions share.
  const CatalogueEntry& Find(std::string_view name) const;

 private:
  PluginLibrary library_;
  std::vector<CatalogueEntry> entries_;
  /// By each name that an instruction goes by, in the catalogue's order.
  std::multimap<std::string, const CatalogueEntry*, std::less<>> by_name_;
};

/// The position of an input, a result or a constant by its name. A number is a position; a
/// nameless constant goes by its group label. Throws UserError.
std::size_t FindInput(const DescriptorRecord& descriptor, std::string_view name);
std::size_t FindResult(const DescriptorRecord& descriptor, std::string_view name);
std::size_t FindConstant(const DescriptorRecord& descriptor, std::string_view name);

}  // namespace nuvhost
