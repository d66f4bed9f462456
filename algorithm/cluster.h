// One-dimensional clustering: which values lie together.
#pragma once

#include <cstddef>
#include <vector>

namespace formula {

/// The positions, in increasing order, of the members of the largest cluster; of equally large
/// ones the first created. Each value in turn joins the cluster whose centre, the mean of its
/// members so far, is nearest and strictly nearer than the tolerance (the first created of equally
/// near ones), or begins a cluster of its own. A NaN is near nothing. Takes O(n log n).
std::vector<std::size_t> LargestCluster(const std::vector<double>& values, double tolerance);

}  // namespace formula
