#include <hwy/contrib/sort/traits-inl.h>
#include <hwy/contrib/sort/vqsort-inl.h>
#include <hwy/highway.h>

#include "bench/rows.h"

namespace bench {

void SortByAvx2(double* numbers, std::size_t size) {
  namespace hn = hwy::HWY_NAMESPACE;
  using Order = hn::detail::TraitsLane<hn::detail::OrderAscending<double>>;
  hn::Sort(hn::SortTag<double>(), hn::detail::SharedTraits<Order>(), numbers, size,
           static_cast<double*>(nullptr));
}

}  // namespace bench
