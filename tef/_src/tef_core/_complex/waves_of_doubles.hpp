// Sine and cosine, circular and hyperbolic, of doubles in two parts: what complex functions of doubles are made of. They are
// right to 2^-61, and what is made of them to half a unit and a little more.
#pragma once
#include "_complex/elementwise.hpp"
#include "_complex/exact.hpp"
#include "_complex/vectors.hpp"
#include "_complex/waves_of_singles.hpp"
#include "tan/vdtan.hpp"

ORX_ISA_BEGIN(orx::tef)

struct WavesOfDoublesData {
  Row<double> sixth = 1 / 6.0, one_by_120 = 1 / 120.0;  // sinh r, |r| <= ln2/256, to 2^-63
  Row<double> one = 1.0;
  Row<double> least = 0x1p-250, angles_from = 0x1.fff8p+15;
};
inline constexpr WavesOfDoublesData kWavesOfDoubles{};

// The high part of a sum in two, split for products, and its low one.
template <class X>
struct SplitSum {
  Factor<X> high;
  X low;

  explicit SplitSum(HighLow<X> s) : SplitSum(s.high + s.low, s) {}

 private:
  SplitSum(X sum, HighLow<X> s) : high(sum), low(s.low - (sum - s.high)) {}
};
template <class X>
inline HighLow<X> product_in_two(const SplitSum<X>& a, const SplitSum<X>& b) {
  const X p = a.high.value * b.high.value;
  return {p, lost_in_product(a.high, b.high, p) + (a.high.value * b.low + a.low * b.high.value)};
}
// A sum in two as a number, with its sign also where it is 0.
template <class X>
inline X rounded_sum(HighLow<X> s) {
  return with_sign_of(s.high + s.low, s.high);
}

// sinh x and cosh x of |x| <= 700, 0 or not so small that a cube underflows; signs are those of x.
template <class X>
struct SinhCoshInTwo {
  HighLow<X> sinh, cosh;

  explicit SinhCoshInTwo(X x) {
    const auto& d = vdsinh_data;
    const auto& w = kWavesOfDoubles;
    // 1. |x| = n ln2/128 + r + r_lo.
    const X size = magnitude(x);
    const X N = multiply_add(size, d.inv_L, d.shifter), n = N - d.shifter;
    const X first = subtract_product(size, n, d.L_hi), second = n * d.L_lo;
    const X r = first - second, r_lo = (first - r) - second;

    // 2. The halves of e^|x| and e^-|x| at n, their sum and difference, and what all these lack.
    const SpilledWords<X> words(N);
    X row[4];
    gather_rows(
        _tefdSinhHATab[0], [&](int lane) { return words.low(lane) & 127; }, row);
    const X power = scale_from<7>(N);
    const X a = row[0] * power, b = row[1] * bit_xor(power, d.exponent);
    const X a_lo = a * row[2], b_lo = b * row[3];
    const auto C = fast_two_sum(a, b), S = fast_two_sum(a, opposite(b));
    const X C_lo = C.low + (a_lo + b_lo), S_lo = S.low + (a_lo - b_lo);

    // 3. sinh |x| = S cosh r + C sinh r and cosh x = C cosh r + S sinh r, where the large parts of the former are S and C r:
    // it has to be right where x is small, too.
    const X r2 = r * r, c = cosh_rest(r2), s = r_lo + (r * r2) * multiply_add(r2, w.one_by_120, w.sixth);
    const X Cr = C.high * r;
    const auto sum = fast_two_sum(S.high, Cr);
    const X lost = lost_in_product(Factor<X>(C.high), Factor<X>(r), Cr);
    const X sign = bit_and(x, broadcast_bits<X>(kSignBit<double>));
    sinh = {bit_xor(sum.high, sign),
            bit_xor(sum.low + (lost + (S_lo + C_lo * r + (S.high * c + C.high * s))), sign)};
    cosh = fast_two_sum(C.high, S.high * r);
    cosh.low = cosh.low + (C_lo + S_lo * r + (C.high * c + S.high * s));
  }
};

