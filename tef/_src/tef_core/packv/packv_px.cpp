// y[i] = a[index[i]].
#include "_packing/packing.hpp"

namespace orx::tef {
namespace {

template <class Int, class E>
void pack(long long n, const E* a, const int* selection, E* y) {
  const Int* const index = selection_of<Int>(selection);
  for (ptrdiff_t i = 0; i < count<Int>(n); ++i) move(a[place(index[i])], y[i]);
}

}  // namespace
}  // namespace orx::tef

using namespace orx::tef;
ORX_PACKING_KERNELS(pack_selected, PackV, pack)
