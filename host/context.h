// IXInstrContext: what the host hands to a running instruction.
//
// The host makes one for each call, or keeps one for calls one after another; it is used by one
// thread at a time, the one that runs the instruction, and never after Execute has returned.
#pragma once

#include <cstdint>

#include "host/nuv_object.h"

/// The execution context of one call. Arrays hold one pointer a value, in the order of the
/// descriptor's records; they, the values and the services stay the host's. No pointer to a value
/// is null, an array without values may be. Slots 0, 1, 7 and 9 are not used by instructions.
class IXInstrContext {
 public:
  /* 0*/ virtual void* DeletingDestructor(std::uint32_t flags) = 0;
  /* 1*/ virtual void Reserved1() {}
  /* 2*/ virtual CNuvObject** ConstantValues() = 0;
  /// At least as many as the descriptor declares; where the last input repeats, one entry for every
  /// given input.
  /* 3*/ virtual CNuvObject** InputValues() = 0;
  /* 4*/ virtual std::int32_t InputCount() = 0;
  /* 5*/ virtual CNuvObject** ResultValues() = 0;
  /* 6*/ virtual CNuvObject* ConstantValue(std::int32_t index) = 0;
  /* 7*/ virtual void Reserved7() {}
  /* 8*/ virtual CNuvObject* ResultValue(std::int32_t index) = 0;
  /* 9*/ virtual void Reserved9() {}
  /// Sets a display attribute of a result.
  /*10*/ virtual void MarkResult(std::int32_t index, std::int32_t value) = 0;
  /// A service by its number (NuvService); null where the host has none. What an instruction would
  /// report, raise or draw is then dropped and its status stays what it is; one that needs the
  /// named data fails.
  /*11*/ virtual void* Service(std::int32_t number) = 0;

 protected:
  ~IXInstrContext() = default;
};
