// Beta with shapes p and q, by a method for each sort of pair:
//   both below 1   M. D. Johnk, Erzeugung von betaverteilten und gammaverteilten Zufallszahlen, Metrika 8 (1964), or
//                  A. C. Atkinson, J. Whittaker, A switching algorithm for the generation of beta random variables
//                  with at least one parameter less than 1, J. R. Stat. Soc. A 139 (1976)
//   one below 1    A. C. Atkinson, J. Whittaker, Algorithm AS 134: The generation of beta random variables with one
//                  parameter greater than and one parameter less than 1, Appl. Stat. 28 (1979)
//   both above 1   R. C. H. Cheng, Generating beta variates with nonintegral shape parameters, Commun. ACM 21 (1978),
//                  algorithm BB
//   one equal to 1 inversion
#include "rejection.hpp"

using namespace orx::rng;

ORX_LN_CALL_BACKS(on_pole)

namespace {

template <class Real>
constexpr Real kMostExponent = sizeof(Real) == 8 ? 700 : 85;  // whose exponential is a number

// x = u1^(1/p) and y = u2^(1/q) are accepted when they are not above 1 together; the number is x / (x + y). With
// small shapes both are often too small for a number: the quotient is formed of the logarithms.
template <class Real>
int johnk(const VectorMath& math, KobStream* stream, int n, Real* r, Real p, Real q, Real a, Real beta) {
  const Real of_p = 1 / p, of_q = 1 / q;
  return by_rejection(n, r, kBlock, [&](int count, Real* number, double* margin) {
    Real logs[2 * kBlock], half_difference[kBlock];
    const int status = uniform(stream, 2 * count, logs);
    if (status < 0) return status;
    math.ln(2 * count, logs, logs);
    for (int i = 0; i < count; ++i) {
      const Real x = of_p * logs[i], y = of_q * logs[count + i];
      half_difference[i] = Real(0.5) * (x - y);
      logs[i] = std::max(x, -kMostExponent<Real>);
      logs[count + i] = std::max(y, -kMostExponent<Real>);
    }
    math.exp(2 * count, logs, logs);
    exp_of_halves(math, count, half_difference);
    for (int i = 0; i < count; ++i) {
      margin[i] = 1 - (double(logs[i]) + double(logs[count + i]));
      const Real quotient = half_difference[i];
      number[i] = std::min(a + beta, a + beta * (quotient / (1 + quotient)));
    }
    return status;
  });
}

// Atkinson and Whittaker: [0, 1] is parted at t. Below it the proposal is a power of x, above it a power of 1 - x;
// what is left of the density is the acceptance, whose logarithm is `left` or `right` times that of the other factor
// over its largest value there.
struct Parts {
  double t, weight_below;       // the probability of the part below t
  double left, ln_left_most;    // -ln of acceptance: left (ln(1 - x) - ln_left_most)
  double right, ln_right_most;  // right (ln x - ln_right_most)
};

// Both below 1: each factor is largest at t.
Parts switching(const VectorMath& math, double p, double q) {
  const double s = root(p * (1 - p)), t = s / (s + root(q * (1 - q)));
  return {t, q * t / (q * t + p * (1 - t)), 1 - q, math.accurate_ln(1 - t), 1 - p, math.accurate_ln(t)};
}

// p below 1, q above: 1 - x is largest at 0.
Parts atkinson2(const VectorMath& math, double p, double q) {
  const double t = (1 - p) / (q + 1 - p);
  const double power = math.accurate_exp(q * math.accurate_ln(1 - t));
  return {t, q * t / (q * t + p * power), 1 - q, 0, 1 - p, math.accurate_ln(t)};
}

template <class Real>
int in_two_parts(const VectorMath& math, KobStream* stream, int n, Real* r, Real p, Real q, Real a, Real beta,
                 const Parts& parts, bool mirrored) {
  const Real below = Real(parts.weight_below), t = Real(parts.t), rest = Real(1 - parts.t);
  const Real to_below = Real(1 / parts.weight_below), to_above = Real(1 / (1 - parts.weight_below));
  const Real half_of_p = Real(0.5) / p, half_of_q = Real(0.5) / q;
  const Real left = Real(parts.left), left_most = Real(parts.left * parts.ln_left_most);
  const Real right = Real(parts.right), right_most = Real(parts.right * parts.ln_right_most);
  // The number is `part` or 1 - part, below t and above it, or the other way round.
  const Real shift_below = mirrored ? 1 : 0, shift_above = 1 - shift_below;
  const Real sign_below = mirrored ? -1 : 1, sign_above = -sign_below;
  return by_rejection(n, r, kBlock, [&](int count, Real* number, double* margin) {
    Real u[2 * kBlock], logs[2 * kBlock];
    const int status = uniform(stream, 2 * count, u);
    if (status < 0) return status;
    // With a large shape 1 - x is close to 1, and x what is left of it: in double for every precision.
    double part[kBlock];
    for (int i = 0; i < count; ++i) part[i] = u[i] <= below ? u[i] * to_below : (1 - u[i]) * to_above;
    math.ln(count, part, part);
    for (int i = 0; i < count; ++i) part[i] *= u[i] <= below ? half_of_p : half_of_q;
    exp_of_halves(math, count, part);
    for (int i = 0; i < count; ++i) {
      part[i] *= u[i] <= below ? t : rest;  // x below, 1 - x above
      logs[i] = Real(1 - part[i]);
      logs[count + i] = u[count + i];
    }
    math.ln(2 * count, logs, logs);  // of the other factor, and of the second uniform
    for (int i = 0; i < count; ++i) {
      const Real factor = u[i] <= below ? left : right, most = u[i] <= below ? left_most : right_most;
      margin[i] = double(most - factor * logs[i] - logs[count + i]);
      const Real shift = u[i] <= below ? shift_below : shift_above,
                 sign = u[i] <= below ? sign_below : sign_above;
      number[i] = std::min(a + beta, a + beta * Real(shift + sign * part[i]));
    }
    return status;
  });
}

template <class Real>
int _Atkinson2(const VectorMath& math, KobStream* stream, int n, Real* r, Real p, Real q, Real a, Real beta) {
  const bool mirrored = p > q;
  if (mirrored) std::swap(p, q);
  return in_two_parts(math, stream, n, r, p, q, a, beta, atkinson2(math, p, q), mirrored);
}

// Cheng's algorithm BB; names are the paper's.
template <class Real>
int cheng(const VectorMath& math, KobStream* stream, int n, Real* r, Real p, Real q, Real shift, Real scale) {
  const double a = std::min(p, q), b = std::max(p, q), alpha = a + b;
  const double beta = root((alpha - 2) / (2 * a * b - alpha)), gamma = a + 1 / beta;
  const bool is_smaller = a == double(p);
  constexpr double ln4 = 1.3862943611198906, one_plus_ln5 = 2.6094379124341003;
  return by_rejection(n, r, kBlock, [&](int count, Real* number, double* margin) {
    Real u[2 * kBlock], logs[2 * kBlock];
    const int status = uniform(stream, 2 * count, u);
    if (status < 0) return status;
    for (int i = 0; i < count; ++i) {
      logs[i] = u[i];
      logs[count + i] = 1 - u[i];
    }
    math.ln(2 * count, logs, logs);
    // With large shapes w must fit v closely: its exponential is taken in double for every precision.
    double v[kBlock], w[kBlock];
    for (int i = 0; i < count; ++i) {
      const double logit = beta * (double(logs[i]) - double(logs[count + i]));
      v[i] = std::min(std::max(logit, -700.0), 700.0);
    }
    math.exp(count, v, w);
    for (int i = 0; i < count; ++i) {
      w[i] *= a;
      const double first = u[i], z = first * first * u[count + i];
      margin[i] = a + gamma * v[i] - ln4 - w[i] + one_plus_ln5 - 5 * z;
      const double part = (is_smaller ? w[i] : b) / (b + w[i]);
      number[i] = std::min(shift + scale, shift + scale * Real(part));
    }
    int32_t open[kBlock];
    const int found = where(margin, count, open, [](Doubles m) { return m < Doubles{}; });
    double tests[2 * kBlock];
    for (int k = 0; k < found; ++k) {
      const int i = open[k];
      const double first = u[i];
      tests[k] = first * first * u[count + i];
      tests[found + k] = alpha / (b + w[i]);
    }
    math.ln(2 * found, tests, tests);
    for (int k = 0; k < found; ++k) {
      const int i = open[k];
      margin[i] = gamma * v[i] - ln4 + alpha * tests[found + k] - tests[k];
    }
    return status;
  });
}

// x^p is uniform, or (1 - x)^q: then x is formed without 1 - x, which for a large q is near 1.
template <class Real>
int power(const VectorMath& math, KobStream* stream, int n, Real* r, Real shape, bool mirrored, Real a,
          Real beta) {
  const Real exponent = 1 / shape;
  return transformed_uniforms<Real>(stream, n, r, 0, 1, [&](int count, Real* x) {
    math.ln(count, x, x);
    for (int i = 0; i < count; ++i) x[i] *= mirrored ? exponent : exponent / 2;
    if (mirrored)
      math.expm1(count, x, x);
    else
      exp_of_halves(math, count, x);
    for (int i = 0; i < count; ++i) {
      const Real y = std::min(std::max(mirrored ? -x[i] : x[i], Real(0)), Real(1));
      x[i] = std::min(a + beta, a + beta * y);
    }
  });
}

template <class Real>
int beta_numbers(const VectorMath& math, int method, KobStream* stream, int n, Real* r, Real p, Real q,
                 Real a, Real beta) {
  if (!is_shape(p) || !is_shape(q)) return KOB_ERROR_BAD_ARG;
  if (p == 1 && q == 1) {
    if constexpr (sizeof(Real) == 8)
      return _kobdRngUniform(method, stream, n, r, a, a + beta);
    else
      return _kobsRngUniform(method, stream, n, r, a, a + beta);
  }
  if (q == 1) return power(math, stream, n, r, p, false, a, beta);
  if (p == 1) return power(math, stream, n, r, q, true, a, beta);
  if (p > 1 && q > 1) return cheng(math, stream, n, r, p, q, a, beta);
  if (p > 1 || q > 1) return _Atkinson2(math, stream, n, r, p, q, a, beta);
  if (q + p * p * 0.8522552176537243 - 0.9562409713408151 > 0)
    return in_two_parts(math, stream, n, r, p, q, a, beta, switching(math, p, q), false);
  return johnk(math, stream, n, r, p, q, a, beta);
}

}  // namespace

ORX_API int _kobdRngBeta(int method, KobStream* stream, int n, double r[], double p, double q, double a,
                         double beta) {
  return framed<beta_numbers<double>>(_vdLnCallBack, method, stream, n, r, p, q, a, beta);
}
ORX_API int _kobsRngBeta(int method, KobStream* stream, int n, float r[], float p, float q, float a,
                         float beta) {
  return framed<beta_numbers<float>>(_vsLnCallBack, method, stream, n, r, p, q, a, beta);
}
