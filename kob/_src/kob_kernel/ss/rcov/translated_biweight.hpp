// The constants of the translated biweight (Rocke, Annals of Statistics 24, 1996). Its weight is 1 up to a distance M,
// falls as (1 - ((d - M)/c)^2)^2, and is 0 from M + c; rho is the integral of d times the weight. In p dimensions M
// and c follow from the breakdown point b0, the mean of rho over the largest rho, and from the asymptotic rejection
// probability, the part of normal data beyond M + c.
#pragma once

#include "_math/chi_square.hpp"

namespace orx::ss::rcov {

using extended::Real;

struct Biweight {
  Real M, c;
};

// Moments of d, d^2 being chi-square with p degrees of freedom, over a part of its range.
class Moments {
 public:
  explicit Moments(int p) : p_(p) {}
  // Of order k, with d from u to v.
  Real operator()(int k, Real u, Real v) const {
    return factor(k) * (extended::chi2_lower(p_ + k, v * v) - extended::chi2_lower(p_ + k, u * u));
  }
  Real up_to(int k, Real v) const { return factor(k) * extended::chi2_lower(p_ + k, v * v); }
  Real beyond(Real v) const { return extended::chi2_upper(p_, v * v); }

 private:
  // 2^(k/2) gamma((p + k)/2) / gamma(p/2).
  Real factor(int k) const {
    return extended::exp(extended::ln_gamma((p_ + k) / Real(2)) - extended::ln_gamma(p_ / Real(2)) +
                         k / Real(2) * extended::kLn2);
  }
  int p_;
};

// The mean of rho over d.
inline Real _vSSTBSMeanRho(int p, Real M, Real c) {
  const Moments m(p);
  const Real M2 = M * M, core = m.up_to(2, M) / 2;
  if (!(c > 0)) return core + M2 / 2 * m.beyond(M);
  const Real v = M + c, c2 = c * c, c4 = c2 * c2;
  return core + (M2 / 2 - M2 * ((M2 - 5 * c2) * M2 + 15 * c4) / (30 * c4)) * m(0, M, v) +
         (M2 * M2 / (2 * c4) + Real(0.5) - M2 / c2) * m(2, M, v) +
         (4 * M / (3 * c2) - 4 * M2 * M / (3 * c4)) * m(3, M, v) +
         (3 * M2 / (2 * c4) - 1 / (2 * c2)) * m(4, M, v) - 4 * M / (5 * c4) * m(5, M, v) +
         1 / (6 * c4) * m(6, M, v) + (c * (16 * M + 5 * c) / 30 + M2 / 2) * m.beyond(v);
}

// The largest rho.
inline Real sup_rho(Real M, Real c) { return (c / 6 + 8 * M / 15) * c + M * M / 2; }

constexpr Real kTolerance = 1e-4L;  // of both iterations, and the step of difference quotients
constexpr int kRounds = 100;

// The M that has the breakdown point when c is 0. Newton's method on twice the mean of rho less b0 times twice its
// largest value, a function that is concave and falls to the right of its maximum: from a bound on the right it comes down
// to the root.
inline Real hard_rejection(int p, Real b0) {
  Real t = extended::root(p / b0);
  for (int round = 0; round < kRounds; ++round) {
    const Real g = extended::chi2_upper(p, t * t) - b0;
    const Real y = t * t * g + p * extended::chi2_lower(p + 2, t * t), slope = 2 * t * g;
    const Real next = slope == 0 ? t / 2 : t - y / slope;
    t = next < 0 ? t / 2 : next;
    if (extended::magnitude(y) <= kTolerance) break;
  }
  return t;
}

// M and c, their sum being where the rejection probability says: Newton's method in M alone.
inline Biweight _vSSInitTBSMethod(int p, Real b0, Real arp) {
  const Real t = hard_rejection(p, b0), q = extended::root(extended::chi2_upper_quantile(p, arp));
  if (arp >= extended::chi2_upper(p, t * t)) return {q, 0};
  Real M = extended::root(p);
  if (M >= q) M = q / 2;
  for (int round = 0; round < kRounds; ++round) {
    const Real c = q - M, mean = _vSSTBSMeanRho(p, M, c), g = mean - b0 * sup_rho(M, c);
    const Real by_M = (_vSSTBSMeanRho(p, M + kTolerance, c) - mean) / kTolerance - (c / 5 + 7 * M / 15) * b0;
    const Real by_c = (_vSSTBSMeanRho(p, M, c + kTolerance) - mean) / kTolerance;
    M -= g / (by_M - by_c);
    if (!(M > 0 && M < q)) M = (M + q) / 2;
    if (extended::magnitude(g) <= kTolerance) return {M, q - M};
  }
  return {q, 0};
}

}  // namespace orx::ss::rcov
