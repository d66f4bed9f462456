// Values of the host made of any bytes, and compared to the last bit.
#pragma once

#include <cstdint>
#include <string>

#include "host/nuv_object.h"
#include "tests/fuzz/bytes.h"

namespace fuzz {

/// Often small and whole, sometimes hostile, sometimes any bits.
double AnyNumber(Bytes& bytes);
/// A 8-bit text without zero bytes: any bytes, pieces of formats and numbers, or a long repetition.
std::string AnyText(Bytes& bytes);
/// Any type of value, the empty one included.
NUV_OBJ_TYPE AnyType(Bytes& bytes);
/// A value of the type. Arrays are mostly short; long ones hold few numbers or lie on a figure.
CNuvObject AnyValue(Bytes& bytes, NUV_OBJ_TYPE type);

/// A number that tells the value's type and content, to the last bit.
std::uint64_t Fingerprint(const CNuvObject& value);

}  // namespace fuzz
