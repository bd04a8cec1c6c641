// Floating-point exceptions on purpose, by operations that the compiler cannot carry out in advance.
#pragma once
#include <limits>

#include "frame/element.hpp"

ORX_ISA_BEGIN(orx::tef)

template <class T>
inline T raise_overflow() {
  return hidden(std::numeric_limits<T>::max()) * std::numeric_limits<T>::max();
}
template <class T>
inline T raise_underflow() {
  return hidden(std::numeric_limits<T>::min()) * std::numeric_limits<T>::min();
}
// A NaN.
template <class T>
inline T raise_invalid() {
  const T zero = hidden(T(0));
  return zero / zero;
}
// An infinity with the sign of `sign`.
template <class T>
inline T raise_divide_by_zero(T sign) {
  return sign / hidden(T(0));
}

// Finite arguments as results to which they are rounded: zero where denormals are flushed; else denormals raise
// underflow, as no operation has done it.
template <class T>
inline Vec<T, 1> exact_result(Vec<T, 1> x) {
  using X = Vec<T, 1>;
  const X size = magnitude(x);
  if (any(bit_and(less(X{}, size), less(size, broadcast<X>(std::numeric_limits<T>::min())))))
    hidden(raise_underflow<T>());
  return x + broadcast<X>(hidden(T(-0.0)));
}

// For functions whose result is x where x is tiny: raises underflow where x is denormal. The product with a number next
// to 1 is inexact, and denormal with x. x is finite and not among the largest. As a step of its own, or with the
// product's sign put to use: which is quicker depends on the kernel.
template <class T>
constexpr Row<T> kNextToOne = 1 + std::numeric_limits<T>::epsilon();
template <class T, int n>
inline void raise_underflow_of_denormals(Vec<T, n> x) {
  const Vec<T, n> product = x * kNextToOne<T>;
  for (int i = 0; i < n; ++i) asm volatile("" : : "x"(product.v[i]));
}
template <class T, int n>
inline Vec<T, n> with_sign_and_underflow_of(Vec<T, n> y, Vec<T, n> x) {
  return with_sign_of(y, x * kNextToOne<T>);
}

ORX_ISA_END
