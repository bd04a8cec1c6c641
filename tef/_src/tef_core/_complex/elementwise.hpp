// Kernels of complex functions that go element by element through the extended type: all of a function's classes.
#pragma once
#include "_heap/complex/complex.hpp"
#include "frame/kernel.hpp"

ORX_ISA_BEGIN(orx::tef)

template <class T>
Extended widened(Complex<T> z) {
  return {z.re, z.im};
}

// A denormal result raises underflow, also an exact one.
template <class T>
T narrowed(long double x) {
  const T y = static_cast<T>(x);
  constexpr T smallest = std::numeric_limits<T>::min();
  if (__builtin_expect(__builtin_isless(__builtin_fabs(y), smallest) && y != 0, 0)) {
    const volatile T underflown = static_cast<T>(unfolded(smallest) * smallest);
    static_cast<void>(underflown);
  }
  return y;
}
template <class T>
Complex<T> narrowed(Extended z) {
  return {narrowed<T>(z.re), narrowed<T>(z.im)};
}

template <class T, auto f>
struct ComplexOfOne : ElementKernel<Complex<T>(Complex<T>)> {
  static constexpr Control kControl = Control::kExtended;
  static int rare_lane(const Complex<T>* a, Complex<T>* r) {
    *r = narrowed<T>(f(widened(*a)));
    return StatusOk;
  }
};

// Second is the second argument in the signature.
template <class T, auto f, class Second = Complex<T>>
struct ComplexOfTwo : ElementKernel<Complex<T>(Complex<T>, Second)> {
  static constexpr Control kControl = Control::kExtended;
  static int rare_lane(const Complex<T>* a, const Complex<T>* b, Complex<T>* r) {
    *r = narrowed<T>(f(widened(*a), widened(*b)));
    return StatusOk;
  }
};

ORX_ISA_END

// Both precisions of a function of one argument.
#define ORX_COMPLEX_ELEMENTWISE(Fn, f)                       \
  using c##Fn = orx::tef::ComplexOfOne<float, orx::tef::f>;  \
  using z##Fn = orx::tef::ComplexOfOne<double, orx::tef::f>; \
  ORX_KERNEL(c, Fn, PXHAynn, c##Fn)                          \
  ORX_KERNEL(z, Fn, PXHAynn, z##Fn)
