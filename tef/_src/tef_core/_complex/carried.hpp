// Formulas that serve both precisions: those of singles go in doubles, those of doubles in numbers in two parts. A formula's
// struct has rare(z), as kernels do, and of(z), whose parts are numbers of its kind.
#pragma once
#include "_complex/elementwise.hpp"
#include "_complex/in_two.hpp"
#include "_complex/vectors.hpp"

ORX_ISA_BEGIN(orx::tef)

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
  template <class Function, int n>
  static Complex<Vec<float, n>> eval(Complex<Vec<float, n>> z) {
    return narrow(Function::of(widen(z)));
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
  template <class Function, int n>
  static Complex<Vec<double, n>> eval(Complex<Vec<double, n>> z) {
    const auto y = Function::of(z);
    return {rounded_sum(y.re), rounded_sum(y.im)};
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
    return Carried::template eval<Function>(z);
  }
};
template <OfOneNumber scalar, class Function>
using InSingles = InVectors<ComplexOfOne<float, scalar>, InCarried<InOne, Function>>;
template <OfOneNumber scalar, class Function>
using InDoubles = InVectors<ComplexOfOne<double, scalar>, InCarried<InTwo, Function>>;

ORX_ISA_END
