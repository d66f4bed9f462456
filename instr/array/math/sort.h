// Sorting numbers.
#pragma once

#include <cstddef>
#include <cstdint>

namespace formula {

/// Writes the `size` numbers to `out`, which may be `in`, ascending or descending; `scratch` has
/// room for as many keys. Where numbers are not equal the result is that of any sort; -0 stands
/// before 0, and NaN stand at the ends, the negative ones before all numbers, in bit order.
void SortNumbers(double* out, const double* in, std::size_t size, bool descending,
                 std::uint64_t* scratch);

}  // namespace formula
