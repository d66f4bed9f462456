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

/// Shows the library as it is before anyone called InitPlugins.
template <class Judge>
void WithLoaded(Trial& trial, Judge judge) {
  trial.At("loading the library");
  trial.WithLibrary([&](const PluginLibrary& loaded) {
    judge(trial, loaded.Get());
    trial.At("unloading the library");
  });
}

/// A law of the library as it is loaded.
template <auto judge>
void Judge(Trial& trial) {
  WithLoaded(trial, judge);
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
    trial.At("loading the library");
    trial.WithLibrary([&](const PluginLibrary& library) {
      trial.At("calling NuvPluginLibGet again");
      if (library.CallExport() != &library.Get()) {
        trial.Complain("a second call of NuvPluginLibGet gave another object");
      }
    });
  } catch (const NoPluginError& error) {
    trial.Complain(error.what());
  } catch (const UserError& error) {
    trial.CannotLoad(error.what());
  }
}

void JudgePrototypes(Trial& trial, IXInstrPluginLib& library) {
  trial.At("reading the array of prototypes");
  const std::uint64_t count = library.GetPluginCount();
  IXInstrPlugin** prototypes = library.GetPlugins();
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
  WithSubject(trial, [&](const Entries& entries) {
    for (const CatalogueEntry& instruction : entries) {
      if (instruction.descriptor->format == 0) {
        trial.Complain(Label(instruction) + ": the format code is still 0 after InitPlugins");
      }
    }
  });
}

void JudgeInformation(Trial& trial, IXInstrPluginLib& library) {
  trial.At("reading the information record");
  const LibraryInfo* info = library.GetLibInfo();
  if (info == nullptr) return trial.Complain("GetLibInfo gives null");
  if (info->version != 1) trial.Complain("the version is " + std::to_string(info->version));
  trial.At("reading the text of the information record");
  if (TextOrEmpty(info->text).empty()) trial.Complain("the text is null or empty");
}

void JudgeUntouched(Trial& trial, IXInstrPluginLib& library) {
  const std::vector<DescriptorRecord*> descriptors = Descriptors(trial, library);
  for (std::size_t i = 0; i < descriptors.size(); ++i) {
    unsigned char bytes[sizeof(DescriptorRecord)];
    std::memcpy(bytes, static_cast<const void*>(descriptors[i]), sizeof bytes);
    const auto* found = std::ranges::find_if(bytes, [](unsigned char byte) { return byte != 0; });
    if (found == std::end(bytes)) continue;
    trial.Complain(
        fmt::format("{}: byte {} of its descriptor is {}", Prototype(i), found - bytes, *found));
  }
}

void JudgeInitCount(Trial& trial, IXInstrPluginLib& library) {
  for (const char* time : {"the first", "a second"}) {
    trial.At(fmt::format("calling InitPlugins {} time", time));
    const std::uint64_t visited = library.InitPlugins();
    const std::uint64_t count = library.GetPluginCount();
    if (visited == count) continue;
    trial.Complain(
        fmt::format("InitPlugins gives {} {} time, GetPluginCount {}", visited, time, count));
  }
}

void JudgeEmptyObject(Trial& trial, IXInstrPluginLib& library) {
  trial.At("calling GetEmptyObject");
  alignas(CNuvObject) unsigned char storage[sizeof(CNuvObject)];
  std::memset(storage, 0xAA, sizeof storage);
  auto* expected = reinterpret_cast<CNuvObject*>(storage);
  const CNuvObject* object = library.GetEmptyObject(expected);
  if (object != expected) {
    return trial.Complain("GetEmptyObject does not return the address that it was given");
  }
  if (object->GetType() != NUV_OBJ_EMPTY || object->Get() != nullptr) {
    trial.Complain("GetEmptyObject makes a value of type " + std::to_string(object->GetType()));
  }
  // Storage that was left as it is holds no value to be destroyed, and shows no type there is.
  if (object->GetType() <= NUV_OBJ_LINE_VECTOR) std::destroy_at(expected);
}

void JudgeRelease(Trial& trial, IXInstrPluginLib& library) {
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
  std::vector<Facts> facts;
  trial.WithLibrary([&](const PluginLibrary& loaded) {
    IXInstrPluginLib& library = loaded.Get();
    trial.At(fmt::format("building the descriptors of the library loaded {} time", time));
    library.InitPlugins();
    for (const DescriptorRecord* descriptor : Descriptors(trial, library)) {
      facts.push_back(AllFacts(*descriptor));
    }
    if (release) {
      trial.At("calling ReleasePlugins");
      library.ReleasePlugins();
    }
    trial.At(std::string("unloading the library ") +
             (release ? "after ReleasePlugins" : "without ReleasePlugins"));
  });
  return facts;
}

