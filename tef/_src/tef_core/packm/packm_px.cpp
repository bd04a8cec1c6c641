// The elements of a whose mask is not 0, one after another.
#include "_packing/packing.hpp"

namespace orx::tef {
namespace {

template <class Int, class E>
void pack(long long n, const E* a, const int* selection, E* y) {
  for_each_selected(count<Int>(n), selection_of<Int>(selection),
                    [=](ptrdiff_t i, ptrdiff_t k) { move(a[i], y[k]); });
}

}  // namespace
}  // namespace orx::tef

using namespace orx::tef;
ORX_PACKING_KERNELS(pack_selected, PackM, pack)
