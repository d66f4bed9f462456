// IXInstrPlugin: the interface through which the host sees every instruction, and what a call of
// one promises.
//
// An object is a prototype, which the library owns, or a working object, which the host made by
// Create and gives back to Destroy; both answer alike. Objects hold no data, so one object may run
// on several threads of the host at once, each call with a context of its own. What instructions
// share then is the process's: named data, random numbers, environment, log.
//
// One call of Execute: it reads constants and inputs through the context, and writes results into
// the host's own objects. It never changes a constant or an input and keeps no pointer behind the
// call. A result object may be an input of the same call, as where a program says a = f(a); a
// result may hold any value beforehand, of any type, or none. With status 3 the results are as they
// were unless the instruction says otherwise; where memory ran out, an array may be left empty.
#pragma once

#include <cstdint>

#include "host/context.h"
#include "host/records.h"

/// What Execute returns; no other value is returned by any instruction.
enum class Status : std::int32_t {
  kSuccess = 0,
  kFailure = 3,  ///< the results are as they were, unless the instruction says otherwise
};

/// One instruction. The host calls it through these sixteen slots, in this order, and was built
/// by another compiler: slot 0 is what that compiler calls for `delete`, written out.
///
/// Objects hold no data, so one object may run on several threads. No slot throws.
class IXInstrPlugin {
 public:
  /// Destroys the object, frees it when bit 0 of `flags` is set, and returns its address.
  /* 0*/ virtual void* DeletingDestructor(std::uint32_t flags) = 0;
  /// Fills the class's descriptor, once more if it is filled; without memory it stays as it was.
  /* 1*/ virtual void BuildDescriptor() {}
  /// Empties the class's descriptor: its records go, its texts and numbers stay.
  /* 2*/ virtual void ClearDescriptor() {}
  /* 3*/ virtual void Reserved3() {}
  /// The class's descriptor, built or not.
  /* 4*/ virtual DescriptorRecord* GetDescriptor() = 0;
  /* 5*/ virtual Status Execute(IXInstrContext* /*context*/) { return Status::kSuccess; }
  /// A new object of the same class, to be given to Destroy; null when memory is short.
  /* 6*/ virtual IXInstrPlugin* Create() = 0;
  /// Destroys and frees its argument, not this object; null is allowed.
  /* 7*/ virtual void Destroy(IXInstrPlugin* instruction) {
    if (instruction != nullptr) instruction->DeletingDestructor(1);
  }
  /* 8*/ virtual bool Reserved8() { return false; }
  /* 9*/ virtual void Reserved9() {}
  /*10*/ virtual void Reserved10() {}
  /*11*/ virtual void Reserved11() {}
  /*12*/ virtual bool Reserved12() { return false; }
  /*13*/ virtual bool Reserved13() { return false; }
  /*14*/ virtual bool Reserved14() { return false; }
  /*15*/ virtual bool Reserved15() { return false; }

 protected:
  ~IXInstrPlugin() = default;
};
