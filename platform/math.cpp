#include "platform/math.h"

#include <cmath>

namespace platform {

#if defined(_WIN32)

// The import table's slots for the runtime's functions, which the plain names do not lead to.
extern "C" {
extern double (*const runtime_pow)(double, double) __asm__("__imp_pow");
extern double (*const runtime_sin)(double) __asm__("__imp_sin");
extern double (*const runtime_cos)(double) __asm__("__imp_cos");
extern double (*const runtime_tan)(double) __asm__("__imp_tan");
}

double Pow(double base, double exponent) noexcept {
  return runtime_pow(base, exponent);
}
double Sin(double radians) noexcept {
  return runtime_sin(radians);
}
double Cos(double radians) noexcept {
  return runtime_cos(radians);
}
double Tan(double radians) noexcept {
  return runtime_tan(radians);
}

#else

double Pow(double base, double exponent) noexcept {
  return std::pow(base, exponent);
}
double Sin(double radians) noexcept {
  return std::sin(radians);
}
double Cos(double radians) noexcept {
  return std::cos(radians);
}
double Tan(double radians) noexcept {
  return std::tan(radians);
}

#endif

}  // namespace platform
