// The kernels for the lanes that every processor has.

#include "algorithm/kernel_bodies.inc"

namespace formula {

const Kernels kBaseKernels = kBodies;

}  // namespace formula
