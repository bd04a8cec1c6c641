// x^(-1/3). See cbrt/thirds.hpp.
#pragma once
#include "cbrt/thirds.hpp"

ORX_ISA_BEGIN(orx::tef)

alignas(64) inline constexpr double kInvCbrtTable[96][2] = {
#include "invcbrt/vdinvcbrt.inc"
};

struct InvCbrtData {
  // ((1 + z)^(-1/3) - 1) / z, |z| <= 1/65, to 2^-58.3 of the power and to 2^-29.4 of the power
  Row<double> c[7] = {-0x1.5555555555555p-2, 0x1.c71c71c71e6b3p-3,  -0x1.61f9add3c7c23p-3,
                      0x1.26fabac02d604p-3,  -0x1.ff4c31524c35bp-4, 0x1.c6a88b58e9203p-4,
                      -0x1.9b6712c678615p-4};
  Row<double> ep[3] = {-0x1.5555553df0dcbp-2, 0x1.c72b4494596dcp-3, -0x1.6209d8eb27318p-3};
};

struct InvCbrtPower {
  static constexpr InvCbrtData kData{};
  static constexpr const double (*kTable)[2] = kInvCbrtTable;
  static constexpr int kStep = -1;
  static constexpr bool kOdd = true;
  static constexpr int kPole = StatusSingularity;

  template <class X>
  static X special(X x) {
    return broadcast<X>(1) / x;
  }
  // In singles: from y near |x|^(-1/3) a guess of the result, and what would be 1 if it were the result.
  template <class X>
  static X guess(X, X y) {
    return y;
  }
  template <class X>
  static X near_one(X, X size, X y) {
    return (size * y) * (y * y);
  }
};

ORX_ISA_END
