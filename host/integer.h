// The rules by which a number becomes a 32-bit integer: those of x86-64, on every processor.
#pragma once

#if defined(__aarch64__)
#include <cmath>
#include <limits>
#else
#include <emmintrin.h>
#endif

#include <cstdint>

/// Truncates toward zero as the processor does: a value outside the 32-bit signed range, or NaN,
/// gives -2147483648.
inline std::int32_t NuvTruncate(double number) noexcept {
#if defined(__aarch64__)
  const bool fits = number > -2147483649.0 && number < 2147483648.0;
  return fits ? static_cast<std::int32_t>(number) : std::numeric_limits<std::int32_t>::min();
#else
  return _mm_cvttsd_si32(_mm_set_sd(number));
#endif
}

/// Rounds by the processor's current mode, half to even unless it was changed, with the same
/// rule for what does not fit.
inline std::int32_t NuvRound(double number) noexcept {
#if defined(__aarch64__)
  return NuvTruncate(std::nearbyint(number));
#else
  return _mm_cvtsd_si32(_mm_set_sd(number));
#endif
}

/// Truncates toward zero to a 64-bit integer and keeps its low 32 bits, as unsigned values are
/// passed: -1 has all bits set, 2^32 + 5 is 5. What fits no 64 bits, or NaN, gives 0.
inline std::uint32_t NuvTruncateLow32(double number) noexcept {
#if defined(__aarch64__)
  const bool fits = std::abs(number) < 0x1p63;  // of -2^63 itself the low bits are 0
  return fits ? static_cast<std::uint32_t>(static_cast<std::int64_t>(number)) : 0;
#else
  return static_cast<std::uint32_t>(_mm_cvttsd_si64(_mm_set_sd(number)));
#endif
}
