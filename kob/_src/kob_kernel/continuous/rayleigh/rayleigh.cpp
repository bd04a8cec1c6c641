// Rayleigh: a + beta sqrt(-ln u), by inversion. There is no factor 2 below the root.
#include "distribution.hpp"

using namespace orx::rng;

ORX_LN_CALL_BACKS(on_pole)

template <class Real>
struct Rayleigh {
  Real a, scale;
  static constexpr Real kLow = 0, kHigh = 1;
  static bool is_plain(Real u) { return u > 0; }

  template <class Math>
  void operator()(const Math& math, int count, Real* x) const {
    math.ln(count, x, x);
    for (int i = 0; i < count; ++i) x[i] = std::max(a, a + scale * root(0 - x[i]));
  }
};

ORX_FORMULA(Rayleigh, _vdLnCallBack, _vsLnCallBack)
