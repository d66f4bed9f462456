#include <cstdio>
#include <cstdlib>

#include "nuvhost/library/outer_world.h"
#include "tests/fuzz/targets.h"

namespace fuzz {
namespace {

/// Succeeds, and does nothing else.
class Harmless final : public IXInstrPlugin {
 public:
  void* DeletingDestructor(std::uint32_t /*flags*/) override { return this; }
  DescriptorRecord* GetDescriptor() override { return nullptr; }
  IXInstrPlugin* Create() override { return nullptr; }
};

}  // namespace

void Require(bool holds, std::string_view what) {
  if (holds) return;
  std::fprintf(stderr, "fuzz: %.*s\n", static_cast<int>(what.size()), what.data());
  std::abort();
}

const nuvhost::Catalogue& Instructions() {
  static const nuvhost::Catalogue catalogue(nuvhost::DefaultPluginPath());
  return catalogue;
}

const nuvhost::Catalogue& HarmlessInstructions() {
  static Harmless harmless;
  static nuvhost::Catalogue catalogue(nuvhost::DefaultPluginPath());
  static const bool replaced = [] {
    for (const nuvhost::CatalogueEntry& entry : catalogue.Entries()) {
      if (!nuvhost::TouchesOuterWorld(entry.descriptor->identifier)) continue;
      const_cast<nuvhost::CatalogueEntry&>(entry).prototype = &harmless;
    }
    return true;
  }();
  Require(replaced, "harmless instructions");
  return catalogue;
}

}  // namespace fuzz
