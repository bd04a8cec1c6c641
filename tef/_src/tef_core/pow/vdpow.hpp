// x^y = 2^(y log2 x), double.
//
// x = 2^k m, m from 1 to 2; the table has a row for each multiple of 1/512, and R of the one nearest to m is log2 e / m but
// for 2^-10. With e = m R - log2 e, in which nothing is lost, log2 x = k + T + e + c2 e^2 + ..., T from the table: a sum of
// two doubles whose first has 26 bits. So has the first half of y, the leading product is exact, and for 2^(high + low) the
// integers and the table's steps are simply bits of `high`.
#pragma once
#include "exp/vdexp.hpp"
#include "ln/log.hpp"
#include "pow/pow.hpp"

namespace orx::tef {
alignas(64) inline constexpr double kPowLogTable[513][4] = {
#include "pow/vdpow.inc"
};
alignas(64) inline constexpr double kPowShortLogTable[513][2] = {
#include "pow/vdpow_ep.inc"
};
}  // namespace orx::tef

ORX_ISA_BEGIN(orx::tef)

struct dPowData {
  Row<uint64_t> fraction = 0x000FFFFFFFFFFFFF, short_fraction = 0x000FFFFFF8000000;
  Row<uint64_t> leading = ~uint64_t{0} << 27, thirteen_bits = ~uint64_t{0} << 40;
  Row<double> one = 1.0, bias = 1023.0;
  Row<double> row_shifter = 0x1.8p+43 - 1;  // 1.5 * 2^52/512; the row is left in the low bits
  Row<double> unit = 0x1.715474p0;          // log2 e, short
  // log2(1 + e/unit) / e, |e| <= unit/1024, less 1 and e times the short c2. The first coefficient makes good for
  // the short unit.
  Row<double> short_c2 = -0x1.62e43p-2;
  // to 2^-67.8 of log2(1 + e/unit)
  Row<double> series[6] = {0x1.9c3a696645914p-24, -0x1.19a5041dd65fbp-24, 0x1.47fd462b3b323p-3,
                           -0x1.550472a8bd02p-4,  0x1.7a336738d04abp-5,   -0x1.b4e9eb72f0873p-6};
  // EP: log2(1 + e) / e, |e| <= 1/1024, to 2^-45.3 of log2(1 + e)
  Row<double> ep[4] = {0x1.71547652b826ap+0, -0x1.71547652b8a1dp-1, 0x1.ec70b0400a4a5p-2,
                       -0x1.715463e149708p-2};
  // 2^z = 2^k 2^(j/256) 2^r, or 2^k 2^(j/1024) 2^r, or 2^k 2^r: 1.5 * 2^52 steps and the exponent's bias, which leave 2^k and
  // j in the low bits.
  Row<double> shifter = 0x1.8p+44 + 1023, fine_shifter = 0x1.8p+42 + 1023, whole_shifter = 0x1.8p+52 + 1023;
  // (2^r - 1) / r, to 2^-65.9 of 2^r, and to 2^-67.8 of 2^r
  Row<double> exp[5] = {0x1.62e42fefa39efp-1, 0x1.ebfbdff82c562p-3, 0x1.c6b08d7344805p-5,
                        0x1.3b2ab905c101cp-7, 0x1.5c64218e1e5abp-10};
  Row<double> fine_exp[4] = {0x1.62e42fefa39efp-1, 0x1.ebfbdff82c59p-3, 0x1.c6b08da9a85aap-5,
                             0x1.3b2ab6b659b8fp-7};
  Row<double> table_lacks = 5e-17;  // the finer table's factor, made for a shorter polynomial, is 1 less this
  // 2^r, |r| <= 1/2, to 2^-34.3 of 2^r
  Row<double> long_exp[8] = {1.0,
                             0x1.62e42ff0e191dp-1,
                             0x1.ebfbe0778724bp-3,
                             0x1.c6b08ac06c325p-5,
                             0x1.3b29f39d4d49cp-7,
                             0x1.5d8a85fe7833cp-10,
                             0x1.445c840469a21p-13,
                             0x1.fde5fe328a61ep-17};
  // From here on 2^|z| or 2^-|z| is not a normal number, with room for what z lacks.
  Row<double> rare_from = 1021.9375;
};
inline constexpr dPowData vdpow_data{};

