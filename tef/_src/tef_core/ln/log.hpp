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

// k L + T + e + q, the first three as an exact sum of a high part and a correction; `rest` comes with q.
template <class D, class X>
inline X log_ha(X k, const Indices<X>& R, X e, X q) {
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
template <class D, class X>
inline X log_la(X k, const Indices<X>& R, X e, X q) {
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
  if (!(x < 0) && (bit_cast<uint64_t>(x) >> 52 & 0x7FF) == 0x7FF) {  // NaN, +infinity
    *r = x * x;
    return StatusOk;
  }
  if (x > 0) {
    *r = log_positive<D>(x);
    return StatusOk;
  }
  const double zero = hidden(0.0);
  if (x < 0) {
    *r = zero / zero;
    return StatusDomain;
  }
  *r = -1.0 / zero;
  return StatusSingularity;
}

// Kernels on positive normal numbers; everything else is rare.
template <class D>
struct DoubleLog : Kernel<double(double)> {
  template <class X>
  static X rare(X x) {
    return outside(x, kSmallest, kLargest);
  }
  static int rare_lane(const double* a, double* r) { return D::cout_rare(a, r); }

 private:
  static constexpr Row<double> kSmallest = DBL_MIN, kLargest = DBL_MAX;
};
template <class D>
struct DoubleLogHA : DoubleLog<D> {
  template <class X>
  static X eval(X x) {
    Indices<X> R;
    const X e = log_reduce<D>(log_fraction(x), R).e;
    return log_ha<D>(exponent_field(x), R, e, D::polynomial_ha(e));
  }
};
template <class D, bool ep = false>
struct DoubleLogLA : DoubleLog<D> {
  template <class X>
  static X eval(X x) {
    Indices<X> R;
    const X e = log_reduce<D>(log_fraction(x), R).e;
    return log_la<D>(exponent_field(x), R, e, D::template polynomial_la<ep>(e));
  }
};

ORX_ISA_END
