// Subject: the library on trial with its descriptors built, as most laws look at it.
#pragma once

#include "nuvhost/checking/trial.h"
#include "nuvhost/library/catalogue.h"

namespace nuvhost::check {

using Entries = std::vector<CatalogueEntry>;

/// Loads the library, builds its descriptors, shows its instructions to `use`, and releases and
/// unloads it.
template <class Use>
void WithSubject(Trial& trial, Use use) {
  trial.At("loading the library and building its descriptors");
  trial.WithLibrary([&](const PluginLibrary& loaded) {
    IXInstrPluginLib& library = loaded.Get();
    library.InitPlugins();
    Entries entries;
    for (std::size_t i = 0; i < library.GetPluginCount(); ++i) {
      IXInstrPlugin* prototype = library.GetPlugins()[i];
      entries.push_back({i, prototype, prototype->GetDescriptor()});
    }
    use(std::as_const(entries));
    trial.At("releasing and unloading the library");
    library.ReleasePlugins();
  });
}

/// An instruction as complaints name it: by its identifier, or by its position.
inline std::string Label(const CatalogueEntry& instruction) {
  const char* identifier = instruction.descriptor->identifier;
  return identifier == nullptr ? "prototype " + std::to_string(instruction.index)
                               : Quoted(identifier);
}

/// Shows each instruction's descriptor to `look`, which gives a complaint or "".
template <class Look>
void ForEachDescriptor(Trial& trial, Look look) {
  WithSubject(trial, [&](const Entries& entries) {
    for (const CatalogueEntry& instruction : entries) {
      trial.At("reading the descriptor of prototype " + std::to_string(instruction.index));
      const std::string complaint = look(*instruction.descriptor);
      if (!complaint.empty()) trial.Complain(Label(instruction) + ": " + complaint);
    }
  });
}

}  // namespace nuvhost::check
