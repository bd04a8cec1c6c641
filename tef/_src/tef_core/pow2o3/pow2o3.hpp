// x^(2/3). See cbrt/thirds.hpp.
#pragma once
#include "cbrt/thirds.hpp"

ORX_ISA_BEGIN(orx::tef)

alignas(64) inline constexpr double kPow2o3Table[96][2] = {
#include "pow2o3/vdpow2o3.inc"
};

struct Pow2o3Data {
  // ((1 + z)^(2/3) - 1) / z, |z| <= 1/65, to 2^-61.4 of the power and to 2^-31.7 of the power
  Row<double> c[7] = {0x1.5555555555555p-1,  -0x1.c71c71c71ccdap-4, 0x1.948b0fcd91183p-5,
                      -0x1.d7f791dffad5fp-6, 0x1.3aa5043e4987bp-6,  -0x1.c69c90490c18dp-7,
                      0x1.5ae34f5941738p-7};
  Row<double> ep[3] = {0x1.5555554e63fbep-1, -0x1.c7225f9d6c3bep-4, 0x1.949c55435d8d8p-5};
};

struct Pow2o3Power {
  static constexpr Pow2o3Data kData{};
  static constexpr const double (*kTable)[2] = kPow2o3Table;
  static constexpr int kStep = 2;
  static constexpr bool kOdd = false;
  static constexpr int kPole = StatusOk;

  template <class X>
  static X special(X x) {
    return x * x;
  }
  // In singles: from y near |x|^(-1/3) a guess of the result, and what would be 1 if it were the result.
  template <class X>
  static X guess(X size, X y) {
    return size * y;
  }
  template <class X>
  static X near_one(X g, X, X y) {
    return g * (y * y);
  }
};

ORX_ISA_END
