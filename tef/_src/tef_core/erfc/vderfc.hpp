// erfc x in double: what its kernels of both precisions share.
#pragma once
#include "erfc/complement.hpp"

namespace orx::tef {
// erfc a, 2/sqrt(pi) e^(-a^2) for a = j/128, and what the first lacks
extern const double vderfc_table[3488][2];
extern const double vderfc_low_table[3488];
}  // namespace orx::tef

ORX_ISA_BEGIN(orx::tef)

struct ErfcDescription {
  static constexpr const double (*kTable)[2] = vderfc_table;
  static constexpr const double* kLowTable = vderfc_low_table;
  static constexpr bool kHalf = false;
  static constexpr double kWhole = 2;
  static constexpr int kFar = 24 * 128;
  static constexpr double kLast = 27.226017111108366;      // results are 0 behind it
  static constexpr double kReported = 26.699372268345602;  // underflow is reported behind it
  static constexpr float kLastNormalSingle = 0x1.2639bep+3f;
  template <class X>
  static X oriented(X x) {
    return x;
  }
};

ORX_ISA_END
