// The modulus of a complex number, by the kernels of Hypot; here overflow is reported.
#include "_complex/of_parts.hpp"
#include "hypot/vdhypot.hpp"
#include "hypot/vshypot.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

template <class Real>
struct Modulus : OfParts<Real, false> {
  using T = typename Real::Real;
  template <class X>
  static X eval(Complex<X> z, X& rare) {
    const X r = Real::eval(z.re, z.im);
    rare = equal(r, kInfinity);
    return r;
  }
  template <class X, class Left>
  static void finish(Complex<X> z, Left& left) {
    RareLanes<X, X> quiet(left.lanes, left.y);
    Real::finish(z.re, z.im, quiet);
    const auto finite = bit_and(less(magnitude(z.re), kInfinity), less(magnitude(z.im), kInfinity));
    left.finish(bit_and(finite, equal(quiet.y, kInfinity)), quiet.y, StatusOverflow);
    left.finish(left.lanes, quiet.y);
  }

 private:
  static constexpr Row<T> kInfinity = std::numeric_limits<T>::infinity();
};

// EP, single: for parts whose squares are in range.
struct cAbsEP : Kernel<float(Complex<float>)> {
  template <class X>
  static X eval(Complex<X> z) {
    return PlainHypot::root(z.re, z.im);
  }
};

}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(c, Abs, G9HAynn, Modulus<sHypotHA>)
ORX_KERNEL(c, Abs, G9LAynn, Modulus<sHypotLA>)
ORX_KERNEL(c, Abs, G9EPnnn, cAbsEP)
ORX_KERNEL(z, Abs, G9HAynn, Modulus<dHypotHA>)
ORX_KERNEL(z, Abs, G9LAynn, Modulus<dHypotLA>)
ORX_KERNEL(z, Abs, G9EPnnn, Modulus<dHypotLA>)
