// (x^2 + y^2)^(1/2), single.
#pragma once
#include <cfloat>

#include "hypot/hypot.hpp"

ORX_ISA_BEGIN(orx::tef)
// HA: in doubles, where squares of singles are exact and none is out of range.
struct sHypotHA : Kernel<float(float, float)> {
  template <class X>
  static auto rare(X x, X y) {
    return bit_or(not_at_most(magnitude(x), kLargest), not_at_most(magnitude(y), kLargest));
  }
  template <class X>
  static X eval(X x, X y) {
    return narrow(PlainHypot::root(widen(x), widen(y)));
  }
  template <class X, class Left>
  static void finish(X x, X y, Left& left) {
    finish_infinite(x, y, left);
  }

 private:
  static constexpr Row<float> kLargest = FLT_MAX;
};
using sHypotLA = Hypot<float, PlainHypot>;

ORX_ISA_END