/// The library's own slot 0, which a host's compiler calls with either flag.
template <std::uint32_t flags>
void JudgeLibraryDestructor(Trial& trial, IXInstrPluginLib& library) {
  trial.At("calling InitPlugins");
  library.InitPlugins();
  trial.At(fmt::format("calling slot 0 of the library with flags {}", flags));
  const void* returned = library.DeletingDestructor(flags);
  if (returned != static_cast<void*>(&library)) {
    return trial.Complain(fmt::format("slot 0 with flags {} does not return the address", flags));
  }
  trial.At(fmt::format("using the library after slot 0 with flags {}", flags));
  const std::uint64_t count = library.GetPluginCount();
  if (count != 0) {
    return trial.Complain(
        fmt::format("GetPluginCount gives {} after slot 0 with flags {}", count, flags));
  }
  library.GetPlugins();
  library.GetLibInfo();
  library.ReleasePlugins();
  if (library.InitPlugins() != 0) {
    trial.Complain(fmt::format("InitPlugins finds prototypes after slot 0 with flags {}", flags));
  }
}

void JudgeLibraryDestructors(Trial& trial) {
  WithLoaded(trial, JudgeLibraryDestructor<0>);
  WithLoaded(trial, JudgeLibraryDestructor<1>);
}

/// What a host keeps pointers to.
struct Addresses {
  explicit Addresses(IXInstrPluginLib& library)
      : information(library.GetLibInfo()), prototypes(library.GetPlugins()) {
    const std::uint64_t count = library.GetPluginCount();
    for (std::uint64_t i = 0; i < count; ++i) {
      objects.push_back(prototypes[i]);
      descriptors.push_back(prototypes[i]->GetDescriptor());
    }
  }

  const void* information;
  IXInstrPlugin** prototypes;
  std::vector<const void*> objects;
  std::vector<const void*> descriptors;
};

void JudgeAddresses(Trial& trial, IXInstrPluginLib& library) {
  trial.At("asking for the addresses");
  const Addresses before(library);
  for (const char* when : {"when asked again", "after InitPlugins"}) {
    const Addresses after(library);
    const auto same = [&](const char* what, const auto& a, const auto& b) {
      if (a != b) trial.Complain(fmt::format("{} has moved {}", what, when));
    };
    same("the information", before.information, after.information);
    same("the array of prototypes", before.prototypes, after.prototypes);
    same("a prototype", before.objects, after.objects);
    same("a descriptor", before.descriptors, after.descriptors);
    library.InitPlugins();
  }
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

constexpr Law kInterfaceLaws[] = {
    {"interface", "export",
     "The library exports NuvPluginLibGet, which gives the same library object on every call.",
     JudgeExport, true},
    {"interface", "prototypes",
     "GetPlugins holds as many prototypes as GetPluginCount says, at least one, all different, "
     "each with a descriptor of its own.",
     Judge<JudgePrototypes>, true},
    {"interface", "init", "InitPlugins fills every prototype's descriptor.", JudgeInit, true},
    {"interface", "init-count",
     "InitPlugins returns the number of prototypes, however often it is called.",
     Judge<JudgeInitCount>},
    {"interface", "information",
     "The information record has version 1 and a text that is not empty.", Judge<JudgeInformation>},
    {"interface", "untouched", "Before InitPlugins every descriptor is all zero.",
     Judge<JudgeUntouched>},
    {"interface", "empty-object",
     "GetEmptyObject makes a value of type 0 where it is told to, and returns its address.",
     Judge<JudgeEmptyObject>},
    {"interface", "release",
     "After ReleasePlugins there are no prototypes, their descriptors hold no records, and every "
     "slot of the library may still be called.",
     Judge<JudgeRelease>},
    {"interface", "library-destructor",
     "Slot 0 of the library, with either flag, returns its address and leaves a library without "
     "prototypes, whose slots may still be called.",
     JudgeLibraryDestructors},
    {"interface", "addresses",
     "The information, the array of prototypes, the prototypes and their descriptors stand where "
     "they stand, before InitPlugins and after.",
     Judge<JudgeAddresses>},
    {"interface", "reload",
     "A library that was unloaded, with or without ReleasePlugins, is the same when it is loaded "
     "again.",
     JudgeReload},
};

}  // namespace

std::span<const Law> InterfaceLaws() {
  return kInterfaceLaws;
}

}  // namespace nuvhost::check
