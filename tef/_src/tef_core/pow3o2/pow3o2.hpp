// x^(3/2) = x s with s the processor's root of x.
#pragma once
#include "frame/kernel.hpp"

ORX_ISA_BEGIN(orx::tef)

// Two roundings.
struct RoundedTwice {
  template <class X>
  static X power(X x) {
    return x * square_root(x);
  }
};

// Method::power(x) is the power of all numbers that are not negative.
template <class T, class Method>
struct Pow3o2 : Kernel<T(T)> {
  template <class X>
  static auto rare(X x) {
    return less(x, X{});
  }
  template <class X>
  static X eval(X x) {
    return Method::power(x);
  }
  // Negative numbers: NaN, and invalid, by the root.
  template <class X, class Left>
  static void finish(X x, Left& left) {
    left.finish(left.lanes, square_root(x), StatusDomain);
  }
};

ORX_ISA_END
