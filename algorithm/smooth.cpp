#include "algorithm/smooth.h"

#include <cstring>

#include "algorithm/kernels.h"

namespace formula {

void Smooth(double* out, const double* in, double* spare, std::size_t size, std::ptrdiff_t passes,
            bool circular) {
  const std::size_t bytes = size * sizeof(double);
  const double* from = in;
  while (passes > 0) {
    // Whole rounds come last: one that changes nothing leaves nothing to do.
    const std::ptrdiff_t odd = passes % kSmoothPasses;
    const std::ptrdiff_t round = odd == 0 ? kSmoothPasses : odd;
    double* to = from == out ? spare : out;
    kKernels->smooth(to, from, size, round, circular);
    if (round == kSmoothPasses && std::memcmp(to, from, bytes) == 0) break;
    from = to;
    passes -= round;
  }
  if (from != out) std::memcpy(out, from, bytes);
}

}  // namespace formula
