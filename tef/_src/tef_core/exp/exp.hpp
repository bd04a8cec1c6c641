// What the kernels of e^x of both precisions do about rare arguments. D has its kRareFrom, its kLowest, and finish_large for
// rare lanes that are positive or NaN.
#pragma once
#include "frame/kernel.hpp"

ORX_ISA_BEGIN(orx::tef)

template <class D, class T>
struct Exp : Kernel<T(T)> {
  template <class X>
  static auto rare(X x) {
    return not_below(magnitude(x), D::kRareFrom);
  }
  // What is left is to be reported: overflow, and results that are denormal or 0.
  template <class X, class Left>
  static void finish(X x, Left& left) {
    left.finish(less(x, D::kLowest), X{});
    D::finish_large(x, left);
  }
};

ORX_ISA_END
