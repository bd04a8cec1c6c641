// x^(1/3). See cbrt/thirds.hpp.
#pragma once
#include "cbrt/thirds.hpp"

ORX_ISA_BEGIN(orx::tef)

alignas(64) inline constexpr double kCbrtTable[96][2] = {
#include "cbrt/vdcbrt.inc"
};

struct CbrtData {
  // ((1 + z)^(1/3) - 1) / z, |z| <= 1/65, to 2^-60.8 of the power and to 2^-31.2 of the power
  Row<double> c[7] = {0x1.5555555555555p-2,  -0x1.c71c71c71d1fdp-4, 0x1.f9add3c0dcd1bp-5,
                      -0x1.511e8ca324d67p-5, 0x1.ee710e7a95dbap-6,  -0x1.80af113a05c7fp-6,
                      0x1.378c467b3f2e5p-6};
  Row<double> ep[3] = {0x1.55555545e18a5p-2, -0x1.c724ea28f47aap-4, 0x1.f9c46f7be3691p-5};
};

struct CbrtPower {
  static constexpr CbrtData kData{};
  static constexpr const double (*kTable)[2] = kCbrtTable;
  static constexpr int kStep = 1;
  static constexpr bool kOdd = true;
  static constexpr int kPole = StatusOk;

  template <class X>
  static X special(X x) {
    return x + x;
  }
  // In singles: from y near |x|^(-1/3) a guess of the result, and what would be 1 if it were the result.
  template <class X>
  static X guess(X size, X y) {
    return size * y * y;
  }
  template <class X>
  static X near_one(X g, X, X y) {
    return g * y;
  }
};

ORX_ISA_END
