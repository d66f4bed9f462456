// Sorting numbers, and finding the order of values by numbers: in lanes where the kernels have them
// for it, else by digits, with the same result.
#pragma once

#include <cstddef>
#include <cstdint>

#include "algorithm/kernels.h"

namespace formula {

/// Writes the `size` numbers to `out`, which may be `in`, ascending or descending. Where numbers
/// are not equal the result is that of any sort; -0 stands before 0, and NaN stand at the ends, the
/// negative ones before all numbers, in bit order. May allocate; if that throws, nothing is
/// written.
void SortNumbers(double* out, const double* in, std::size_t size, bool descending,
                 const Kernels& kernels = *kKernels);

/// Writes the indices of the keys from the smallest key to the largest, equal ones in increasing
/// order. `spare` has room for as many numbers.
void SortIndices(std::uint64_t* indices, const std::uint64_t* keys, std::size_t size, double* spare,
                 const Kernels& kernels = *kKernels);

}  // namespace formula
