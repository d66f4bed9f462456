// Numbers at the start of a text, as the C formats "%x" and "%lf" scan them: the same answer on
// every platform and in every locale.
//
// Both skip white space and a sign, and ignore what stands behind the number. Where C leaves a
// choice, or its libraries differ, the answer is the GNU C library's.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace formula {

/// "%x": hexadecimal digits, "0x" before them or not. The low 32 bits of a 64-bit number; a longer
/// one is all ones. "0x" without a digit behind it is its zero.
std::optional<std::int32_t> ScanHexadecimal(std::string_view text);

/// "%lf": a decimal number, a hexadecimal one behind "0x", "inf", "infinity" or "nan" in letters of
/// either case. An exponent without a digit is ignored; a number too large is infinite, one too
/// small is zero.
std::optional<double> ScanNumber(std::string_view text);

}  // namespace formula
