// What the inverse hyperbolic functions of double precision share.
//
// Each is ln u of a u of its own, not below 1. With R near 1/u, of ten bits, it is
//
//   ln(1/R) + asinh d,   d = sinh(ln(u R)) = (u R - 1/(u R)) / 2,
//
// or the same with another odd function of u R. The first term comes from the logarithm's table. The second is a small
// part of the sum, and its formulas do not cancel, so that u is never needed in more than a double. Where the argument
// is small R is made 1: then ln(1/R) is 0, d is exact, and the polynomial, which reaches that far, is the result.
#pragma once
#include "ln/vdln.hpp"

ORX_ISA_BEGIN(orx::tef)

struct ShortReciprocalData {
  Row<double> rounding = 0x1.004p+0;           // a product with it and a cut round to ten bits
  Row<uint64_t> leading = 0xFFFFF80000000000;  // the bits that are left
  Row<uint64_t> index = 0x000FF80000000000;    // those of them that tell the row of the logarithm's table
  Row<double> bias = 2045.0;                   // of the logarithm's table: 1022 + 1023
  Row<double> one = 1.0;
};
inline constexpr ShortReciprocalData kShortReciprocal{};

template <class X>
class ShortReciprocal {
 public:
  X R;

  // From an approximation, not above 1, and a mask of lanes where R is to be 1.
  template <class M>
  ShortReciprocal(X approximation, M small)
      : R(bit_and(
            max(approximation * kShortReciprocal.rounding, keep(small, constant<X>(kShortReciprocal.one))),
            kShortReciprocal.leading)),
        words_(bit_and(R, kShortReciprocal.index)) {}

  // ln(1/R) + e + q.
  X log_ha(X e, X q) const { return tef::log_ha<LnDescription>(exponent(), *this, e, q); }
  X log_la(X e, X q) const { return tef::log_la<LnDescription>(exponent(), *this, e, q); }

  // The logarithm's table goes by R as an integer from 512 on.
  int operator()(int lane) const { return LnDescription::kFirst + (words_.high(lane) >> 11); }

 private:
  X exponent() const { return kShortReciprocal.bias - exponent_field(R); }

  SpilledWords<X> words_;
};

// asinh d = d + rest; the rest from d, or from 0 where d is so small that its square would underflow. |d| <= 1/64:
// to 2^-59.8 of asinh d, and to 2^-30.2 of asinh d
struct AsinhRestData {
  Row<double> c[3] = {-0x1.55555555549ecp-3, 0x1.333332a8af95dp-4, -0x1.6d98fc1fe5445p-5};
  Row<double> ep = -0x1.554d61a777aacp-3;
};
inline constexpr AsinhRestData kAsinhRest{};
template <class X>
inline X asinh_rest(X d) {
  const X d2 = d * d;
  return (d * d2) * horner(d2, kAsinhRest.c);
}
template <class X>
inline X asinh_rest_ep(X d) {
  return (d * d * d) * kAsinhRest.ep;
}

ORX_ISA_END
