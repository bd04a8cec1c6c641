// Exponential: a - beta ln u, by inversion.
#include "distribution.hpp"

using namespace orx::rng;

ORX_LN_CALL_BACKS(on_any_error)

template <class Real>
struct Exponential {
  Real a, scale;
  static constexpr Real kLow = 0, kHigh = 1;
  static bool is_plain(Real u) { return u > 0; }

  template <class Math>
  void operator()(const Math& math, int count, Real* x) const {
    math.ln(count, x, x);
    // Never below a, though the logarithm may be rounded to a positive number.
    for (int i = 0; i < count; ++i) x[i] = std::max(a, a - scale * x[i]);
  }
};

ORX_FORMULA(Exponential, _vdLnCallBack, _vsLnCallBack)
