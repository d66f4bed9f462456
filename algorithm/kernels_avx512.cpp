// The kernels for AVX-512; compiled for it, run where the processor has it.

#include "algorithm/kernel_bodies.inc"

namespace formula {

const Kernels kAvx512Kernels = kBodies;

}  // namespace formula
