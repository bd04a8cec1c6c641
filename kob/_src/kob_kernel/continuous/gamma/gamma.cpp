// Gamma with shape alpha, by one of four methods:
//   alpha > 1         G. Marsaglia, W. W. Tsang, A simple method for generating gamma variables, ACM Trans. Math.
//                     Softw. 26 (2000).
//   alpha = 1         exponential
//   0.6 <= alpha < 1  rejection from the Weibull law; J. Vaduva, On computer generation of gamma random variables by
//                     rejection and composition procedures, Math. Operationsforsch. Stat. 8 (1977).
//   alpha < 0.6       rejection from a power law with a Weibull tail; L. Devroye, Non-Uniform Random Variate
//                     Generation, Springer (1986), IX.3.6: the exponential power density.
#include "box_muller.hpp"
#include "kept.hpp"
#include "rejection.hpp"

using namespace orx::rng;

ORX_LN_CALL_BACKS(on_pole)

namespace {

// The second half of a pair of normal numbers. When there is none, Normal is -1; but that and every other negative
// number can be one that waits, so the second word tells.
template <class Real>
struct PendingNormal {
  Real Normal, Waits;
};
template <class Real>
constexpr orx::brng::ChunkKind kPendingNormal = sizeof(Real) == 8 ? orx::brng::kChunkGammaDouble
                                                                  : orx::brng::kChunkGammaSingle;

// `count` normal numbers to x, which has room for two more.
template <class Real>
int normals(const VectorMath& math, KobStream* stream, PendingNormal<Real>& pending, int count, Real* x) {
  int done = 0;
  if (pending.Waits != 0) x[done++] = pending.Normal;
  const int wanted = count - done, pairs = (wanted + 1) / 2;
  Real* const fresh = x + done;
  const int status = in_blocks(2 * pairs, [&](int first, int block) {
    const int drawn = uniform(stream, block, fresh + first);
    if (drawn >= 0) to_normals(math, block / 2, fresh + first, fresh + first);
    return drawn;
  });
  if (status < 0) return status;
  pending = wanted % 2 ? PendingNormal<Real>{x[count], 1} : PendingNormal<Real>{-1, 0};
  return status;
}

struct MarsagliaTsang {
  double d, c;

  explicit MarsagliaTsang(double alpha) : d(alpha - 0.3333333333333333), c(1 / root(9 * alpha - 3)) {}

  // Not below 0 for numbers that are accepted without a logarithm, -infinity for those that cannot be.
  template <class Real>
  double squeeze(Real x, Real u) const {
    const double square = double(x) * x;
    return 1 + c * x > 0 ? 1 - 0.0331 * (square * square) - u : -__builtin_inf();
  }

