// The C library's mathematical functions where the linked one will not do.
#pragma once

namespace platform {

// On Windows each is the function of the system's runtime DLL. MinGW puts its own in front of
// those, built on the x87 unit: its power function multiplies powers out and is wrong in the last
// bits for a third of the small whole exponents, and its sine, cosine and tangent reduce the angle
// with a pi of 66 bits, which is wrong by 1e-9 at 1e12 and by whole turns beyond 2^63.

double Pow(double base, double exponent) noexcept;

double Sin(double radians) noexcept;
double Cos(double radians) noexcept;
double Tan(double radians) noexcept;

}  // namespace platform
