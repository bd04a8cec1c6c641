// y[index[i]] = a[i].
#include "_packing/packing.hpp"

namespace orx::tef {
namespace {

template <class Int, class E>
void unpack(long long n, const E* a, const int* selection, E* y) {
  const Int* const index = selection_of<Int>(selection);
  for (ptrdiff_t i = 0; i < count<Int>(n); ++i) move(a[i], y[place(index[i])]);
}

}  // namespace
}  // namespace orx::tef

using namespace orx::tef;
ORX_PACKING_KERNELS(unpack_selected, UnpackV, unpack)
