#include "platform/math.h"

#include <cmath>

namespace platform {

#if defined(_WIN32)

// The import table's slot for the runtime's function, which the plain name does not lead to.
extern "C" double (*const runtime_pow)(double, double) __asm__("__imp_pow");

double Pow(double base, double exponent) noexcept {
  return runtime_pow(base, exponent);
}

#else

double Pow(double base, double exponent) noexcept {
  return std::pow(base, exponent);
}

#endif

}  // namespace platform