// Of x, positive, the fraction m, and its nearest multiple of 1/512, which is a row of the table.
template <class X>
class PowFraction {
 public:
  X m;

  explicit PowFraction(X x) : PowFraction(bit_or(bit_and(x, vdpow_data.fraction), vdpow_data.one), 0) {}
  // Two neighbouring columns of a table.
  template <int columns>
  void gather(const double (*table)[columns], int first, X& column, X& next) const {
    gather_pairs<columns>(
        table[0] + first, [this](int lane) { return row_.low(lane); }, column, next);
  }
  // m less its row's number.
  X from_row() const { return m - (shifted_ - vdpow_data.row_shifter); }

 private:
  X shifted_;
  SpilledWords<X> row_;

  PowFraction(X fraction, int) : m(fraction), shifted_(m + vdpow_data.row_shifter), row_(shifted_) {}
};

template <class X>
inline X leading_bits(X x) {
  return bit_and(x, vdpow_data.leading);
}
// log2 x, x being positive and k its biased exponent: to 2^-66 or so. `high` has 26 bits.
template <class X>
inline HighLow<X> log2_in_two(X x, X k) {
  const auto& d = vdpow_data;
  const PowFraction<X> m(x);
  X T_hi, T_lo, R, unused;
  m.gather(kPowLogTable, 0, T_hi, T_lo);
  m.gather(kPowLogTable, 2, R, unused);
  const X m_high = bit_or(bit_and(x, d.short_fraction), d.one);
  const X a = m_high * R - d.unit, b = (m.m - m_high) * R;  // exact
  const X e = a + b, e_low = (a - e) + b, e2 = e * e;
  const X t = k + T_hi;  // exact
  const X leading = bit_and(e, d.thirteen_bits), behind = (e - leading) + e_low;
  const X w = leading * d.short_c2, square = w * leading;  // exact
  const X high = leading_bits((t + e) + square);
  const X low = (((t - high) + e) + square) + e_low;  // rounded at the end alone
  const X rest = behind * multiply_add(e, d.short_c2, w) + multiply_add(e, polynomial(e, e2, d.series), T_lo);
  return {high, low + rest};
}
// The same in one.
template <class X>
inline X log2_in_one(X x, X k) {
  const auto& d = vdpow_data;
  const PowFraction<X> m(x);
  X inverse, T;
  m.gather(kPowShortLogTable, 0, inverse, T);
  const X e = m.from_row() * inverse, e2 = e * e;
  const X first = multiply_add(e, d.ep[0], (k - d.bias) + T);
  return multiply_add(e2, multiply_add(e2, d.ep[3], multiply_add(e, d.ep[2], constant<X>(d.ep[1]))), first);
}

// y times l, the first product exact.
template <class X>
inline HighLow<X> times(X y, const HighLow<X>& l) {
  const auto by = split(y);
  return {by.high * l.high, multiply_add(y, l.low, by.low * l.high)};
}

