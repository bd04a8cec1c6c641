// e^x - 1 = (T s - 1) + T s (e^r - 1), x = n L + r, L = ln 2/2^b, T = 2^(j/2^b), s = 2^k, n = 2^b k + j.
//
// The sum T s - 1 is made first, so that nothing cancels for x near 0: there T s is 1, and what remains is
// the polynomial. D holds the constants and knows where its powers are.
#pragma once
#include "frame/kernel.hpp"

ORX_ISA_BEGIN(orx::tef)

// The constants of HA and LA, and those of EP: 1/L; a shifter, which leaves n and the exponent's bias in the low bits; L;
// (e^r - 1 - r) / r^2. L_hi is short, so that its product with an integer is exact. Where T s is down to `least` the
// result is -1 already, and products with less might underflow.
template <class T>
inline constexpr T kLeastExpm1 = sizeof(T) == 8 ? T(0x1p-200) : T(0x1p-50);
template <class T, class Word>
struct Expm1Constants {
  Row<T> inv_L, shifter, L_hi, L_lo, c[4];
  Row<Word> leading_bits;
  Row<T> minus_one = T(-1), least = kLeastExpm1<T>;
};
template <class T>
struct Expm1EpConstants {
  Row<T> inv_L, shifter, L, c[2];
  Row<T> minus_one = T(-1), least = kLeastExpm1<T>;
};

// The common reduction: N, n in its low bits; and x - n L before its low part is taken off.
template <class D, class X>
struct Expm1Reduction {
  X N, Nf, r1;
  explicit Expm1Reduction(X x)
      : N(multiply_add(x, D::kData.inv_L, D::kData.shifter)),
        Nf(N - D::kData.shifter),
        r1(subtract_product(x, Nf, D::kData.L_hi)) {}
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
    const X r_hi = bit_and(r, d.leading_bits);
    const X r_lo = ((n.r1 - r) - w) + (r - r_hi);
    const X r2 = r * r;
    const X c = r2 * polynomial(r, r2, d.c);
    X high, rest;
    D::powers(n.N, high, rest);
    const X Ts = max(high * scale_from<D::kB>(n.N), d.least);
    const auto u = two_sum(Ts, constant<X>(d.minus_one));
    const auto v = fast_two_sum(u.high, Ts * r_hi);
    const X tail = c + (r_lo + multiply_add(rest, r + c, rest));
    const X y = v.high + (v.low + multiply_add(Ts, tail, u.low));
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
    const X r = subtract_product(n.r1, n.Nf, d.L_lo);
    const X r2 = r * r;
    const X p = multiply_add(r2, polynomial(r, r2, d.c), r);
    X high, rest;
    D::powers(n.N, high, rest);
    const X Ts = max(high * scale_from<D::kB>(n.N), d.least);
    const X y = multiply_add(Ts, p + multiply_add(rest, p, rest), Ts + d.minus_one);
    return with_sign_of(y, x);
  }
};

// EP. The low part of n L is below the accuracy that is asked for.
template <class D>
struct Expm1EP : D {
  template <class X>
  static X eval(X x) {
    const auto& d = D::kEpData;
    const X N = multiply_add(x, d.inv_L, d.shifter);
    const X r = subtract_product(x, N - d.shifter, d.L);
    const X p = multiply_add(r * r, multiply_add(r, d.c[1], d.c[0]), r);
    const X Ts = max(D::power(N) * scale_from<D::kEpB>(N), d.least);
    return with_sign_of(multiply_add(Ts, p, Ts + d.minus_one), x);
  }
};

ORX_ISA_END
