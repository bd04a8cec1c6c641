// The normal distribution, f(-x) with f that of the complementary error function, for unit variance.
#pragma once
#include "erfc/complement.hpp"

namespace orx::tef {
// f(a) = erfc(a/sqrt(2))/2, e^(-a^2/2)/sqrt(2 pi) for a = j/128, and what the first lacks
extern const double vdcdfnorm_table[4928][2];
extern const double _tefdCdfNormHATab[4928];
}  // namespace orx::tef

ORX_ISA_BEGIN(orx::tef)

struct CdfNormDescription {
  static constexpr const double (*kTable)[2] = vdcdfnorm_table;
  static constexpr const double* kLowTable = _tefdCdfNormHATab;
  static constexpr bool kHalf = true;
  static constexpr double kWhole = 1;
  static constexpr int kFar = 34 * 128;
  static constexpr double kLast = 38.485408335567335;
  static constexpr double kReported = 37.74026543984266;
  static constexpr float kLastNormalSingle = 0x1.9e6602p+3f;
  template <class X>
  static X oriented(X x) {
    return bit_xor(x, broadcast_bits<X>(kSignBit<typename X::Element>));
  }
};

ORX_ISA_END
