// IXInstrPluginLib: the interface of a plug-in library, and the one function that hands it out.
//
// The life of a library, all of it on one thread of the host:
//
//   load the dynamic library      its static objects are made, the prototypes among them
//   NuvPluginLibGet()             the library object; any number of times
//   GetLibInfo()                  what the host shows
//   InitPlugins()                 builds every descriptor
//   GetPluginCount(), GetPlugins()  the prototypes, whose descriptors make up the catalogue
//     prototype->Create()         working objects, run as steps; each goes to Destroy
//   ReleasePlugins()              after the last working object is gone
//   unload the dynamic library
//
// No other order is enforced: each operation reflects what there is. The library owns itself, its
// prototypes, their descriptors and every text in them; the host owns the values that it passes
// and the working objects that it made. Values that an instruction wrote stay whole when the
// library is unloaded; descriptors and texts do not.
#pragma once

#include <cstdint>
#include <new>

#include "host/export.h"
#include "host/instr_plugin.h"

/// What the host shows about a library.
struct LibraryInfo {
  std::uint32_t version;   // 0
  std::uint32_t padding4;  // 4
  const char* text;        // 8  a title line, a line feed, a note
};
static_assert(sizeof(LibraryInfo) == 16);

/// A library of instructions. The host calls it through these slots, in this order, on one thread
/// at a time. No slot throws.
class IXInstrPluginLib {
 public:
  /// Releases the prototypes and their array; the library object itself is static and stays.
  /* 0*/ virtual void* DeletingDestructor(std::uint32_t flags) = 0;
  /// Never null; the record and its text are the library's and static.
  /* 1*/ virtual const LibraryInfo* GetLibInfo() = 0;
  /// The prototypes, in catalogue order, the library's own; null when there never were any. The
  /// array stays where it is until ReleasePlugins.
  /* 2*/ virtual IXInstrPlugin** GetPlugins() = 0;
  /* 3*/ virtual std::uint64_t GetPluginCount() = 0;
  /// Builds every prototype's descriptor; returns how many prototypes it visited. Where memory is
  /// short a descriptor stays unbuilt, with a format code of 0, and a later call builds it.
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
