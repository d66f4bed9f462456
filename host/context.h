// IXInstrContext: what the host hands to a running instruction.
#pragma once

#include <cstdint>

#include "host/nuv_object.h"

/// The execution context of one call. Arrays hold one pointer a value, in the order of the
/// descriptor's records; they and the values stay the host's. Slots 0, 1, 7 and 9 are not used
/// by instructions.
class IXInstrContext {
 public:
  virtual void* DeletingDestructor(std::uint32_t flags) = 0;  //  0
  virtual void Reserved1() {}                                 //  1
  virtual CNuvObject** ConstantValues() = 0;                  //  2
  /// One entry for every given input, where the last input repeats.
  virtual CNuvObject** InputValues() = 0;                     //  3
  virtual std::int32_t InputCount() = 0;                      //  4
  virtual CNuvObject** ResultValues() = 0;                    //  5
  virtual CNuvObject* ConstantValue(std::int32_t index) = 0;  //  6
  virtual void Reserved7() {}                                 //  7
  virtual CNuvObject* ResultValue(std::int32_t index) = 0;    //  8
  virtual void Reserved9() {}                                 //  9
  /// Sets a display attribute of a result.
  virtual void MarkResult(std::int32_t index, std::int32_t value) = 0;  // 10
  /// A service by its number (NuvService).
  virtual void* Service(std::int32_t number) = 0;  // 11

 protected:
  ~IXInstrContext() = default;
};
