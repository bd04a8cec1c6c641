// The skeleton of the logarithms of double precision.
//
// x = 2^(k - 1013) m, k the biased exponent and m in [2^-10, 2^-9). R is an integer near unit/m, made from
// the processor's approximate reciprocal; it is the table's index, and short enough for m R - unit to be
// exact. With e = m R - unit the logarithm is
//
//   k L + T(R) + log(1 + e/unit),
//
// L the logarithm of 2, T(R) what is left, and the last term a polynomial in e. For the natural logarithm
// unit is 1; for the decimal one it is near log10 e, so that e itself is the first-order term.
#pragma once
#include <cfloat>

#include "frame/exceptions.hpp"
#include "frame/kernel.hpp"

ORX_ISA_BEGIN(orx::tef)

// Masks: the fraction, the exponent field of 2^-10.
struct LogBits {
  Row<uint64_t> fraction = 0x000FFFFFFFFFFFFF;
  Row<uint64_t> exponent = 0x3F50000000000000;
};
inline constexpr LogBits kLogMasks{};

template <class X>
inline X log_fraction(X x) {
  return bit_or(bit_and(x, kLogMasks.fraction), kLogMasks.exponent);
}

template <class X>
struct LogReduced {
  X e, R;
};
// The reduced argument and R, which comes as an index too.
template <class D, class X>
inline LogReduced<X> log_reduce(X m, Indices<X>& index) {
  const X R = integer_reciprocal(m, D::kUnit, index);
  return {product_residue(m, R, D::kData.unit), R};
}

// k L + T + e + q, the first three as an exact sum of a high part and a correction; `rest` comes with q. R(lane) is
// the lane's R.
template <class D, class X, class R_of_lane>
inline X log_ha(X k, const R_of_lane& R, X e, X q) {
  const auto& d = D::kData;
  X T_hi, T_lo;
  gather_pairs(
      D::kTable[0], [&](int lane) { return R(lane) - D::kFirst; }, T_hi, T_lo);
  const auto S = fast_two_sum(multiply_add(k, d.L_hi, T_hi), e);
  const X Lo = multiply_add(k, d.L_lo, T_lo);
  return S.high + ((Lo + S.low) + q);
}

// The same in one double. The exponent counts from the nearest power of two, so that T is 0 near 1 and
// nothing cancels; the table tells the bias that belongs to T.
template <class D, class X, class R_of_lane>
inline X log_la(X k, const R_of_lane& R, X e, X q) {
  X T, bias;
  gather_pairs(
      D::kLaTable[0], [&](int lane) { return R(lane) - D::kFirst; }, T, bias);
  return multiply_add(k - bias, D::kData.L, T) + (e + q);
}

// log x for finite x > 0, denormal too, as accurate as the HA kernel.
template <class D>
inline double log_positive(double x) {
  using X = Vec<double, 1>;
  double shift = 0.0;
  if (x < DBL_MIN) {
    x *= 0x1p60;
    shift = 60.0;
  }
  const X v = broadcast<X>(hidden(x));
  Indices<X> R;
  const X e = log_reduce<D>(log_fraction(v), R).e;
  return log_ha<D>(exponent_field(v) - broadcast<X>(hidden(shift)), R, e, D::polynomial_ha(e)).v[0][0];
}

// The scalar routine of a logarithm.
template <class D>
inline int log_cout_rare(const double* a, double* r) {
  const double x = *a;
  if ((bit_cast<uint64_t>(x) << 1) >
      (uint64_t{0x7FF} << 53)) {  // NaN, not to be compared: that raises invalid
    *r = x + x;
    return StatusOk;
  }
  if (x > 0) {
    *r = x > DBL_MAX ? x : log_positive<D>(x);
    return StatusOk;
  }
  if (x < 0) {
    *r = raise_invalid<double>();
    return StatusDomain;
  }
  *r = raise_divide_by_zero(-1.0);
  return StatusSingularity;
}

struct DoubleLogConstants {
  Row<double> smallest = DBL_MIN, largest = DBL_MAX;
  // A denormal's bits behind the exponent of `under`, less `under`, are the denormal times 2^54: quicker than a
  // product with a denormal, which many processors hand to microcode.
  Row<double> under = 0x1p-968, orders_up = 54.0;
};
inline constexpr DoubleLogConstants kDoubleLog{};

// Kernels on positive normal numbers; everything else is rare. Log::log(x, k) is the logarithm of such a number
// whose exponent is taken to be k.
template <class D, class Log>
struct DoubleLog : Kernel<double(double)> {
  template <class X>
  static auto rare(X x) {
    return outside(x, kDoubleLog.smallest, kDoubleLog.largest);
  }
  template <class X>
  static X eval(X x) {
    return Log::log(x, exponent_field(x));
  }
  // Denormals, infinity and NaN. What is left is to be reported.
  template <class X, class Left>
  static void finish(X x, Left& left) {
    const auto& d = kDoubleLog;
    left.finish(not_at_most(x, d.largest),
                [&](X special) { return bit_and(special, x) + bit_and(special, x); });
    left.finish(bit_and(less(X{}, x), less(x, d.smallest)), [&](X denormal) {
      const X scaled = bit_or(bit_and(denormal, x), constant<X>(d.under)) - d.under;
      return Log::log(scaled, exponent_field(scaled) - d.orders_up);
    });
  }
  static int rare_lane(const double* a, double* r) { return D::cout_rare(a, r); }
};
template <class D>
struct LogHA {
  template <class X>
  static X log(X x, X k) {
    Indices<X> R;
    const X e = log_reduce<D>(log_fraction(x), R).e;
    return log_ha<D>(k, R, e, D::polynomial_ha(e));
  }
};
template <class D, bool ep = false>
struct LogLA {
  template <class X>
  static X log(X x, X k) {
    Indices<X> index;
    const X m = log_fraction(x);
    X e;
    if constexpr (ep)  // m R rounds, but next to x = 1, where it would count, R is a power of two
      e = multiply_subtract(m, integer_reciprocal(m, D::kUnit, index), D::kData.unit);
    else
      e = log_reduce<D>(m, index).e;
    return log_la<D>(k, index, e, D::template polynomial_la<ep>(e));
  }
};
template <class D>
using DoubleLogHA = DoubleLog<D, LogHA<D>>;
template <class D, bool ep = false>
using DoubleLogLA = DoubleLog<D, LogLA<D, ep>>;

ORX_ISA_END
