// The kernels for AVX2; compiled with -mavx2, run where the processor has it.

#include "algorithm/kernel_bodies.inc"

namespace formula {

const Kernels kAvx2Kernels = kBodies;

}  // namespace formula
