// Statistics whose digits are lost: variances over values that hardly differ from their mean.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/records.h"

namespace nuvhost {

/// The caution to give with a step that computed a variance, or a capability index by one, over
/// values whose spread is less than 1e-7 of their mean. The sum of squares then keeps no digit of
/// what they differ by.
/// Source: T. F. Chan, G. H. Golub, R. J. LeVeque, "Algorithms for computing the sample variance",
/// The American Statistician 37 (1983).
std::optional<std::string> LostDigits(const DescriptorRecord& descriptor,
                                      const std::vector<CNuvObject>& inputs);

}  // namespace nuvhost
