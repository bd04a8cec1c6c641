// The inverses of the error function, of its complement and of the normal distribution: one method with three heads.
//
// A head gives y, which is erfc of the result's magnitude, from 0 to 1, without a rounding error where it is small, and
// c = 1 - y, without one where that is small. From 1/2 on, rows are equal parts of |c|, below it parts of y, eight to an
// octave: so leading bits of y or of |c| + 1/2 are the row. A row has a point v, the value there, and a polynomial in the
// distance r from v. Below 2^-54 the same is done in -ln y, of which the result is a smooth function down to the least number.
//
// The division into centre and tails is that of J. M. Blair, C. A. Edwards, J. H. Johnson, Mathematics of Computation 30,
// 1976; rows take the place of their logarithm.
#pragma once
#include <cfloat>

#include "erf/error_integral.hpp"
#include "frame/row_polynomial.hpp"
#include "ln/vdln.hpp"

namespace orx::tef {
// Tables of the classes. HA: v, value, what it lacks, the polynomial; LA and EP: v, value, the polynomial.
template <int terms, bool two_parts>
struct InverseErfRow {
  static constexpr int kTerms = terms, kColumns = terms + (two_parts ? 3 : 2);
  static constexpr bool kTwoParts = two_parts;
};
using InverseErfHA = InverseErfRow<11, true>;
using InverseErfLA = InverseErfRow<10, false>;
using InverseErfEP = InverseErfRow<6, false>;
constexpr int kInverseErfRows = 433, kInverseErfTailRows = 36;

template <class Row>
using InverseErfTable = const double[kInverseErfRows][Row::kColumns];
using InverseErfTailTable = const double[kInverseErfTailRows][InverseErfHA::kColumns];
extern InverseErfTable<InverseErfHA> _tefdErfInvHATab;
extern InverseErfTable<InverseErfLA> kErfInvLaTable;
extern InverseErfTable<InverseErfEP> kErfInvEpTable;
extern InverseErfTailTable dErfcInv_HA_Table;
extern InverseErfTable<InverseErfHA> kCdfNormInvTable;
extern InverseErfTable<InverseErfLA> kCdfNormInvLaTable;
extern InverseErfTable<InverseErfEP> kCdfNormInvEpTable;
extern InverseErfTailTable kCdfNormInvTailTable;
}  // namespace orx::tef

ORX_ISA_BEGIN(orx::tef)

struct InverseErfData {
  Row<double> half = 0.5, one = 1.0, two = 2.0, five_quarters = 1.25;
};
inline constexpr InverseErfData kInverseErf{};

// Rows begin at the high word's leading bits of 2^-54 and, in the tail's tables, of 32.
constexpr int kInverseErfShift = 17;
constexpr int kFirstRowInY = 0x3C900000 >> kInverseErfShift, kFirstRowInLog = 0x40400000 >> kInverseErfShift;

// The value at v from its row, value + slope r + r p(r); with two parts the first sum is exact.
template <class Row, class X, class F, class S>
inline X value_from_row(const double* table, F row, X v, const S& slope) {
  X from, value;
  gather_pairs<Row::kColumns>(table, row, from, value);
  const X r = v - from;
  if constexpr (Row::kTwoParts) {
    const auto sum = fast_two_sum(value, r * slope);
    return sum.high + (sum.low + polynomial_of_row<Row::kColumns, Row::kTerms + 1>(table + 2, row, r));
  } else {
    const X p = polynomial_of_row<Row::kColumns, Row::kTerms>(table + 2, row, r);
    return value + multiply_add(r, p, r * slope);
  }
}

// The magnitude of the result for y from 2^-54 to 1 and size = 1 - y.
template <class Row, class X, class S>
inline X inverse_erf_by_rows(InverseErfTable<Row>& table, X y, X size, const S& slope) {
  const auto& d = kInverseErf;
  const auto central = not_below(y, d.half);
  const SpilledWords<X> z(select(central, size + d.half, y));
  const X v = select(central, size, bit_xor(y, broadcast_bits<X>(kSignBit<double>)));
  const auto row = [&](int lane) { return (z.high(lane) >> kInverseErfShift) - kFirstRowInY; };
  return value_from_row<Row>(table[0], row, v, slope);
}

