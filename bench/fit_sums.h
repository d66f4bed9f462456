// How near the trimmed fits come to the smallest sum of squared distances.
#pragma once

#include <cstdint>

/// Tries random scenes in which the share of outliers is the percentage given, so that the true
/// inliers are one of the subsets to choose from, and prints a table of the fits whose sum is
/// larger than theirs. Up to 14 points the sum is held against the least of all subsets. Whether
/// no more than one scene in a thousand is larger, and none of those with few points.
bool PrintSums(std::uint64_t seed);
