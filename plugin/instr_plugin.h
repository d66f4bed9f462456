// IXInstrPlugin: the interface through which the host sees every instruction.
#pragma once

#include <cstdint>

#include "host/context.h"
#include "plugin/records.h"

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
  virtual void* DeletingDestructor(std::uint32_t flags) = 0;  //  0
  /// Fills the class's descriptor, once more if it is filled; without memory it stays as it was.
  virtual void BuildDescriptor() {}  //  1
  /// Empties the class's descriptor: its records go, its texts and numbers stay.
  virtual void ClearDescriptor() {}  //  2
  virtual void Reserved3() {}        //  3
  /// The class's descriptor, built or not.
  virtual DescriptorRecord* GetDescriptor() = 0;                                    //  4
  virtual Status Execute(IXInstrContext* /*context*/) { return Status::kSuccess; }  //  5
  /// A new object of the same class, to be given to Destroy; null when memory is short.
  virtual IXInstrPlugin* Create() = 0;  //  6
  /// Destroys and frees its argument, not this object; null is allowed.
  virtual void Destroy(IXInstrPlugin* instruction) {  //  7
    if (instruction != nullptr) instruction->DeletingDestructor(1);
  }
  virtual bool Reserved8() { return false; }   //  8
  virtual void Reserved9() {}                  //  9
  virtual void Reserved10() {}                 // 10
  virtual void Reserved11() {}                 // 11
  virtual bool Reserved12() { return false; }  // 12
  virtual bool Reserved13() { return false; }  // 13
  virtual bool Reserved14() { return false; }  // 14
  virtual bool Reserved15() { return false; }  // 15

 protected:
  ~IXInstrPlugin() = default;
};