// The three heads: erf^-1 x for |x| < 1, erfc^-1 x for x from 2^-54 to below 2, and the inverse normal distribution at x from
// 2^-55 to below 1.
template <class Row, class X>
inline X erfinv_by_rows(InverseErfTable<Row>& table, X x) {
  const auto& d = kInverseErf;
  const X size = magnitude(x);
  return with_sign_of(inverse_erf_by_rows<Row>(table, d.one - size, size, d.one), x);
}
template <class Row, class X>
inline X erfcinv_by_rows(InverseErfTable<Row>& table, X x) {
  const auto& d = kInverseErf;
  const X c = d.one - x;
  return with_sign_of(inverse_erf_by_rows<Row>(table, min(x, d.two - x), magnitude(c), d.one), c);
}
template <class Row, class X>
inline X cdfnorminv_by_rows(InverseErfTable<Row>& table, X x) {
  const auto& d = kInverseErf;
  const X y = x + x, c = y - d.one;
  return with_sign_of(inverse_erf_by_rows<Row>(table, min(y, d.two - y), magnitude(c), d.five_quarters), c);
}

// The magnitude of the result for y = `times` x from the least denormal to 2^-47. It is not formed: doubling a denormal
// raises underflow where that is trapped.
template <int times, class X>
inline X inverse_erf_tail(InverseErfTailTable& table, X x) {
  const auto& d = LnDescription::kData;
  // 1. The logarithm, as where ln itself is made. Under the caller's rounding the short reciprocal might leave the table.
  const X scaled = x * broadcast<X>(0x1p60 * times);
  const X m = log_fraction(scaled);
  Indices<X> unused;
  const X R =
      max(min(integer_reciprocal(m, LnDescription::kUnit, unused), broadcast<X>(1024)), broadcast<X>(512));
  const SpilledWords<X> words(R);
  const X e = product_residue(m, R, d.unit);
  X T_hi, T_lo;
  gather_pairs(
      _tefdLnHATab[0], [&](int lane) { return (words.high(lane) >> 11) - (0x40800000 >> 11); }, T_hi, T_lo);
  const X k = exponent_field(scaled) - broadcast<X>(60);
  const X large = multiply_add(k, d.L_hi, T_hi);  // exact
  const X rest = multiply_add(k, d.L_lo, T_lo) + LnDescription::polynomial_ha(e);

  // 2. Its distance from a row, without what its size would round off.
  const SpilledWords<X> minus_ln(X{} - (large + (e + rest)));
  const auto row = [&](int lane) { return (minus_ln.high(lane) >> kInverseErfShift) - kFirstRowInLog; };
  X from, value;
  gather_pairs<InverseErfHA::kColumns>(table[0], row, from, value);
  const X r = X{} - (((large + from) + e) + rest);
  return value + polynomial_of_row<InverseErfHA::kColumns, 12>(table[0] + 2, row, r);
}

// Two lanes, from y to r: the exported routines of the tails.
inline void inverse_erf_tail_of_two(InverseErfTailTable& table, const double* y, double* r) {
  using X = Vec<double, 1>;
  store_first(r, 2, inverse_erf_tail<1>(table, load_first<X>(y, 2, 0x1p-60)));
}

// What has no result: |x| >= 1, NaN.
template <class T>
inline int erfinv_cout_rare(T x, T* r) {
  if (x != x) {
    *r = x + x;
    return StatusOk;
  }
  if (x == 1 || x == -1) {
    *r = raise_divide_by_zero(x);
    return StatusSingularity;
  }
  *r = raise_invalid<T>();
  return StatusDomain;
}

// The inverses of the complement, whose argument is y, and of the distribution, whose argument is y/2: y = `times` x.
template <class T, int times>
struct InverseOfProbability : Kernel<T(T)> {
  static constexpr int kTogether = 2;

  template <class X>
  static auto rare(X x) {
    return outside(x, kLow, kHigh);
  }

 protected:
  // Lanes elsewhere get a number that is in the tail.
  template <class X>
  static X tail_argument(X x, X tail) {
    return select(tail, x, constant<X>(kInTail));
  }
  template <class X>
  static X in_tail(X x) {
    return bit_and(less(X{}, x), less(x, kLow));
  }
  // 0, where the result is infinite with the sign of `sign`, or the other end; what lies beyond them, NaN.
  static int no_result(T x, T sign, T* r) {
    if (x != x) {
      *r = x + x;
      return StatusOk;
    }
    if (x == 0 || x == kLast) {
      *r = raise_divide_by_zero(x == 0 ? sign : -sign);
      return StatusSingularity;
    }
    *r = raise_invalid<T>();
    return StatusDomain;
  }

 private:
  static constexpr T kLast = T(2) / times;
  static constexpr Row<T> kLow = T(0x1p-54) / times, kInTail = T(0x1p-60),
                          kHigh = T(2) / times * (1 - std::numeric_limits<T>::epsilon() / 2);
};

ORX_ISA_END