  // The exact test, for numbers that the squeeze leaves open. In double for every precision: with a large alpha
  // the terms nearly cancel.
  template <class Real>
  void decide(const VectorMath& math, int count, const Real* x, const Real* u, double* margin) const {
    int32_t open[kBlock];
    const int found = where(margin, count, open, [](Doubles m) {
      return (m < Doubles{}) & (m > orx::simd::spread(-__builtin_inf()));
    });
    double cube[kBlock], logs[2 * kBlock];
    for (int k = 0; k < found; ++k) {
      const double t = 1 + c * x[open[k]];
      cube[k] = t * t * t;
      logs[k] = t;
      logs[found + k] = u[open[k]];
    }
    math.ln(2 * found, logs, logs);
    for (int k = 0; k < found; ++k) {
      const double normal = x[open[k]], of_cube = 3 * logs[k], of_u = logs[found + k];
      margin[open[k]] = 0.5 * normal * normal + d * (1 - cube[k] + of_cube) - of_u;
    }
  }
};

template <class Real>
int above_one(const VectorMath& math, KobStream* stream, int n, Real* r, Real alpha, Real a, Real beta) {
  if (n < 1) return KOB_STATUS_OK;
  PendingNormal<Real>* pending;
  const int status = keep(stream, kPendingNormal<Real>, {-1, 0}, &pending);
  if (status != KOB_STATUS_OK) return status;
  const MarsagliaTsang method(alpha);
  const Real d = Real(method.d), c = Real(method.c);
  return by_rejection(n, r, kBlock, [&](int count, Real* gamma, double* margin) {
    Real x[kBlock + 2], u[kBlock];
    int drawn = normals(math, stream, *pending, count, x);
    if (drawn >= 0) drawn = uniform(stream, count, u);
    if (drawn < 0) return drawn;
    for (int i = 0; i < count; ++i) {
      const Real t = 1 + c * x[i];
      gamma[i] = a + beta * (d * (t * t * t));
      margin[i] = method.squeeze(x[i], u[i]);
    }
    method.decide(math, count, x, u, margin);
    return drawn;
  });
}

// Of exponential numbers Z and E, Z^(1 / alpha) is accepted when Z + E is not below it and a constant together.
template <class Real>
int near_one(const VectorMath& math, KobStream* stream, int n, Real* r, Real alpha, Real a, Real beta) {
  const double inverse = 1.0 / alpha, ln_alpha = math.accurate_ln(alpha);
  const Real most = Real((1 - double(alpha)) * math.accurate_exp(alpha / (1.0 - alpha) * ln_alpha));
  const Real half_exponent = Real(0.5 * inverse);
  return by_rejection(n, r, kBlock, [&](int count, Real* x, double* margin) {
    Real logs[2 * kBlock];  // -Z, then -E
    const int status = uniform(stream, 2 * count, logs);
    if (status < 0) return status;
    math.ln(2 * count, logs, logs);
    for (int i = 0; i < count; ++i) x[i] = 0 - logs[i];
    math.ln(count, x, x);
    for (int i = 0; i < count; ++i) x[i] *= half_exponent;
    exp_of_halves(math, count, x);
    for (int i = 0; i < count; ++i) {
      margin[i] = double(0 - logs[i] - logs[count + i]) - double(most + x[i]);
      x[i] = a + beta * x[i];
    }
    return status;
  });
}

// x^alpha is uniform below 1 - alpha, and above it alpha V + 1 - alpha with V exponential; with E exponential, x is
// accepted when V + E (V = 0 in the first case) is not below it.
template <class Real>
int below_six_tenths(const VectorMath& math, KobStream* stream, int n, Real* r, Real alpha, Real a,
                     Real beta) {
  const Real inverse = 1 / alpha, complement = 1 - alpha, half_exponent = Real(0.5) * inverse;
  return by_rejection(n, r, kBlock / 2, [&](int count, Real* x, double* margin) {
    Real u[kBlock], v[kBlock / 2], logs[kBlock];
    const int status = uniform(stream, 2 * count, u);
    if (status < 0) return status;
    for (int i = 0; i < count; ++i) v[i] = (1 - u[i]) * inverse;
    math.ln(count, v, v);
    for (int i = 0; i < count; ++i) {
      const bool tail = u[i] > complement;
      v[i] = tail ? std::max(-v[i], Real(0)) : 0;
      logs[i] = tail ? complement + alpha * v[i] : u[i];
      logs[count + i] = u[count + i];
    }
    math.ln(2 * count, logs, logs);  // of x^alpha, then -E
    for (int i = 0; i < count; ++i) x[i] = half_exponent * logs[i];
    exp_of_halves(math, count, x);
    for (int i = 0; i < count; ++i) {
      margin[i] = double(v[i] - logs[count + i] - x[i]);
      x[i] = a + beta * x[i];
    }
    return status;
  });
}

template <class Real>
int gamma(const VectorMath& math, KobStream* stream, int n, Real* r, Real alpha, Real a, Real beta) {
  if (!is_shape(alpha)) return KOB_ERROR_BAD_ARG;
  if (alpha > 1) return above_one(math, stream, n, r, alpha, a, beta);
  if (alpha == 1) {
    const int status = exponential(stream, n, r);
    for (int i = 0; status >= 0 && i < n; ++i) r[i] = a + beta * r[i];
    return status;
  }
  if (alpha < Real(0.6)) return below_six_tenths(math, stream, n, r, alpha, a, beta);
  return near_one(math, stream, n, r, alpha, a, beta);
}

}  // namespace

ORX_API int _kobdRngGamma(int, KobStream* stream, int n, double r[], double alpha, double a, double beta) {
  return framed<gamma<double>>(_vdLnCallBack, stream, n, r, alpha, a, beta);
}
ORX_API int _kobsRngGamma(int, KobStream* stream, int n, float r[], float alpha, float a, float beta) {
  return framed<gamma<float>>(_vsLnCallBack, stream, n, r, alpha, a, beta);
}
