// To nearest, ties away from zero.
#include <limits>

#include "frame/kernel.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

// Towards zero, after the largest number below a half has been added: where x is so large that the sum is rounded, its
// spacing is above that of the halves, and x is left or the next integer reached as it should be. Of integers, too, inexact may
// be raised.
template <class T>
struct RoundTiesAway : Kernel<T(T)> {
  template <class X>
  static X eval(X x) {
    return round<kToZero>(x + with_sign_of(constant<X>(kBelowHalf), x));
  }

 private:
  static constexpr Row<T> kBelowHalf = T(0.5) - std::numeric_limits<T>::epsilon() / 4;
};

using sRoundHA = RoundTiesAway<float>;
using dRoundHA = RoundTiesAway<double>;

}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(s, Round, G9HAynn, sRoundHA)
ORX_KERNEL(d, Round, G9HAynn, dRoundHA)
