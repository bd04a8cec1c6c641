// The skeleton of the logarithms of double precision.
//
// x = 2^(k - 1013) m, k the biased exponent and m in [2^-10, 2^-9). R is an integer near unit/m, made from the
// processor's approximate reciprocal; it is the table's index, and short enough for m R - unit to be exact. With
// e = m R - unit the logarithm is
//
//   k L + T(R) + log(1 + e/unit),
//
// L the logarithm of 2, T(R) what is left, and the last term a polynomial in e. For the natural logarithm unit is 1; for
// the decimal one it is near log10 e, so that e itself is the first-order term.
#pragma once
#include "frame/kernel.hpp"

ORX_ISA_BEGIN

// Masks: the fraction, the exponent field of 2^-10, the leading 26 significant bits.
struct log_bits {
  row<uint64_t> fraction = 0x000FFFFFFFFFFFFF;
  row<uint64_t> exponent = 0x3F50000000000000;
  row<uint64_t> leading = 0xFFFFFFFFFC000000;
};
inline constexpr log_bits log_masks{};

template <class X>
inline X log_fraction(X x) {
  return bit_or(bit_and(x, constant<X>(log_masks.fraction)), constant<X>(log_masks.exponent));
}

// e, and R as an index.
template <class D, class X>
inline X log_reduce(X m, indices<X>& R) {
  const X value = integer_reciprocal(m, D::unit, R);
  const X m_hi = bit_and(m, constant<X>(log_masks.leading));
  const X m_lo = m - m_hi;
  return (m_hi * value - D::data.unit) + m_lo * value;
}

// k L + T + e + q, the first three as an exact sum of a high part and a correction; `rest` comes with q.
template <class D, class X>
inline X log_ha(X k, const indices<X>& R, X e, X q) {
  const auto& d = D::data;
  X T_hi, T_lo;
  gather_pairs(D::table[0], [&](int lane) { return R.at[lane] - D::first; }, T_hi, T_lo);
  const X H = k * d.L_hi + T_hi;
  const X S = H + e;
  const X c = e - (S - H);
  const X Lo = k * d.L_lo + T_lo;
  return S + ((Lo + c) + q);
}

// The same in one double. The exponent counts from the nearest power of two, so that T is 0 near 1 and nothing cancels;
// the table tells the bias that belongs to T.
template <class D, class X>
inline X log_la(X k, const indices<X>& R, X e, X q) {
  X T, bias;
  gather_pairs(D::la_table[0], [&](int lane) { return R.at[lane] - D::first; }, T, bias);
  return ((k - bias) * D::data.L + T) + (e + q);
}

ORX_ISA_END
