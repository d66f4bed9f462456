#include "algorithm/kernels.h"

namespace formula {

#if defined(__x86_64__)
const Kernels* const kKernels = __builtin_cpu_supports("avx512vbmi2") ? &kAvx512Kernels
                                : __builtin_cpu_supports("avx2")      ? &kAvx2Kernels
                                                                      : &kBaseKernels;
#else
const Kernels* const kKernels = &kBaseKernels;
#endif

}  // namespace formula
