// e^x - 1 = (T s - 1) + T s (e^r - 1), x = n L + r, L = ln 2/2^b, T = 2^(j/2^b), s = 2^k, n = 2^b k + j.
//
// The sum T s - 1 is made first, so that nothing cancels for x near 0: there T s is 1, and what remains is
// the polynomial. D holds the constants and knows where its powers are.
#pragma once
#include "frame/exceptions.hpp"
#include "frame/kernel.hpp"

ORX_ISA_BEGIN(orx::tef)

// The constants of HA and LA, and those of EP: 1/L and a shifter, which leaves n in the low bits, in a unit in which
// denormal arguments over L are normal; L; (e^r - 1 - r) / r^2. L_hi is short, so that its product with an integer is
// exact. Where T s is down to `least` the result is -1 already, and products with less might underflow.
template <class T>
inline constexpr T kLeastExpm1 = sizeof(T) == 8 ? T(0x1p-200) : T(0x1p-50);
template <class T, class Word>
struct Expm1Constants {
  Row<T> inv_L, shifter, L_hi, L_lo, c[4];
  Row<Word> leading_bits;
  Row<T> one = T(1), minus_one = T(-1), least = kLeastExpm1<T>;
};
template <class T>
struct Expm1EpConstants {
  Row<T> inv_L, shifter, L, c[2];
  Row<T> one = T(1), least = kLeastExpm1<T>;
};

// What kernels of both precisions do about rare arguments: D's kTiny, below which x is the result, and its kRareFrom.
template <class D, class T>
struct Expm1 : Kernel<T(T)> {
  template <class X>
  static auto too_large(X size) {
    return not_below(size, D::kRareFrom);
  }
  template <class X>
  static auto rare(X x) {
    const X size = magnitude(x);
    return bit_or(too_large(size), less(size, D::kTiny));
  }
  // Far below 0 the result is -1, and no underflow is told. The others are so large that e^x - 1 is e^x.
  template <class X, class Left>
  static void finish(X x, Left& left) {
    left.finish(less(magnitude(x), D::kTiny), [&](X which) {
      const X tiny = bit_and(which, x);
      raise_underflow_of_denormals(tiny);
      return tiny + broadcast<X>(hidden(T(-0.0)));  // flushed where the mode says so
    });
    left.finish(less(x, X{}), constant<X>(D::kData.minus_one));
    D::finish_large(x, left);
  }
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
    const X Ts = max(high * D::scale(n.N), d.least);
    const auto u = two_sum(Ts, constant<X>(d.minus_one));
    const auto v = fast_two_sum(u.high, Ts * r_hi);
    const X tail = c + (r_lo + multiply_add(rest, r + c, rest));
    const X y = v.high + (v.low + multiply_add(Ts, tail, u.low));
    return with_sign_of(y, x);
  }
};

// LA. The same without the rounding errors, and with powers in full length.
template <class D>
struct Expm1LA : D {
  template <class X>
  static X eval(X x) {
    const auto& d = D::kData;
    const Expm1Reduction<D, X> n(x);
    const X r = subtract_product(n.r1, n.Nf, d.L_lo);
    const X r2 = r * r;
    const X p = multiply_add(r2, polynomial(r, r2, d.c), r);
    X T, rest;
    D::rounded_powers(n.N, T, rest);
    const X Ts = max(T * D::scale(n.N), d.least);
    return multiply_subtract(Ts, p + rest, d.one - Ts);  // -0 for -0
  }
};

// EP. The low part of n L is below the accuracy that is asked for, so that tiny arguments need no path of their own: what
// is added to r keeps the polynomial's products from underflow, and the factor next to 1 tells the one of the result.
template <class D>
struct Expm1EP : D {
  template <class X>
  static auto rare(X x) {
    return D::too_large(magnitude(x));
  }
  template <class X>
  static X eval(X x) {
    const auto& d = D::kEpData;
    const X N = multiply_add(x, d.inv_L, d.shifter);
    const X r = subtract_product(x, N - d.shifter, d.L), s = r + d.least;
    const X q = multiply_add(s * s, d.c[1], multiply_add(s, d.c[0], kNextToOne<typename X::Element>)),
            p = r * q;
    const X Ts = max(D::power(N) * D::scale(N), d.least);
    return multiply_subtract(Ts, p, d.one - Ts);
  }
};

ORX_ISA_END