// 2^(z.high + z.low). In late lanes, where nothing is to overflow or underflow, it is 0.
template <bool quick, class X>
inline X exp2_of_two(const HighLow<X>& z, X late) {
  const auto& d = vdpow_data;
  if constexpr (quick) {
    const X N = z.high + d.fine_shifter;
    const SpilledWords<X> n(N);
    const X r = (z.high - (N - d.fine_shifter)) + z.low;
    const X p = multiply_add(r, polynomial(r, r * r, d.fine_exp), constant<X>(d.table_lacks));
    const X T = gather<X>(kExpLaPowers, [&](int lane) { return n.low(lane) & 1023; });
    return multiply_add(T, p, T) * bit_andnot(late, scale_from<10>(n.vector()));
  } else {
    const X N = z.high + d.shifter;
    const SpilledWords<X> n(N);
    const X r = (z.high - (N - d.shifter)) + z.low, p = r * polynomial(r, r * r, d.exp);
    X T, T_lo;
    gather_pairs(
        _tefdExpHATab[0], [&](int lane) { return n.low_byte(lane); }, T, T_lo);
    return multiply_add(T, p + T_lo, T) * bit_andnot(late, scale_from<8>(n.vector()));
  }
}
// The same of a single z, to 2^-37 by the finer table, and to 2^-34 by a polynomial alone.
template <class X>
inline X quick_exp2(X z, X late) {
  const auto& d = vdpow_data;
  const X N = z + d.fine_shifter;
  const SpilledWords<X> n(N);
  const X r = z - (N - d.fine_shifter), p = r * multiply_add(r, d.fine_exp[1], d.fine_exp[0]);
  const X T = gather<X>(kExpLaPowers, [&](int lane) { return n.low(lane) & 1023; });
  return multiply_add(T, p, T) * bit_andnot(late, scale_from<10>(n.vector()));
}
template <class X>
inline X exp2_by_polynomial(X z, X late) {
  const auto& d = vdpow_data;
  const X N = z + d.whole_shifter, r = z - (N - d.whole_shifter);
  return polynomial(r, r * r, d.long_exp) * bit_andnot(late, scale_from<0>(N));
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

// The steps with log2 x and y log2 x in two parts, and in one.
template <bool quick>
struct StepsInTwo {
  template <class X>
  static HighLow<X> log(X x, X k) {
    return log2_in_two(x, k);
  }
  template <class X>
  static X power(X y, const HighLow<X>& l, X& late) {
    const auto z = times(y, l);
    late = not_below(magnitude(z.high), vdpow_data.rare_from);
    return exp2_of_two<quick>(z, late);
  }
};
struct StepsInOne {
  template <class X>
  static X log(X x, X k) {
    return log2_in_one(x, k);
  }
  template <class X>
  static X power(X y, X l, X& late) {
    const X z = y * l;
    late = not_below(magnitude(z), vdpow_data.rare_from);
    return quick_exp2(z, late);
  }
};

template <class Steps>
struct PowBy {
  static constexpr Row<double> kLargest = DBL_MAX;

  template <class X>
  static X power(X x, X y, X& late) {
    return Steps::power(y, Steps::log(x, exponent_field(x)), late);
  }
  template <class X>
  static X power_of_any(X x, X y, X& late) {
    const Normalised<X> n(x);
    return Steps::power(y, Steps::log(n.x, n.k), late);
  }
};
using PowHA = PowBy<StepsInTwo<false>>;
using PowLA = PowBy<StepsInTwo<true>>;
using PowEP = PowBy<StepsInOne>;

// For scalar routines: y ln |x|, and whether x^y is negative.
struct Exponent {
  double high, low;
  bool negative;

  Exponent(double x, double y) {
    using X = Vec<double, 1>;
    const X exponent = broadcast<X>(hidden(y)), limit = constant<X>(kPow<double>.y_largest);
    const Normalised<X> n(magnitude(broadcast<X>(hidden(x))));
    const HighLow<X> z = times(max(min(exponent, limit), X{} - limit), log2_in_two(n.x, n.k));
    const X ln2 = broadcast<X>(0x1.62e42fefa39efp-1), ln2_lo = broadcast<X>(0x1.abc9e3b39803fp-56);
    const HighLow<X> natural = exact_product(z.high, ln2);
    high = natural.high.v[0][0];
    low = (natural.low + multiply_add(z.low, ln2, z.high * ln2_lo)).v[0][0];
    negative = x < 0 && any(Parity<X>(exponent).odd);
  }
};

// x^y that is not a normal number, or may not be one: x is finite, not 0, and y, too; if x is negative y is an integer.
// The status to report.
int vdpow_cout_rare(const double* a, const double* b, double* r);

template <class Signature, class Method>
using dPow = Pow<Signature, Method, vdpow_cout_rare>;

ORX_ISA_END
