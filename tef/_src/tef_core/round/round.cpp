// To nearest, ties away from zero.
#include "frame/kernel.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

template <class T>
struct RoundTiesAway : Kernel<T(T)> {
  static constexpr T kSafe = 1;  // a number with a fraction would raise inexact
  // Ties that went down to the even neighbour go up after all. No difference is taken: of infinities it would be
  // invalid, and of a denormal number and 0 denormal.
  template <class X>
  static X eval(X x) {
    const X size = magnitude(x), even = round<kToNearest>(size);
    const auto went_down = less(even, size);
    const auto tie = equal(even + keep(went_down, constant<X>(kHalf)), size);
    return with_sign_of(even + keep(bit_and(went_down, tie), constant<X>(kOne)), x);
  }

 private:
  static constexpr Row<T> kHalf = T(0.5), kOne = T(1);
};

using sRoundHA = RoundTiesAway<float>;
using dRoundHA = RoundTiesAway<double>;

}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(s, Round, G9HAynn, sRoundHA)
ORX_KERNEL(d, Round, G9HAynn, dRoundHA)
