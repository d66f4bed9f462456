// IXInstrPluginLib: the interface of a plug-in library, and the one function that hands it out.
#pragma once

#include <cstdint>
#include <new>

#include "host/export.h"
#include "plugin/instr_plugin.h"

/// What the host shows about a library.
struct LibraryInfo {
  std::uint32_t version;   // 0
  std::uint32_t padding4;  // 4
  const char* text;        // 8  a title line, a line feed, a note
};
static_assert(sizeof(LibraryInfo) == 16);

/// A library of instructions. The usual order is GetLibInfo, InitPlugins, GetPluginCount and
/// GetPlugins, work, ReleasePlugins; no order is enforced. All calls come from one thread. No
/// slot throws.
class IXInstrPluginLib {
 public:
  /// Releases the prototypes and their array; the library object itself is static and stays.
  /* 0*/ virtual void* DeletingDestructor(std::uint32_t flags) = 0;
  /* 1*/ virtual const LibraryInfo* GetLibInfo() = 0;
  /// The prototypes, in catalogue order; null when there never were any.
  /* 2*/ virtual IXInstrPlugin** GetPlugins() = 0;
  /* 3*/ virtual std::uint64_t GetPluginCount() = 0;
  /// Builds every prototype's descriptor; returns how many prototypes it visited.
  /* 4*/ virtual std::uint64_t InitPlugins() = 0;
  /// Empties every descriptor, then destroys the prototypes.
  /* 5*/ virtual void ReleasePlugins() = 0;
  /// Constructs an empty value at `result` and returns it: the host's compiler returns a class
  /// by value through just such a pointer.
  /* 6*/ virtual CNuvObject* GetEmptyObject(CNuvObject* result) {
    return new (result) CNuvObject(NUV_OBJ_EMPTY);
  }

 protected:
  ~IXInstrPluginLib() = default;
};

/// The library's only export: the one library object, the same on every call, or null where the
/// memory for it was short while the library was loaded. It does no work.
extern "C" NUV_EXPORT IXInstrPluginLib* NuvPluginLibGet();
