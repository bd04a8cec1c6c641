// tan x, single: x = n pi/2 + r, |r| <= pi/4, a polynomial for tan r, and one division, of -1 where n is odd. HA computes in
// double. Large arguments go by the digits of 1/(2 pi), in double.
#pragma once
#include "tan/vdtan.hpp"

ORX_ISA_BEGIN(orx::tef)

struct sTanHaData {
  Row<double> inv = 0x1.45f306dc9c883p-1;  // 2/pi
  Row<double> shifter = 0x1.8p+52;
  Row<double> p1 = 0x1.921fb544p+0, p2 = 0x1.0b4611a626331p-34;  // pi/2
  Row<double> one = 1.0, minus_one = -1.0;
  // (tan r - r)/r^3, |r| <= pi/4, to 2^-29.5 of tan r
  Row<double> c[7] = {0x1.5555605f7ebc4p-2, 0x1.110d8c7200a7bp-3,  0x1.badc1c6d4f94ap-5, 0x1.5cad52b19d94ep-6,
                      0x1.631f6b6b65b8cp-7, 0x1.6e70379b40bffp-14, 0x1.1ee0127a5d5e1p-8};
};
inline constexpr sTanHaData vstan_data_ha{};

struct sTanData {
  Row<float> inv = 0x1.45f306p-1f;  // 2/pi
  Row<float> shifter = 0x1.8p+23f, half = 0.5f;
  // pi/2; the products of all parts but the last with n below 2^13 are exact
  Row<float> p1 = 0x1.92p+0f, p2 = 0x1.fb4p-12f, p3 = 0x1.444p-24f, p4 = 0x1.68c234p-39f;
  Row<float> ep_p3 = 0x1.4442d2p-24f;
  Row<float> large = 0x1p-30f, one = 1.0f, minus_one = -1.0f;
  // (tan r - r)/r^3, |r| <= pi/4: to 2^-25.7 of tan r and to 2^-14.2 of tan r
  Row<float> la[6] = {0x1.5554dep-2f, 0x1.112ddep-3f, 0x1.b5878ep-5f,
                      0x1.905d04p-6f, 0x1.97c16ep-9f, 0x1.33b448p-7f};
  Row<float> ep[3] = {0x1.57008p-2f, 0x1.e39148p-4f, 0x1.797f96p-4f};
};
inline constexpr sTanData vstan_data{};

struct sTanKernel : Kernel<float(float)> {
  template <class X>
  static auto rare(X x) {
    return not_below(magnitude(x), kFrom);
  }
  template <class X, class Left>
  static void finish(X x, Left& left) {
    left.finish(at_most(magnitude(x), kLargest), [&](X which) {
      const SineAndCosine<decltype(widen(x))> f(reduce_by_digits(widen(keep(which, x))));
      return narrow(accurate_quotient(f.sine, f.cosine));
    });
    left.finish(unordered(x, x), [&](X nan) { return keep(nan, x) + keep(nan, x); });
    left.finish(
        left.lanes, [&](X infinite) { return keep(infinite, x) * X{}; }, StatusDomain);
  }

 private:
  static constexpr Row<float> kFrom = 10000.0f, kLargest = FLT_MAX;
};

// tan(n pi/2 + r) from tan r.
template <class X, class M, class D>
inline X in_quadrant(M odd, X tangent, const D& d) {
  return select(odd, constant<X>(d.minus_one), tangent) / select(odd, tangent, constant<X>(d.one));
}

struct sTanHA : sTanKernel {
  template <class X>
  static X eval(X x) {
    return narrow(tangent(widen(x)));
  }

 private:
  template <class X>
  static X tangent(X x) {
    const auto& d = vstan_data_ha;
    const X N = x * d.inv + d.shifter, n = N - d.shifter;
    const X r = (x - n * d.p1) - n * d.p2, square = r * r;
    const X y = multiply_add(r * square, polynomial(square, square * square, d.c), r);
    return in_quadrant(spread_signs(reals<X>(shift_left<63>(bits(N)))), y, d);
  }
};

template <bool ep>
struct sTanPolynomial : sTanKernel {
  template <class X>
  static X eval(X x) {
    const auto& d = vstan_data;
    const X n = (x * d.inv + d.shifter) - d.shifter;
    const X rest = (x - n * d.p1) - n * d.p2;
    const X r = rest - n * (ep ? d.ep_p3 : d.p3);
    // -r without what is too small to be squared: its +0 keeps the sign of zero in the difference.
    const X minus_r = d.large - (r + d.large), square = minus_r * minus_r;
    X p;
    if constexpr (ep)
      p = horner(square, d.ep);
    else
      p = polynomial(square, square * square, d.la);
    const X less_than_r = (minus_r * square) * p;
    const X tangent = r - (ep ? less_than_r : less_than_r + n * d.p4);
    const X halves = n * d.half;
    const auto odd = not_equal(round<kToNearest>(halves), halves);
    return in_quadrant(odd, tangent, d);
  }
};

ORX_ISA_END
