// y[i] = a[i * stride].
#include "_packing/packing.hpp"

namespace orx::tef {
namespace {

template <class Int, class E>
void pack(long long n, const E* a, long long stride, E* y) {
  for (ptrdiff_t i = 0; i < count<Int>(n); ++i) move(a[offset<Int>(i, stride)], y[i]);
}

}  // namespace
}  // namespace orx::tef

using namespace orx::tef;
ORX_PACKING_KERNELS(pack_strided, PackI, pack)
