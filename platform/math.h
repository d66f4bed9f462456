// The C library's mathematical functions where the linked one will not do.
#pragma once

namespace platform {

/// The system C library's power function. On Windows that is the one in the system's runtime
/// DLL: MinGW puts its own in front of it, which multiplies powers out and is wrong in the last
/// bits for a third of the small whole exponents.
double Pow(double base, double exponent) noexcept;

}  // namespace platform
