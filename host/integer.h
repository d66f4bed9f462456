// The rules by which a number becomes a 32-bit integer.
#pragma once

#include <emmintrin.h>

#include <cstdint>

/// Truncates toward zero as the processor does: a value outside the 32-bit signed range, or NaN,
/// gives -2147483648.
inline std::int32_t NuvTruncate(double number) noexcept {
  return _mm_cvttsd_si32(_mm_set_sd(number));
}

/// Rounds by the processor's current mode, half to even unless it was changed, with the same
/// rule for what does not fit.
inline std::int32_t NuvRound(double number) noexcept {
  return _mm_cvtsd_si32(_mm_set_sd(number));
}

/// Truncates toward zero to a 64-bit integer and keeps its low 32 bits, as unsigned values are
/// passed: -1 has all bits set, 2^32 + 5 is 5. What fits no 64 bits, or NaN, gives 0.
inline std::uint32_t NuvTruncateLow32(double number) noexcept {
  return static_cast<std::uint32_t>(_mm_cvttsd_si64(_mm_set_sd(number)));
}
