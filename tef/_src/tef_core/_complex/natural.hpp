// ln x and e^x of doubles in two: the reductions and the tables of ln and exp, with longer polynomials, and sums without a
// rounding error.
#pragma once
#include "exp/vdexp_kernels.hpp"
#include "ln/vdln.hpp"

ORX_ISA_BEGIN(orx::tef)

struct NaturalData {
  Row<double> half = 0.5;
  // (ln(1 + e) - e + e^2/2) / e^3, |e| <= 2^-9.5, to 2^-74.4 of ln(1 + e)
  Row<double> ln[5] = {0x1.5555555555555p-2, -0x1.fffffffffdef5p-3, 0x1.99999999fd13bp-3,
                       -0x1.55558509fe334p-3, 0x1.2492492492492p-3};
  // e^x = 2^k 2^(j/256) e^r
  Row<double> inv = 0x1.71547652b82fep+8, shifter = 0x1.800000003ffp+52;  // 256/ln 2; 1.5 * 2^52 + 256 * 1023
  Row<double> ln2_hi = 0x1.62e42fef8p-9, ln2_lo = 0x1.1cf79abc9e3b4p-44;  // ln 2/256
  // (e^r - 1 - r) / r^2, |r| <= 0.0014, to 2^-71 of e^r
  Row<double> exp[4] = {0x1.fffffffffffd7p-2, 0x1.555555555557dp-3, 0x1.5555575c7361ep-5,
                        0x1.1111107685613p-7};
};
inline constexpr NaturalData kNatural{};

// ln x from its reduced argument e, k being the biased exponent, to 2^-68 or so. e^2/2 stands alone: rounded with the series'
// other terms it would cost two ulps of the largest powers.
template <class X, class R_of_lane>
inline HighLow<X> ln_of_reduced(X k, const R_of_lane& R, X e) {
  const auto& d = kNatural;
  const auto& ln = LnDescription::kData;
  X T_hi, T_lo;
  gather_pairs(
      LnDescription::kTable[0], [&](int lane) { return R(lane) - LnDescription::kFirst; }, T_hi, T_lo);
  const auto A = fast_two_sum(multiply_add(k, ln.L_hi, T_hi), e);
  const X low = multiply_add(k, ln.L_lo, T_lo) + A.low;
  const auto parts = split(e);
  const X half_high = parts.high * d.half, e2 = e * e;
  const auto B = fast_two_sum(A.high, X{} - parts.high * half_high);
  const X rest =
      multiply_subtract(e2 * e, polynomial(e, e2, d.ln), parts.low * multiply_add(e, d.half, half_high));
  return {B.high, (low + B.low) + rest};
}

// e^(z.high + z.low); `whole` is their sum, or near it.
template <class X>
inline ExpParts<X> exp_parts_of_two(const HighLow<X>& z, X whole) {
  const auto& d = kNatural;
  const X N = multiply_add(whole, d.inv, d.shifter), Nf = N - d.shifter;
  const SpilledWords<X> n(N);
  const X r = subtract_product(z.high, Nf, d.ln2_hi) + subtract_product(z.low, Nf, d.ln2_lo), r2 = r * r;
  const X p = multiply_add(r2, polynomial(r, r2, d.exp), r);
  X T, T_lo;
  gather_pairs(
      _tefdExpHATab[0], [&](int lane) { return n.low_byte(lane); }, T, T_lo);
  return {T, p + T_lo, scale_from<8>(n.vector())};
}

ORX_ISA_END
