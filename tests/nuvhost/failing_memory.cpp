// nuvhost, an allocation of which fails as the environment says: NUV_FAIL_AT, how many succeed
// before, and NUV_FAIL_ALL where all others fail, too. What failed is told by exit code 77 where
// nothing did.

#include <cstdlib>
#include <optional>

#include "tests/plugin/allocation_failure.h"

namespace {

struct Failing {
  Failing() {
    if (const char* at = std::getenv("NUV_FAIL_AT")) {
      failure.emplace(std::atol(at), std::getenv("NUV_FAIL_ALL") != nullptr ? PTRDIFF_MAX : 1);
    }
  }
  ~Failing() {
    if (failure && !failure->HasFailed()) std::_Exit(77);
  }
  std::optional<FailingAllocation> failure;
};

const Failing failing;

}  // namespace
