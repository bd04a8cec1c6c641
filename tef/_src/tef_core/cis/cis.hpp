// cos x + i sin x, by the kernels of SinCos.
#pragma once
#include "sin/vdsincos.hpp"

ORX_ISA_BEGIN(orx::tef)

template <class T, class SineAndCosine, bool reports>
struct Cis : Kernel<Complex<T>(T)> {
  template <class X>
  static auto rare(X x) {
    return SineAndCosine::rare(x);
  }
  template <class X>
  static Complex<X> eval(X x) {
    return exchanged(SineAndCosine::eval(x));
  }
  template <class X>
  static auto far(X x) {
    return SineAndCosine::far(x);
  }
  template <class X>
  static Complex<X> eval_far(X x) {
    return exchanged(SineAndCosine::eval_far(x));
  }
  template <class X, class Left>
  static void finish(X x, Left& left) {
    RareLanes<X, Two<X>> parts(left.lanes, {left.y.im, left.y.re});
    SineAndCosine::finish(x, parts);
    left.finish(bit_andnot(parts.lanes, left.lanes), exchanged(parts.y));
  }
  // What is not finite.
  static int rare_lane(const T* a, Complex<T>* r) {
    const int status = sine_of_special(a, &r->re);
    r->im = r->re;
    return reports ? status : StatusOk;
  }

 private:
  template <class X>
  static Complex<X> exchanged(const Two<X>& y) {
    return {y.second, y.first};
  }
};

ORX_ISA_END
