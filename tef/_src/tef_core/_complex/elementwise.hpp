// Kernels of complex functions that go element by element through the extended type: all of a function's classes. Where
// usual elements can be had from vectors to the same bounds, these take them.
#pragma once
#include <limits>

#include "frame/kernel.hpp"
#include "orx/tef_scalar.h"

ORX_ISA_BEGIN(orx::tef)

// What the compiler can neither compute with in advance nor move to another unit.
inline long double in_x87(long double x) {
  asm volatile("" : "+t"(x));
  return x;
}

// A number of the scalar routines as an element's part, rounded as the x87 control word says. A denormal result raises
// underflow, also an exact one.
template <class T>
inline T narrowed(double x) {
  T y;
  if constexpr (sizeof(T) == sizeof x)
    y = x;
  else
    y = static_cast<T>(in_x87(static_cast<long double>(x)));
  constexpr T smallest = std::numeric_limits<T>::min();
  if (__builtin_expect(__builtin_isless(__builtin_fabs(y), smallest) && y != 0, 0)) {
    const volatile T underflown = static_cast<T>(in_x87(smallest) * smallest);
    static_cast<void>(underflown);
  }
  return y;
}

using OfOneNumber = void(double re, double im, double result[2]);
using OfTwoNumbers = void(double a_re, double a_im, double b_re, double b_im, double result[2]);

template <class T, OfOneNumber f>
struct ComplexOfOne : ElementKernel<Complex<T>(Complex<T>)> {
  static constexpr Control kControl = Control::kExtended;
  static int rare_lane(const Complex<T>* a, Complex<T>* r) {
    double y[2];
    f(static_cast<double>(a->re), static_cast<double>(a->im), y);
    *r = {narrowed<T>(y[0]), narrowed<T>(y[1])};
    return StatusOk;
  }
};

// Second is the second argument in the signature.
template <class T, OfTwoNumbers f, class Second = Complex<T>>
struct ComplexOfTwo : ElementKernel<Complex<T>(Complex<T>, Second)> {
  static constexpr Control kControl = Control::kExtended;
  static int rare_lane(const Complex<T>* a, const Complex<T>* b, Complex<T>* r) {
    double y[2];
    f(static_cast<double>(a->re), static_cast<double>(a->im), static_cast<double>(b->re),
      static_cast<double>(b->im), y);
    *r = {narrowed<T>(y[0]), narrowed<T>(y[1])};
    return StatusOk;
  }
};

// ---- with vectors
// Usual has `rare` and `eval`, as kernels have them; Element is the kernel of the others.
template <class Element, class Usual>
struct InVectors : Element, Usual {
  using Element::rare_lane;
  using Usual::eval;
  using Usual::rare;
};

// The control word of vectors is not theirs to change, for these kernels keep to that of the x87 unit: where it is not as at
// a thread's start (round to nearest, nothing flushed, nothing trapped) all elements go one by one.
template <class Element, class Usual, class Function, class... P>
class ElementLoop<InVectors<Element, Usual>, Function, P...> {
 public:
  [[gnu::always_inline]] static void run(int count, P... p) {
    constexpr uint32_t exception_flags = 0x3F, at_start = 0x1F80;
    if (__builtin_expect((_mm_getcsr() & ~exception_flags) == at_start, 1))
      Loop<InVectors<Element, Usual>, Function, P...>::run(count, p...);
    else
      ElementLoop<Element, Function, P...>::run(count, p...);
  }
};

ORX_ISA_END
