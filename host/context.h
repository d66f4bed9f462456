// IXInstrContext: what the host hands to a running instruction.
#pragma once

#include <cstdint>

#include "host/nuv_object.h"

/// The execution context of one call. Arrays hold one pointer a value, in the order of the
/// descriptor's records; they and the values stay the host's. Slots 0, 1, 7 and 9 are not used
/// by instructions.
class IXInstrContext {
 public:
  /* 0*/ virtual void* DeletingDestructor(std::uint32_t flags) = 0;
  /* 1*/ virtual void Reserved1() {}
  /* 2*/ virtual CNuvObject** ConstantValues() = 0;
  /// One entry for every given input, where the last input repeats.
  /* 3*/ virtual CNuvObject** InputValues() = 0;
  /* 4*/ virtual std::int32_t InputCount() = 0;
  /* 5*/ virtual CNuvObject** ResultValues() = 0;
  /* 6*/ virtual CNuvObject* ConstantValue(std::int32_t index) = 0;
  /* 7*/ virtual void Reserved7() {}
  /* 8*/ virtual CNuvObject* ResultValue(std::int32_t index) = 0;
  /* 9*/ virtual void Reserved9() {}
  /// Sets a display attribute of a result.
  /*10*/ virtual void MarkResult(std::int32_t index, std::int32_t value) = 0;
  /// A service by its number (NuvService).
  /*11*/ virtual void* Service(std::int32_t number) = 0;

 protected:
  ~IXInstrContext() = default;
};
