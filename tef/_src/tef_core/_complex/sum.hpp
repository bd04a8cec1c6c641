// Sums and differences of complex numbers: part by part, exactly rounded.
#pragma once
#include <limits>

#include "frame/kernel.hpp"

ORX_ISA_BEGIN(orx::tef)

struct Plus {
  template <class X>
  static X of(X x, X y) {
    return x + y;
  }
};
struct Minus {
  template <class X>
  static X of(X x, X y) {
    return x - y;
  }
};

template <class T, class Operation>
struct QuietComplexSum : Kernel<Pair<T>(Pair<T>, Pair<T>)> {
  template <class X>
  static X eval(X x, X y) {
    return Operation::of(x, y);
  }
};

// An infinite part of finite ones is reported, unless any part of the element's arguments is infinite.
template <class T, class Operation>
struct ComplexSum : QuietComplexSum<T, Operation> {
  template <class X>
  static X eval(X x, X y, X& rare) {
    const X sum = Operation::of(x, y);
    rare = infinite(sum);
    return sum;
  }
  template <class X, class Left>
  static void finish(X x, X y, Left& left) {
    left.finish(bit_or(infinite(x), infinite(y)), left.y);
  }
  static int rare_lane(const Complex<T>* a, const Complex<T>* b, Complex<T>* r) {
    *r = {Operation::of(hidden(a->re), b->re), Operation::of(hidden(a->im), b->im)};
    for (T part : {a->re, a->im, b->re, b->im})
      if (part == kInfinity || part == -kInfinity) return StatusOk;
    return StatusOverflow;
  }

 private:
  static constexpr T kInfinity = std::numeric_limits<T>::infinity();
  static constexpr Row<T> kInfinities = kInfinity;
  template <class X>
  static auto infinite(X x) {
    return equal(magnitude(x), kInfinities);
  }
};

ORX_ISA_END

// The kernels of both precisions: ORX_SUMS(Add, Plus).
#define ORX_SUMS(Fn, Operation)        \
  ORX_SUMS_OF(c, float, Fn, Operation) \
  ORX_SUMS_OF(z, double, Fn, Operation)
#define ORX_SUMS_OF(t, T, Fn, Operation)                               \
  using t##Fn##HA = orx::tef::ComplexSum<T, orx::tef::Operation>;      \
  using t##Fn##EP = orx::tef::QuietComplexSum<T, orx::tef::Operation>; \
  ORX_KERNEL_OF(binary, t, Fn, G9HAynn, t##Fn##HA)                     \
  ORX_KERNEL_OF(binary, t, Fn, G9EPnnn, t##Fn##EP)
