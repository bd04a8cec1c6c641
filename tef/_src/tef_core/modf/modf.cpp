// The integer part and the fraction, both with the sign of x. Both are exact.
#include "frame/kernel.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

template <class T>
struct Parts : Kernel<Two<T>(T)> {
  // The difference is taken only where there is one: infinity less infinity would be invalid, and its fraction is 0.
  template <class X>
  static Two<X> eval(X x) {
    const X whole = round<kToZero | kQuietly>(x);
    const auto fraction = not_equal(x, whole);
    return {whole, with_sign_of(keep(fraction, x) - keep(fraction, whole), x)};
  }
};

using sModfHA = Parts<float>;
using dModfHA = Parts<double>;

}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL_OF(two_results, s, Modf, G9HAynn, sModfHA)
ORX_KERNEL_OF(two_results, d, Modf, G9HAynn, dModfHA)
