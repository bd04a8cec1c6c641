// Formulas that serve both precisions: those of singles go in doubles, those of doubles in numbers in two parts. A formula's
// struct has rare(z), as kernels do, and of(z), whose parts are numbers of its kind.
#pragma once
#include "_complex/elementwise.hpp"
#include "_complex/in_two.hpp"
#include "_complex/vectors.hpp"

ORX_ISA_BEGIN(orx::tef)

// A denormal result raises underflow, also an exact one: its square does.
template <class T, int n>
inline Vec<T, n> with_underflow(Vec<T, n> y) {
  static constexpr Row<T> smallest = std::numeric_limits<T>::min();
  const Vec<T, n> denormal = keep(less(magnitude(y), smallest), y);
  return bit_or(y, denormal * denormal);
}

// How numbers are carried, and what is rounded in the end.
struct InOne {
  template <class X>
  static X exact(X a) {
    return a;
  }
  template <class X>
  static X sum(X a, X b) {
    return a + b;
  }
  template <class X>
  static X product(X a, X b) {
    return a * b;
  }
  template <class X>
  static X constant_of(const Row<double>& high, const Row<double>&) {
    return constant<X>(high);
  }
  // Arguments as they are carried, and what stands in doubles as it is stored.
  template <class Z>
  static auto widened(Z z) {
    return widen(z);
  }
  template <class X>
  static auto narrowed(X y) {
    return narrow(y);
  }
  template <class X>
  static auto narrowed(Complex<X> y) {
    const auto z = narrow(y);
    return complex_of(with_underflow(z.re), with_underflow(z.im));
  }
  template <class X>
  static X rounded(X a) {
    return a;
  }
};
struct InTwo {
  template <class X>
  static HighLow<X> exact(X a) {
    return {a, X{}};
  }
  template <class X>
  static HighLow<X> sum(X a, X b) {
    return two_sum(a, b);
  }
  template <class X>
  static HighLow<X> product(X a, X b) {
    return product_in_two(a, b);
  }
  template <class X>
  static HighLow<X> constant_of(const Row<double>& high, const Row<double>& low) {
    return {constant<X>(high), constant<X>(low)};
  }
  template <class Z>
  static Z widened(Z z) {
    return z;
  }
  template <class Y>
  static Y narrowed(Y y) {
    return y;
  }
  template <class X>
  static X rounded(HighLow<X> a) {
    return rounded_sum(a);
  }
};

// f(z) = g(iz)/i of an odd g, and f(z) = g(iz) of an even one, where g(conj z) = conj g(z).
template <class Function>
struct OddTurned {
  template <class X>
  static auto rare(Complex<X> z) {
    return Function::rare(Complex<X>{z.im, z.re});
  }
  template <class X>
  static auto of(Complex<X> z) {
    const auto y = Function::of(Complex<X>{z.im, z.re});
    return complex_of(y.im, y.re);
  }
};
template <class Function>
struct EvenTurned : OddTurned<Function> {
  template <class X>
  static auto of(Complex<X> z) {
    const auto y = Function::of(Complex<X>{z.im, z.re});
    return complex_of(y.re, opposite(y.im));
  }
};

template <class Function>
using NotTurned = Function;

// The kernels.
template <class Carried, class Function>
struct InCarried {
  template <class X>
  static auto rare(Complex<X> z) {
    return Function::rare(z);
  }
  template <class X>
  static Complex<X> eval(Complex<X> z) {
    const auto y = Function::of(Carried::widened(z));
    return Carried::narrowed(complex_of(Carried::rounded(y.re), Carried::rounded(y.im)));
  }
};
template <OfOneNumber scalar, class Function>
using InSingles = InVectors<ComplexOfOne<float, scalar>, InCarried<InOne, Function>>;
template <OfOneNumber scalar, class Function>
using InDoubles = InVectors<ComplexOfOne<double, scalar>, InCarried<InTwo, Function>>;

ORX_ISA_END
