// Subject: the library on trial with its descriptors built, as most laws look at it.
#pragma once

#include "nuvhost/checking/trial.h"
#include "nuvhost/library/catalogue.h"

namespace nuvhost::check {

class Subject {
 public:
  explicit Subject(Trial& trial) : trial_(trial), catalogue_(Announce(trial).Library()) {}
  Subject(const Subject&) = delete;
  Subject& operator=(const Subject&) = delete;
  ~Subject() { trial_.At("releasing and unloading the library"); }

  const std::vector<CatalogueEntry>& Entries() const { return catalogue_.Entries(); }

 private:
  static Trial& Announce(Trial& trial) {
    trial.At("loading the library and building its descriptors");
    return trial;
  }

  Trial& trial_;
  Catalogue catalogue_;
};

/// An instruction as complaints name it: by its identifier, or by its position.
inline std::string Label(const CatalogueEntry& instruction) {
  const char* identifier = instruction.descriptor->identifier;
  return identifier == nullptr ? "prototype " + std::to_string(instruction.index)
                               : Quoted(identifier);
}

/// Shows each instruction's descriptor to `look`, which gives a complaint or "".
template <class Look>
void ForEachDescriptor(Trial& trial, Look look) {
  const Subject subject(trial);
  for (const CatalogueEntry& instruction : subject.Entries()) {
    trial.At("reading the descriptor of prototype " + std::to_string(instruction.index));
    const std::string complaint = look(*instruction.descriptor);
    if (!complaint.empty()) trial.Complain(Label(instruction) + ": " + complaint);
  }
}

}  // namespace nuvhost::check
