// The targets under libFuzzer. FUZZ_TARGET names one; FUZZ_CALLS a file for how often each
// instruction was executed.

#include <cstdlib>

#include "tests/fuzz/targets.h"

namespace {

const fuzz::Target* target = nullptr;

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* /*count*/, char*** /*words*/) {
  const char* const name = std::getenv("FUZZ_TARGET");
  for (const fuzz::Target& one : fuzz::kTargets) {
    if (name != nullptr && one.name == name) target = &one;
  }
  fuzz::Require(target != nullptr, "FUZZ_TARGET names no target");
  static const char* const calls = std::getenv("FUZZ_CALLS");
  fuzz::Instructions();  // made before what is registered here, so that it is there still
  if (calls != nullptr) std::atexit([] { fuzz::WriteCalls(calls); });
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  target->run(fuzz::Bytes({data, size}));
  return 0;
}