// Of x + iy.
template <class X>
struct WavesInTwo {
  SplitSum<X> sinh, cosh, sin, cos;

  WavesInTwo(X x, X y) : WavesInTwo(SinhCoshInTwo<X>(x), reduce_by_table_steps(magnitude(y)), y) {}

 private:
  WavesInTwo(const SinhCoshInTwo<X>& of_x, const Turn<X>& turn, X y)
      : WavesInTwo(of_x, turn, SmallSineCosine<X>(turn), SpilledWords<X>(turn.N), y) {}
  WavesInTwo(const SinhCoshInTwo<X>& of_x, const Turn<X>& turn, const SmallSineCosine<X>& f,
             const SpilledWords<X>& n, X y)
      : sinh(of_x.sinh),
        cosh(of_x.cosh),
        sin(signed_as(sine_parts<0>(turn, f, n), y)),
        cos(sine_parts<128>(turn, f, n)) {}

  static HighLow<X> signed_as(HighLow<X> s, X y) {
    const X sign = bit_and(y, broadcast_bits<X>(kSignBit<double>));
    return {bit_xor(s.high, sign), bit_xor(s.low, sign)};
  }
};

// Function::of_two(waves) is a hyperbolic function, as with singles.
template <class Function, Turned turned>
struct WavesOfDoubles {
  template <class X>
  static auto rare(Complex<X> z) {
    const auto& d = kWavesOfDoubles;
    const X x = magnitude(turned == Turned::kNot ? z.re : z.im),
            y = magnitude(turned == Turned::kNot ? z.im : z.re);
    const auto tiny = [&](X size) { return bit_and(less(size, d.least), not_equal(size, X{})); };
    return bit_or(bit_or(not_at_most(x, Function::kMostOfDoubles), not_below(y, d.angles_from)),
                  bit_or(tiny(x), tiny(y)));
  }
  template <class X>
  static Complex<X> eval(Complex<X> z) {
    if constexpr (turned == Turned::kNot) return Function::of_two(WavesInTwo<X>(z.re, z.im));
    const Complex<X> y = Function::of_two(WavesInTwo<X>(z.im, z.re));
    if constexpr (turned == Turned::kOdd) return {y.im, y.re};
    return {y.re, opposite(y.im)};
  }
};

struct SinhInTwo {
  static constexpr Row<double> kMostOfDoubles = 700.0;
  template <class X>
  static Complex<X> of_two(const WavesInTwo<X>& w) {
    return {rounded_sum(product_in_two(w.sinh, w.cos)), rounded_sum(product_in_two(w.cosh, w.sin))};
  }
};
struct CoshInTwo {
  static constexpr Row<double> kMostOfDoubles = 700.0;
  template <class X>
  static Complex<X> of_two(const WavesInTwo<X>& w) {
    return {rounded_sum(product_in_two(w.cosh, w.cos)), rounded_sum(product_in_two(w.sinh, w.sin))};
  }
};

// The quotient of sine and cosine times its conjugate.
struct TanhInTwo {
  static constexpr Row<double> kMostOfDoubles = 100.0;
  template <class X>
  static Complex<X> of_two(const WavesInTwo<X>& w) {
    const auto x = product_in_two(w.sinh, w.sinh), y = product_in_two(w.cos, w.cos);
    const auto sum = two_sum(x.high, y.high);
    const HighLow<X> divisor = {sum.high, sum.low + (x.low + y.low)};
    const auto over_divisor = [&](HighLow<X> p) {
      return with_sign_of(accurate_quotient(Fraction<X>{p, divisor}), p.high);
    };
    return {over_divisor(product_in_two(w.sinh, w.cosh)), over_divisor(product_in_two(w.sin, w.cos))};
  }
};

template <class Function, Turned turned, OfOneNumber scalar>
using zOfWaves = InVectors<ComplexOfOne<double, scalar>, WavesOfDoubles<Function, turned>>;

ORX_ISA_END
