// atan x, as the angle of the point (1, |x|).
#pragma once
#include "atan/octants.hpp"
#include "frame/exceptions.hpp"

ORX_ISA_BEGIN(orx::tef)

template <class T, class Method>
struct ArcTangent : Kernel<T(T)> {
  template <class X>
  static auto rare(X x) {
    return outside(magnitude(x), kTiny, kHuge);
  }
  template <class X>
  static X eval(X x) {
    return with_sign_of(Method::of(magnitude(x), constant<X>(kOne)), x);
  }
  // Where x is tiny, x itself; where it is huge, pi/2.
  template <class X, class Left>
  static void finish(X x, Left& left) {
    left.finish(less(magnitude(x), kTiny), [&](X tiny) { return exact_result(keep(tiny, x)); });
    left.finish(unordered(x, x), [&](X nan) { return keep(nan, x) + keep(nan, x); });
    left.finish(left.lanes, with_sign_of(constant<X>(kQuarter), x));
  }

 private:
  static constexpr Row<T> kTiny = T(sizeof(T) == 8 ? 0x1p-120 : 0x1p-100), kHuge = T(0x1p+60), kOne = T(1.0),
                          kQuarter = T(0x1.921fb54442d18p+0);
};

ORX_ISA_END
