// e^x - 1 = (T s - 1) + T s (e^r - 1), x = n L + r, L = ln 2/2^b, T = 2^(j/2^b), s = 2^k, n = 2^b k + j.
//
// The sum T s - 1 is made first, so that nothing cancels for x near 0: there T s is 1, and what remains is
// the polynomial. D holds the constants and knows where its powers are.
#pragma once
#include "frame/kernel.hpp"

ORX_ISA_BEGIN(orx::tef)

template <class X>
struct ExactSum {
  X sum, error;
};
// Knuth's sum with its rounding error, whichever term is larger.
template <class X>
inline ExactSum<X> two_sum(X a, X b) {
  const X s = a + b, t = s - a;
  return {s, (a - (s - t)) + (b - t)};
}
// Dekker's, for |a| >= |b| or a = 0.
template <class X>
inline ExactSum<X> fast_two_sum(X a, X b) {
  const X s = a + b;
  return {s, b - (s - a)};
}

// The common reduction: N, n in its low bits; and x - n L before its low part is taken off.
template <class D, class X>
struct Expm1Reduction {
  X N, Nf, r1;
  explicit Expm1Reduction(X x)
      : N(x * D::kData.inv_L + D::kData.shifter), Nf(N - D::kData.shifter), r1(x - Nf * D::kData.L_hi) {}
};

// HA. The powers' leading part, `high`, and r's, are short, so that their product is exact; the two sums that
// carry the result keep their rounding errors. `rest` is what `high` lacks, as a fraction of it.
template <class D>
struct Expm1HA : D {
  template <class X>
  static X eval(X x) {
    const auto& d = D::kData;
    const Expm1Reduction<D, X> n(x);
    const X w = n.Nf * d.L_lo;
    const X r = n.r1 - w;
    const X r_hi = bit_and(r, constant<X>(d.leading_bits));
    const X r_lo = ((n.r1 - r) - w) + (r - r_hi);
    const X r2 = r * r;
    const X c = r2 * polynomial(r, r2, d.c);
    X high, rest;
    D::powers(n.N, high, rest);
    const X Ts = high * scale_from<D::kB>(n.N);
    const auto u = two_sum(Ts, constant<X>(d.minus_one));
    const auto v = fast_two_sum(u.sum, Ts * r_hi);
    const X y = v.sum + (v.error + (u.error + Ts * (c + (r_lo + (rest + rest * (r + c))))));
    return with_sign_of(y, x);
  }
};

// LA. The same without the rounding errors.
template <class D>
struct Expm1LA : D {
  template <class X>
  static X eval(X x) {
    const auto& d = D::kData;
    const Expm1Reduction<D, X> n(x);
    const X r = n.r1 - n.Nf * d.L_lo;
    const X r2 = r * r;
    const X p = r + r2 * polynomial(r, r2, d.c);
    X high, rest;
    D::powers(n.N, high, rest);
    const X Ts = high * scale_from<D::kB>(n.N);
    const X y = (Ts + d.minus_one) + Ts * (p + (rest + rest * p));
    return with_sign_of(y, x);
  }
};

// EP. The low part of n L is below the accuracy that is asked for.
template <class D>
struct Expm1EP : D {
  template <class X>
  static X eval(X x) {
    const auto& d = D::kEpData;
    const X N = x * d.inv_L + d.shifter;
    const X r = x - (N - d.shifter) * d.L;
    const X p = r + r * r * (d.c[0] + r * d.c[1]);
    const X Ts = D::power(N) * scale_from<D::kEpB>(N);
    return with_sign_of((Ts + d.minus_one) + Ts * p, x);
  }
};

ORX_ISA_END
