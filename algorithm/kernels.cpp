#include "algorithm/kernels.h"

namespace formula {

#if defined(__x86_64__)
// VBMI2 is not used, but what has AVX-512 without it lowers its clock for it.
const Kernels* const kKernels = __builtin_cpu_supports("avx512vbmi2") ? &kAvx512Kernels
                                : __builtin_cpu_supports("avx2")      ? &kAvx2Kernels
                                                                      : &kBaseKernels;
#else
const Kernels* const kKernels = &kBaseKernels;
#endif

}  // namespace formula
