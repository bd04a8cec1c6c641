// y[i * stride] = a[i].
#include "_packing/packing.hpp"

namespace orx::tef {
namespace {

template <class Int, class E>
void unpack(long long n, const E* a, long long stride, E* y) {
  for (ptrdiff_t i = 0; i < count<Int>(n); ++i) move(a[i], y[offset<Int>(i, stride)]);
}

}  // namespace
}  // namespace orx::tef

using namespace orx::tef;
ORX_PACKING_KERNELS(unpack_strided, UnpackI, unpack)
