// Cauchy: a + beta tan x, x uniform on [-pi/2, pi/2).
#include "distribution.hpp"

using namespace orx::rng;

template <class Real>
struct Cauchy {
  Real a, scale;
  static constexpr Real kHigh = Real(0x1.921fb54442d18p+0), kLow = -kHigh;
  static bool is_plain(Real) { return true; }

  template <class Math>
  void operator()(const Math& math, int count, Real* x) const {
    math.tan(count, x, x);
    for (int i = 0; i < count; ++i) x[i] = a + scale * x[i];
  }
};

ORX_FORMULA(Cauchy, nullptr, nullptr)
