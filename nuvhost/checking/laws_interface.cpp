// The laws of the library object.

#include <algorithm>
#include <cstring>
#include <memory>
#include <set>

#include "nuvhost/checking/facts.h"
#include "nuvhost/checking/law.h"
#include "nuvhost/checking/subject.h"
#include "nuvhost/error.h"
#include "nuvhost/library/plugin_library.h"
#include "nuvhost/text/names.h"

namespace nuvhost::check {
namespace {

std::string Prototype(std::size_t index) {
  return "prototype " + std::to_string(index);
}

/// The library as it is before anyone called InitPlugins.
PluginLibrary Load(Trial& trial) {
  trial.At("loading the library");
  return PluginLibrary(trial.Library());
}

std::vector<DescriptorRecord*> Descriptors(Trial& trial, IXInstrPluginLib& library) {
  std::vector<DescriptorRecord*> descriptors;
  for (std::size_t i = 0; i < library.GetPluginCount(); ++i) {
    trial.At(fmt::format("asking {} for its descriptor", Prototype(i)));
    descriptors.push_back(library.GetPlugins()[i]->GetDescriptor());
  }
  return descriptors;
}

void JudgeExport(Trial& trial) {
  try {
    const PluginLibrary library = Load(trial);
    trial.At("calling NuvPluginLibGet again");
    if (library.CallExport() != &library.Get()) {
      trial.Complain("a second call of NuvPluginLibGet gave another object");
    }
  } catch (const NoPluginError& error) {
    trial.Complain(error.what());
  } catch (const UserError& error) {
    trial.CannotLoad(error.what());
  }
}

void JudgePrototypes(Trial& trial) {
  const PluginLibrary library = Load(trial);
  trial.At("reading the array of prototypes");
  const std::uint64_t count = library.Get().GetPluginCount();
  IXInstrPlugin** prototypes = library.Get().GetPlugins();
  if (count == 0) return trial.Complain("GetPluginCount gives 0: there are no instructions");
  if (prototypes == nullptr) {
    return trial.Complain("GetPlugins gives null, though GetPluginCount gives " +
                          std::to_string(count));
  }
  std::set<const void*> seen;
  for (std::size_t i = 0; i < count; ++i) {
    trial.At(fmt::format("asking {} for its descriptor", Prototype(i)));
    if (prototypes[i] == nullptr) {
      trial.Complain(Prototype(i) + " is null");
    } else if (!seen.insert(prototypes[i]).second) {
      trial.Complain(Prototype(i) + " is an object that stands before it already");
    } else if (const void* descriptor = prototypes[i]->GetDescriptor(); descriptor == nullptr) {
      trial.Complain(Prototype(i) + " has no descriptor: slot 4 gives null");
    } else if (!seen.insert(descriptor).second) {
      trial.Complain(Prototype(i) + " has the descriptor of one before it");
    }
  }
}

void JudgeInit(Trial& trial) {
  const Subject subject(trial);
  for (const CatalogueEntry& instruction : subject.Entries()) {
    if (instruction.descriptor->format == 0) {
      trial.Complain(Label(instruction) + ": the format code is still 0 after InitPlugins");
    }
  }
}

void JudgeInformation(Trial& trial) {
  const PluginLibrary library = Load(trial);
  trial.At("reading the information record");
  const LibraryInfo* info = library.Get().GetLibInfo();
  if (info == nullptr) return trial.Complain("GetLibInfo gives null");
  if (info->version != 1) trial.Complain("the version is " + std::to_string(info->version));
  trial.At("reading the text of the information record");
  if (TextOrEmpty(info->text).empty()) trial.Complain("the text is null or empty");
}

void JudgeUntouched(Trial& trial) {
  const PluginLibrary library = Load(trial);
  const std::vector<DescriptorRecord*> descriptors = Descriptors(trial, library.Get());
  for (std::size_t i = 0; i < descriptors.size(); ++i) {
    unsigned char bytes[sizeof(DescriptorRecord)];
    std::memcpy(bytes, static_cast<const void*>(descriptors[i]), sizeof bytes);
    const auto* found = std::ranges::find_if(bytes, [](unsigned char byte) { return byte != 0; });
    if (found == std::end(bytes)) continue;
    trial.Complain(
        fmt::format("{}: byte {} of its descriptor is {}", Prototype(i), found - bytes, *found));
  }
}

void JudgeInitCount(Trial& trial) {
  const PluginLibrary library = Load(trial);
  for (const char* time : {"the first", "a second"}) {
    trial.At(fmt::format("calling InitPlugins {} time", time));
    const std::uint64_t visited = library.Get().InitPlugins();
    const std::uint64_t count = library.Get().GetPluginCount();
    if (visited == count) continue;
    trial.Complain(
        fmt::format("InitPlugins gives {} {} time, GetPluginCount {}", visited, time, count));
  }
}

void JudgeEmptyObject(Trial& trial) {
  const PluginLibrary library = Load(trial);
  trial.At("calling GetEmptyObject");
  alignas(CNuvObject) unsigned char storage[sizeof(CNuvObject)];
  std::memset(storage, 0xAA, sizeof storage);
  auto* expected = reinterpret_cast<CNuvObject*>(storage);
  const CNuvObject* object = library.Get().GetEmptyObject(expected);
  if (object != expected) {
    return trial.Complain("GetEmptyObject does not return the address that it was given");
  }
  if (object->GetType() != NUV_OBJ_EMPTY || object->Get() != nullptr) {
    trial.Complain("GetEmptyObject makes a value of type " + std::to_string(object->GetType()));
  }
  // Storage that was left as it is holds no value to be destroyed, and shows no type there is.
  if (object->GetType() <= NUV_OBJ_LINE_VECTOR) std::destroy_at(expected);
}

void JudgeRelease(Trial& trial) {
  const PluginLibrary loaded = Load(trial);
  IXInstrPluginLib& library = loaded.Get();
  trial.At("calling InitPlugins");
  library.InitPlugins();
  const std::vector<DescriptorRecord*> descriptors = Descriptors(trial, library);
  for (const char* time : {"the first", "a second"}) {
    trial.At(fmt::format("calling ReleasePlugins {} time", time));
    library.ReleasePlugins();
    trial.At("asking for prototypes after ReleasePlugins");
    library.GetPlugins();
    const std::uint64_t count = library.GetPluginCount();
    if (count != 0) {
      return trial.Complain(fmt::format("GetPluginCount gives {} after ReleasePlugins", count));
    }
    const std::uint64_t visited = library.InitPlugins();
    if (visited != 0) {
      return trial.Complain(fmt::format("InitPlugins gives {} after ReleasePlugins", visited));
    }
  }
  for (std::size_t i = 0; i < descriptors.size(); ++i) {
    const DescriptorRecord& descriptor = *descriptors[i];
    if (!descriptor.constants.Empty() || !descriptor.inputs.Empty() ||
        !descriptor.results.Empty()) {
      trial.Complain(Prototype(i) + ": its descriptor still holds records after ReleasePlugins");
    }
  }
}

/// The descriptors after a load of its own. A library that was not asked to release its
/// prototypes does so as it is unloaded.
std::vector<Facts> FactsOfALoad(Trial& trial, const char* time, bool release) {
  trial.At(fmt::format("loading the library {} time", time));
  const PluginLibrary library(trial.Library());
  trial.At(fmt::format("building the descriptors of the library loaded {} time", time));
  library.Get().InitPlugins();
  std::vector<Facts> facts;
  for (const DescriptorRecord* descriptor : Descriptors(trial, library.Get())) {
    facts.push_back(AllFacts(*descriptor));
  }
  if (release) {
    trial.At("calling ReleasePlugins");
    library.Get().ReleasePlugins();
  }
  trial.At(std::string("unloading the library ") +
           (release ? "after ReleasePlugins" : "without ReleasePlugins"));
  return facts;
}

void JudgeReload(Trial& trial) {
  const std::vector<Facts> first = FactsOfALoad(trial, "the first", true);
  for (const char* time : {"a second", "a third"}) {
    const std::vector<Facts> again = FactsOfALoad(trial, time, false);
    if (again.size() != first.size()) {
      return trial.Complain(fmt::format("loaded {} time, the library has {} prototypes; it had {}",
                                        time, again.size(), first.size()));
    }
    for (std::size_t i = 0; i < first.size(); ++i) {
      const std::string difference = Difference(first[i], again[i]);
      if (difference.empty()) continue;
      trial.Complain(fmt::format("loaded {} time, {}: {}", time, Prototype(i), difference));
    }
  }
}

constexpr Law kLaws[] = {
    {"interface", "export",
     "The library exports NuvPluginLibGet, which gives the same library object on every call.",
     JudgeExport, true},
    {"interface", "prototypes",
     "GetPlugins holds as many prototypes as GetPluginCount says, at least one, all different, "
     "each with a descriptor of its own.",
     JudgePrototypes, true},
    {"interface", "init", "InitPlugins fills every prototype's descriptor.", JudgeInit, true},
    {"interface", "init-count",
     "InitPlugins returns the number of prototypes, however often it is called.", JudgeInitCount},
    {"interface", "information",
     "The information record has version 1 and a text that is not empty.", JudgeInformation},
    {"interface", "untouched", "Before InitPlugins every descriptor is all zero.", JudgeUntouched},
    {"interface", "empty-object",
     "GetEmptyObject makes a value of type 0 where it is told to, and returns its address.",
     JudgeEmptyObject},
    {"interface", "release",
     "After ReleasePlugins there are no prototypes, their descriptors hold no records, and every "
     "slot of the library may still be called.",
     JudgeRelease},
    {"interface", "reload",
     "A library that was unloaded, with or without ReleasePlugins, is the same when it is loaded "
     "again.",
     JudgeReload},
};

}  // namespace

std::span<const Law> InterfaceLaws() {
  return kLaws;
}

}  // namespace nuvhost::check
