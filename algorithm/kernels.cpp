#include "algorithm/kernels.h"

namespace formula {

const Kernels* const kKernels = __builtin_cpu_supports("avx2") ? &kAvx2Kernels : &kSse2Kernels;

}  // namespace formula
