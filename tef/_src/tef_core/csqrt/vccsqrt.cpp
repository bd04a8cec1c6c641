// The square root, c.
#include "csqrt/csqrt.hpp"
#include "hypot/vshypot.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

int _tef_csqrtf_scalar(const Complex<float>* a, Complex<float>* r) {
  by_extended<orx_tef_kernel_csqrt_scalar>(a, r);
  return StatusOk;
}

template <class T>
constexpr Row<T> kRootHalf = T(0.5);

// From the moduli of the number and of its parts.
template <class X>
inline RootParts<X> root_parts(X x, X y, X modulus) {
  using T = typename X::Element;
  const X t = square_root((x + modulus) * kRootHalf<T>);
  return {t, y / (t + t)};
}

// HA: in double.
struct cSqrtHA : Kernel<Complex<float>(Complex<float>)> {
  template <class X>
  static auto rare(Complex<X> z) {
    return bit_or(not_finite(z), is_zero(z));
  }
  template <class X>
  static Complex<X> eval(Complex<X> z) {
    const auto wide = widen(z);
    const auto x = magnitude(wide.re), y = magnitude(wide.im);
    return narrow(root_of(wide, root_parts(x, y, PlainHypot::root(x, y))));
  }
  template <class X, class Left>
  static void finish(Complex<X> z, Left& left) {
    finish_root_of_zero(z, left);
  }
  static int rare_lane(const Complex<float>* a, Complex<float>* r) { return _tef_csqrtf_scalar(a, r); }
};

// LA: in single, where squares are in range.
struct cSqrtLA : cSqrtHA {
  template <class X>
  static auto rare(Complex<X> z) {
    return sHypotLA::rare(z.re, z.im);
  }
  template <class X>
  static Complex<X> eval(Complex<X> z) {
    return root_of(z, root_parts(magnitude(z.re), magnitude(z.im), sHypotLA::eval(z.re, z.im)));
  }
  template <class X, class Left>
  static void finish(Complex<X> z, Left& left) {
    finish_root_of_zero(z, left);
    const X usual = bit_andnot(not_finite(z), left.lanes);
    left.finish(usual, [&](X which) {
      const X one = broadcast<X>(1);
      return cSqrtHA::eval(Complex<X>{select(which, z.re, one), select(which, z.im, one)});
    });
  }
};

}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(c, Sqrt, G9HAynn, cSqrtHA)
ORX_KERNEL(c, Sqrt, G9LAynn, cSqrtLA)
