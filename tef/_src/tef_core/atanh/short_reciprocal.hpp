// ln u by a short number R near 1/u: ln(1/R) comes from the logarithm's table, and what is left, ln(u R), from a formula that
// does not cancel. Where u is near 1 R is made 1, so that nothing is left but the formula.
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
            kShortReciprocal.leading)) {}

  // ln(1/R) + e + q.
  X log_ha(X e, X q) const {
    const SpilledWords<X> words = row_words();
    return tef::log_ha<LnDescription>(
        exponent(), [&](int lane) { return row(words.high(lane)); }, e, q);
  }

 private:
  X exponent() const { return kShortReciprocal.bias - exponent_field(R); }
  // The logarithm's table goes by R as an integer from 512 on.
  SpilledWords<X> row_words() const { return SpilledWords<X>(bit_and(R, kShortReciprocal.index)); }
  static int row(int word) { return LnDescription::kFirst + (word >> 11); }
};

ORX_ISA_END
