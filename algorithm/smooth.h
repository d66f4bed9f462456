// Smoothing by the filter (1, 2, 1) / 4.
#pragma once

#include <cstddef>

namespace formula {

/// Smooths at least three elements so many times, from `in` to `out`, which may be `in`. The ends
/// stay as they are, or are each other's neighbours where the array is circular. `spare` has room
/// for as many elements where `out` is `in` or where the passes are more than kSmoothPasses.
void Smooth(double* out, const double* in, double* spare, std::size_t size, std::ptrdiff_t passes,
            bool circular);

}  // namespace formula
