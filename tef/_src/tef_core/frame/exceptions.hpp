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

ORX_ISA_END
