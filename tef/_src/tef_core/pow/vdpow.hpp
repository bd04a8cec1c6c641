// x^y = e^(y ln x), double.
//
// ln x as a sum of two doubles: the reduction and the tables of ln, whose reduced argument e is exact, so that
// ln x = S + e - e^2/2 + ..., S from the tables. y ln x is a sum of two again, by halves whose products are exact, and
// e^(high + low) goes the way of exp.
#pragma once
#include "exp/vdexp_kernels.hpp"
#include "ln/vdln.hpp"
#include "pow/pow.hpp"

ORX_ISA_BEGIN(orx::tef)

struct dPowData {
  Row<double> half = 0.5, minus_half = -0.5;
  // (ln(1 + e) - e + e^2/2) / e^3, |e| <= 2^-9.5, to 2^-74.4 of ln(1 + e)
  Row<double> ha[5] = {0x1.5555555555555p-2, -0x1.fffffffffdef5p-3, 0x1.99999999fd13bp-3,
                       -0x1.55558509fe334p-3, 0x1.2492492492492p-3};
  // the same to 2^-64.5 of ln(1 + e)
  Row<double> la[4] = {0x1.555555555458fp-2, -0x1.0000000001bc4p-2, 0x1.9999cc8e83a81p-3,
                       -0x1.55554833ee671p-3};
  // (ln(1 + e) - e) / e^2, to 2^-42.8 of ln(1 + e)
  Row<double> ep[3] = {-0x1.0000000000b78p-1, 0x1.55556a8fcfa35p-2, -0x1.ffffe4fb5381ap-3};
  // e^x = 2^k 2^(j/256) e^r, and EP 2^k 2^(j/1024) e^r, as the kernels of exp.
  Row<double> inv = 0x1.71547652b82fep+8, shifter = 0x1.800000003ffp+52;  // 256/ln 2; 1.5 * 2^52 + 256 * 1023
  Row<double> ln2_hi = 0x1.62e42fef8p-9, ln2_lo = 0x1.1cf79abc9e3b4p-44;  // ln 2/256
  // (e^r - 1 - r) / r^2, |r| <= 0.0014, to 2^-71 of e^r
  Row<double> exp[4] = {0x1.fffffffffffd7p-2, 0x1.555555555557dp-3, 0x1.5555575c7361ep-5,
                        0x1.1111107685613p-7};
  Row<double> fine_inv = 0x1.71547652b82fep+10, fine_shifter = 0x1.80000000ffcp+52;  // 1024/ln 2; 1024 * 1023
  Row<double> fine_ln2 = 0x1.62e42fefa39efp-11;
  // From here on e^|x| or e^-|x| is not a normal number, with room for what x lacks.
  Row<double> rare_from = 0x1.6232bp+9;
};
inline constexpr dPowData vdpow_data{};

// ln x, x being positive and k its biased exponent, from its reduced argument e, to 2^-68 or so; if the square of e is rounded,
// to 2^-63. It must stand alone even so: rounded with the series' other terms it would cost two ulps of the largest powers.
template <bool exact_square, class X, class R_of_lane>
inline HighLow<X> ln_of_reduced(X k, const R_of_lane& R, X e) {
  const auto& d = vdpow_data;
  const auto& ln = LnDescription::kData;
  const X e2 = e * e;
  X T_hi, T_lo;
  gather_pairs(
      LnDescription::kTable[0], [&](int lane) { return R(lane) - LnDescription::kFirst; }, T_hi, T_lo);
  const auto A = fast_two_sum(multiply_add(k, ln.L_hi, T_hi), e);
  const X low = multiply_add(k, ln.L_lo, T_lo) + A.low;
  if constexpr (exact_square) {
    const auto parts = split(e);
    const X half_high = parts.high * d.half;
    const auto B = fast_two_sum(A.high, X{} - parts.high * half_high);
    const X rest =
        multiply_subtract(e2 * e, polynomial(e, e2, d.ha), parts.low * multiply_add(e, d.half, half_high));
    return {B.high, (low + B.low) + rest};
  } else {
    const auto B = fast_two_sum(A.high, e2 * d.minus_half);
    return {B.high, multiply_add(e2 * e, polynomial(e, e2, d.la), low + B.low)};
  }
}
template <bool exact_square, class X>
inline HighLow<X> ln_in_two(X x, X k) {
  Indices<X> R;
  const X e = log_reduce<LnDescription>(log_fraction(x), R).e;
  return ln_of_reduced<exact_square>(k, R, e);
}
template <class X>
inline X ln_in_one(X x, X k) {
  Indices<X> R;
  const X e = log_reduce<LnDescription>(log_fraction(x), R).e, e2 = e * e;
  return log_la<LnDescription>(k, R, e, e2 * polynomial(e, e2, vdpow_data.ep));
}

