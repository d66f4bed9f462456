// Laws: what every plug-in library must keep to, whatever its instructions are.
#pragma once

#include <span>
#include <string_view>

#include "nuvhost/checking/trial.h"

namespace nuvhost::check {

/// One law. `judge` may crash, hang or throw where the library breaks it badly.
struct Law {
  const char* group;
  const char* name;
  const char* demand;  ///< one sentence
  void (*judge)(Trial& trial);
  /// Without it no other law can be judged.
  bool essential = false;
};

/// The laws of each group, and all of them in the order in which they are judged.
std::span<const Law> InterfaceLaws();
std::span<const Law> DescriptorLaws();
std::span<const Law> InstructionLaws();
std::span<const Law> CallLaws();
std::span<const Law> ConductLaws();
std::vector<const Law*> AllLaws();

/// Judges one law in this process; hands each line of the record to `recorder`.
void JudgeLaw(const Law& law, const Charge& charge, const Trial::Recorder& recorder);

}  // namespace nuvhost::check
