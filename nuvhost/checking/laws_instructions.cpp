// The laws of an instruction's slots other than Execute.

#include <fmt/format.h>

#include <algorithm>

#include "nuvhost/checking/facts.h"
#include "nuvhost/checking/law.h"
#include "nuvhost/checking/process_state.h"
#include "nuvhost/checking/subject.h"

namespace nuvhost::check {
namespace {

/// Lets `judge` use each prototype; it gives a complaint or "".
template <class Judge>
void ForEachPrototype(Trial& trial, const std::string& doing, Judge judge) {
  WithSubject(trial, [&](const Entries& entries) {
    for (const CatalogueEntry& instruction : entries) {
      trial.At(doing + " " + Label(instruction));
      const std::string complaint = judge(*instruction.prototype);
      if (!complaint.empty()) trial.Complain(Label(instruction) + ": " + complaint);
    }
  });
}

std::string Created(IXInstrPlugin& prototype) {
  IXInstrPlugin* first = prototype.Create();
  if (first == nullptr) return "slot 6 gives null";
  if (first == &prototype) return "slot 6 gives the object itself, not a new one";
  IXInstrPlugin* second = first->Create();
  if (second == first || second == &prototype) return "slot 6 gives the same object twice";
  if (second == nullptr) return "slot 6 of a created object gives null";
  if (first->GetDescriptor() != prototype.GetDescriptor()) {
    return "the created object has another descriptor";
  }
  first->Destroy(second);
  prototype.Destroy(first);
  return "";
}

std::string Destroyed(IXInstrPlugin& prototype) {
  prototype.Destroy(nullptr);
  IXInstrPlugin* kept = prototype.Create();
  IXInstrPlugin* other = prototype.Create();
  const bool separate = kept != other && kept != &prototype && other != &prototype;
  if (!separate || kept == nullptr || other == nullptr) return "";  // "create" tells of that
  kept->Destroy(other);
  const bool intact = kept->GetDescriptor() == prototype.GetDescriptor();
  prototype.Destroy(kept);
  return intact ? "" : "slot 7 broke the object that it was called on";
}

/// Whether a new object stands at the address of one whose memory should still be its maker's.
bool IsReused(IXInstrPlugin& prototype, const void* address) {
  IXInstrPlugin* made[8] = {};
  for (IXInstrPlugin*& one : made) one = prototype.Create();
  const bool reused = std::ranges::find(made, address) != std::end(made);
  for (IXInstrPlugin* one : made) {
    if (one != address) prototype.Destroy(one);
  }
  return reused;
}

std::string Destructed(IXInstrPlugin& prototype) {
  constexpr std::size_t kObjects = 1000;
  for (const std::uint32_t flags : {0U, 1U}) {
    IXInstrPlugin* object = prototype.Create();
    if (object == nullptr || object == &prototype) return "";  // "create" tells of that
    void* address = object;
    const void* returned = object->DeletingDestructor(flags);
    if (returned != address) {
      return fmt::format("slot 0 with flags {} does not return the address", flags);
    }
    if (flags == 0) {
      if (IsReused(prototype, address)) return "slot 0 with flags 0 frees the object";
      ::operator delete(address);
    }
  }
  const std::size_t before = MeasureMemory().heap;
  for (std::size_t i = 0; i < kObjects; ++i) prototype.Create()->DeletingDestructor(1);
  const std::size_t after = MeasureMemory().heap;
  return after < before + kObjects * sizeof(void*) ? "" : "slot 0 with flags 1 does not free";
}

std::string ReservedSlots(IXInstrPlugin& prototype) {
  prototype.Reserved3();
  prototype.Reserved9();
  prototype.Reserved10();
  prototype.Reserved11();
  std::string slots;
  if (prototype.Reserved8()) slots += " 8";
  if (prototype.Reserved12()) slots += " 12";
  if (prototype.Reserved13()) slots += " 13";
  if (prototype.Reserved14()) slots += " 14";
  if (prototype.Reserved15()) slots += " 15";
  return slots.empty() ? "" : "true from the reserved slots" + slots;
}

std::string BuiltTwice(IXInstrPlugin& prototype) {
  const Facts before = AllFacts(*prototype.GetDescriptor());
  prototype.BuildDescriptor();
  return Difference(before, AllFacts(*prototype.GetDescriptor()));
}

std::string Cleared(IXInstrPlugin& prototype) {
  const DescriptorRecord& descriptor = *prototype.GetDescriptor();
  const Facts before = AllFacts(descriptor);
  const Facts head = HeadFacts(descriptor);
  prototype.ClearDescriptor();
  if (!descriptor.constants.Empty() || !descriptor.inputs.Empty() || !descriptor.results.Empty()) {
    return "the descriptor still holds records after slot 2";
  }
  const std::string lost = Difference(head, HeadFacts(descriptor));
  if (!lost.empty()) return "after slot 2, " + lost;
  prototype.BuildDescriptor();
  const std::string difference = Difference(before, AllFacts(descriptor));
  return difference.empty() ? "" : "built again after slot 2, " + difference;
}

constexpr Law kInstructionLaws[] = {
    {"interface", "create",
     "Slot 6 gives a new object each time, with the descriptor of the one it was called on.",
     [](Trial& trial) { ForEachPrototype(trial, "creating objects of", Created); }},
    {"interface", "destroy",
     "Slot 7 destroys the object it is given, not the one it is called on, and takes null.",
     [](Trial& trial) { ForEachPrototype(trial, "destroying objects of", Destroyed); }},
    {"interface", "destructor",
     "Slot 0 returns the object's address, frees the object with flags 1 and not with flags 0.",
     [](Trial& trial) { ForEachPrototype(trial, "calling slot 0 of", Destructed); }},
    {"interface", "reserved-slots",
     "The reserved slots may be called, and 8 and 12 to 15 give false.",
     [](Trial& trial) { ForEachPrototype(trial, "calling the reserved slots of", ReservedSlots); }},
    {"interface", "build-twice", "A descriptor that is built once more is the same as before.",
     [](Trial& trial) { ForEachPrototype(trial, "building once more", BuiltTwice); }},
    {"interface", "clear",
     "Slot 2 empties a descriptor of its records and leaves its texts and numbers; slot 1 fills "
     "it again.",
     [](Trial& trial) { ForEachPrototype(trial, "clearing and building", Cleared); }},
};

}  // namespace

std::span<const Law> InstructionLaws() {
  return kInstructionLaws;
}

}  // namespace nuvhost::check