template <class X>
inline HighLow<X> times(X y, const HighLow<X>& l) {
  const auto factor = split(l.high), by = split(y);
  return {by.high * factor.high, multiply_add(y, factor.low + l.low, by.low * factor.high)};
}

// e^(z.high + z.low); `whole` is their sum, or near it.
template <class X>
inline ExpParts<X> exp_parts_of_two(const HighLow<X>& z, X whole) {
  const auto& d = vdpow_data;
  const X N = multiply_add(whole, d.inv, d.shifter), Nf = N - d.shifter;
  const SpilledWords<X> n(N);
  const X r = subtract_product(z.high, Nf, d.ln2_hi) + subtract_product(z.low, Nf, d.ln2_lo), r2 = r * r;
  const X p = multiply_add(r2, polynomial(r, r2, d.exp), r);
  X T, T_lo;
  gather_pairs(
      _tefdExpHATab[0], [&](int lane) { return n.low_byte(lane); }, T, T_lo);
  return {T, p + T_lo, scale_from<8>(n.vector())};
}
template <class X>
inline X exp_of_two(const HighLow<X>& z, X whole) {
  const auto e = exp_parts_of_two(z, whole);
  return multiply_add(e.T, e.rest, e.T) * e.scale;
}
// e^x, to 2^-37.1 of e^r: by a finer table, with 1 + r + r^2/2 for the rest.
template <class X>
inline X quick_exp(X x) {
  const auto& d = vdpow_data;
  const X N = multiply_add(x, d.fine_inv, d.fine_shifter);
  const SpilledWords<X> n(N);
  const X r = subtract_product(x, N - d.fine_shifter, d.fine_ln2);
  const X p = multiply_add(r * r, d.half, r);
  const X T = gather<X>(kExpLaPowers, [&](int lane) { return n.low(lane) & 1023; });
  return multiply_add(T, p, T) * scale_from<10>(n.vector());
}

// A denormal's bits behind the exponent of `under`, less `under`, are the denormal times 2^54.
template <class X>
struct Normalised {
  X x, k;  // a normal number and the biased exponent of the original, as though it had one
  explicit Normalised(X any) {
    const auto& d = kDoubleLog;
    const auto denormal = less(any, d.smallest);
    x = select(denormal, bit_or(any, constant<X>(d.under)) - d.under, any);
    k = exponent_field(x) - keep(denormal, constant<X>(d.orders_up));
  }
};

template <bool exact_square>
struct PowInTwo {
  static constexpr Row<double> kLargest = DBL_MAX;

  template <class X>
  static X power(X x, X y, X& late) {
    return from_log(ln_in_two<exact_square>(x, exponent_field(x)), y, late);
  }
  template <class X>
  static X power_of_any(X x, X y, X& late) {
    const Normalised<X> n(x);
    return from_log(ln_in_two<exact_square>(n.x, n.k), y, late);
  }

 private:
  // Lanes that are late go on as though the exponential's argument were small, so that nothing overflows or underflows
  // there.
  template <class X>
  static X from_log(const HighLow<X>& l, X y, X& late) {
    const X whole = y * l.high;
    late = not_below(magnitude(whole), vdpow_data.rare_from);
    return exp_of_two(times(y, l), bit_andnot(late, whole));
  }
};

struct PowInOne {
  static constexpr Row<double> kLargest = DBL_MAX;

  template <class X>
  static X power(X x, X y, X& late) {
    return from_log(ln_in_one(x, exponent_field(x)), y, late);
  }
  template <class X>
  static X power_of_any(X x, X y, X& late) {
    const Normalised<X> n(x);
    return from_log(ln_in_one(n.x, n.k), y, late);
  }

 private:
  template <class X>
  static X from_log(X l, X y, X& late) {
    const X z = y * l;
    late = not_below(magnitude(z), vdpow_data.rare_from);
    return quick_exp<X>(bit_andnot(late, z));
  }
};

// For scalar routines: y ln |x|, and whether x^y is negative.
struct Exponent {
  double high, low;
  bool negative;

  Exponent(double x, double y) {
    using X = Vec<double, 1>;
    const X exponent = broadcast<X>(hidden(y)), limit = constant<X>(kPow<double>.y_largest);
    const Normalised<X> n(magnitude(broadcast<X>(hidden(x))));
    const HighLow<X> z = times(max(min(exponent, limit), X{} - limit), ln_in_two<true>(n.x, n.k));
    high = z.high.v[0][0];
    low = z.low.v[0][0];
    negative = x < 0 && any(Parity<X>(exponent).odd);
  }
};

// x^y that is not a normal number, or may not be one: x is finite, not 0, and y, too; if x is negative y is an integer.
// The status to report.
int vdpow_cout_rare(const double* a, const double* b, double* r);

using PowHA = PowInTwo<true>;
using PowLA = PowInTwo<false>;
template <class Signature, class Method>
using dPow = Pow<Signature, Method, vdpow_cout_rare>;

ORX_ISA_END
