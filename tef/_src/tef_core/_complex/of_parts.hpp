// Functions of a complex number that are those of two real ones: the modulus is Hypot(re, im), the argument is
// Atan2(im, re). `Real` is the kernel of two arguments.
#pragma once
#include "frame/kernel.hpp"

ORX_ISA_BEGIN(orx::tef)

template <class Real, bool imaginary_first>
struct OfParts : Kernel<typename Real::Real(Complex<typename Real::Real>)> {
  template <class X>
  static auto rare(Complex<X> z) {
    return Real::rare(first(z), second(z));
  }
  template <class X>
  static X eval(Complex<X> z) {
    return Real::eval(first(z), second(z));
  }
  template <class X, class Left>
  static void finish(Complex<X> z, Left& left) {
    Real::finish(first(z), second(z), left);
  }

 private:
  template <class X>
  static X first(Complex<X> z) {
    return imaginary_first ? z.im : z.re;
  }
  template <class X>
  static X second(Complex<X> z) {
    return imaginary_first ? z.re : z.im;
  }
};

ORX_ISA_END
