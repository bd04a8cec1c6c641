// The elements of a, one after another, to where the mask is not 0; nothing else of y is written.
#include "_packing/packing.hpp"

namespace orx::tef {
namespace {

template <class Int, class E>
void unpack(long long n, const E* a, const int* selection, E* y) {
  for_each_selected(count<Int>(n), selection_of<Int>(selection),
                    [=](ptrdiff_t i, ptrdiff_t k) { move(a[k], y[i]); });
}

}  // namespace
}  // namespace orx::tef

using namespace orx::tef;
ORX_PACKING_KERNELS(unpack_selected, UnpackM, unpack)
