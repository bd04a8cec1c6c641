// Numbers computed again from the uniforms of the same stream, where a formula fixes them; and what a formula fixes for
// ends and parameters.
#include <array>
#include <cmath>
#include <functional>

#include "support/stream.hpp"

namespace {

constexpr int kNumbers = 4099;

// Every number of draw(stream, n, r) against expected(uniforms of the number): so many of them on [low, high). To 24
// bits in double and 10 in single precision, of the fast class of vector math and what the rest of a formula makes of it.
template <class Real>
void expect_formula(const char* name, int uniforms, Real low, Real high,
                    const std::function<int(KobStream*, int, Real*)>& draw,
                    const std::function<double(const Real*)>& expected) {
  const double relative = sizeof(Real) == 8 ? 0x1p-24 : 0x1p-10;
  const Stream s(KOB_BRNG_MT19937), t(KOB_BRNG_MT19937);
  std::vector<Real> r(kNumbers);
  ASSERT_EQ(draw(s, kNumbers, r.data()), 0) << name;
  const std::vector<Real> u = t.reals<Real>(uniforms * kNumbers, low, high);
  for (int i = 0; i < kNumbers; ++i) {
    const double x = expected(&u[size_t(i) * uniforms]);
    ASSERT_NEAR(r[i], x, relative * (std::abs(x) + 1)) << name << " " << i;
  }
}

#define EXPECT_FORMULA(Name, uniforms, low, high, arguments, expression)                   \
  expect_formula<double>(                                                                  \
      "d" #Name, uniforms, low, high,                                                      \
      [](KobStream* s, int n, double* r) { return _kobdRng##Name(ORX_UNPACK arguments); }, \
      [](const double* u) -> double { return expression; });                               \
  expect_formula<float>(                                                                   \
      "s" #Name, uniforms, float(low), float(high),                                        \
      [](KobStream* s, int n, float* r) { return _kobsRng##Name(ORX_UNPACK arguments); },  \
      [](const float* u) -> double { return expression; })
#define ORX_UNPACK(...) __VA_ARGS__

TEST(Formula, FixesEachNumberByItsUniforms) {
  using std::log, std::sqrt, std::sin, std::pow, std::exp, std::tan;
  EXPECT_FORMULA(Exponential, 1, 0, 1, (0, s, n, r, 1, 2), 1 - 2 * log(double(*u)));
  EXPECT_FORMULA(Cauchy, 1, -M_PI / 2, M_PI / 2, (0, s, n, r, 1, 2), 1 + 2 * tan(double(*u)));
  EXPECT_FORMULA(Laplace, 2, 0, 1, (0, s, n, r, 1, 2), 1 + (u[1] > 0.5 ? 2 : -2) * log(double(*u)));
  EXPECT_FORMULA(Rayleigh, 1, 0, 1, (0, s, n, r, 1, 2), 1 + 2 * sqrt(-log(double(*u))));
  EXPECT_FORMULA(Weibull, 1, 0, 1, (0, s, n, r, 1.5, 1, 2), 1 + 2 * pow(-log(double(*u)), 1 / 1.5));
  EXPECT_FORMULA(Weibull, 1, 0, 1, (0, s, n, r, 1, 1, 2), 1 - 2 * log(double(*u)));
  EXPECT_FORMULA(Gumbel, 1, 0, 1, (0, s, n, r, 1, 2), 1 + 2 * log(-log(double(*u))));
  EXPECT_FORMULA(Gamma, 1, 0, 1, (0, s, n, r, 1, 1, 2), 1 - 2 * log(double(*u)));
  EXPECT_FORMULA(Beta, 1, 0, 1, (0, s, n, r, 0.5, 1, 1, 2), 1 + 2 * pow(double(*u), 2));
  EXPECT_FORMULA(Beta, 1, 0, 1, (0, s, n, r, 1, 0.5, 1, 2), 1 + 2 * (1 - pow(double(*u), 2)));
  EXPECT_FORMULA(Beta, 1, 1, 3, (0, s, n, r, 1, 1, 1, 2), double(*u));
  EXPECT_FORMULA(Gaussian, 2, 0, 1, (0, s, n, r, 1, 2),
                 1 + 2 * sqrt(-2 * log(double(*u))) * sin(2 * M_PI * double(u[1])));
}

// Numbers far below 1 keep their digits, though their complements to 1 are what is made of the uniforms.
TEST(Formula, SmallBetaNumbersOfALargeShape) {
  const Stream s(KOB_BRNG_MT19937), t(KOB_BRNG_MT19937);
  std::vector<float> r(kNumbers);
  ASSERT_EQ(_kobsRngBeta(0, s, kNumbers, r.data(), 1, 1000, 0, 1), 0);
  const std::vector<float> u = t.reals<float>(kNumbers, 0, 1);
  for (size_t i = 0; i < r.size(); ++i) {
    const double x = -std::expm1(std::log(double(u[i])) / 1000);
    ASSERT_NEAR(r[i], x, 0x1p-10 * x) << u[i];
  }
}

TEST(Formula, NormalNumbersByInversion) {
  const Stream s(KOB_BRNG_MT19937), t(KOB_BRNG_MT19937);
  std::vector<double> r(200000);
  ASSERT_EQ(_kobdRngGaussian(2, s, 200000, r.data(), 0, std::sqrt(0.5)), 0);  // erfinv itself
  const std::vector<double> u = t.reals(200000, -1.0, 1.0);
  for (size_t i = 0; i < r.size(); ++i) {
    // In the tails by the complement, where the function itself has no digits left.
    const double back = u[i] > 0.5 ? std::erfc(r[i]) - (1 - u[i]) : std::erf(r[i]) - u[i];
    const double slope = 2 / std::sqrt(M_PI) * std::exp(-r[i] * r[i]);
    ASSERT_NEAR(back / slope, 0, 0x1p-25 * std::abs(r[i]) + 1e-15) << u[i];
  }
}

// Box and Muller's second method gives sine and cosine half in turn.
TEST(Formula, BothHalvesOfBoxMuller) {
  const Stream s(KOB_BRNG_MT19937), t(KOB_BRNG_MT19937);
  std::vector<double> r(4001);
  ASSERT_EQ(_kobdRngGaussian(1, s, 4001, r.data(), 1, 2), 0);
  const std::vector<double> u = t.reals(4002);
  for (size_t i = 0; i < r.size(); ++i) {
    const double angle = 2 * M_PI * u[i | 1], radius = std::sqrt(-2 * std::log(u[i & ~size_t(1)]));
    ASSERT_NEAR(r[i], 1 + 2 * radius * (i % 2 ? std::cos(angle) : std::sin(angle)), 1e-6) << i;
  }
  // The pair that is begun survives another method and a failure.
  EXPECT_EQ(s.words(2), t.words(2));
  double other[3], half, expected = 1 + 2 * std::sqrt(-2 * std::log(u[4000])) * std::cos(2 * M_PI * u[4001]);
  ASSERT_EQ(_kobdRngGaussian(2, s, 3, other, 0, 1), 0);
  EXPECT_EQ(_kobdRngGaussian(3, s, 3, other, 0, 1), KOB_ERROR_METHOD);
  EXPECT_EQ(_kobdRngGaussian(-1, s, 3, other, 0, 1), KOB_ERROR_METHOD);
  t.reals(3);
  ASSERT_EQ(_kobdRngGaussian(1 | 1 << 30, s, 1, &half, 1, 2), 0);
  EXPECT_NEAR(half, expected, 1e-6);
  EXPECT_EQ(s.words(2), t.words(2));
}

// Of a large shape nearly all tries are accepted: each takes a normal number and a uniform. The second half of a pair waits
// in the stream, of either sign.
TEST(Formula, GammaNumbersOfALargeShapeInSingleCalls) {
  const double alpha = 1e6, d = alpha - 1.0 / 3, c = 1 / std::sqrt(9 * alpha - 3);
  const Stream s(KOB_BRNG_MT19937), t(KOB_BRNG_MT19937);
  for (int pair = 0; pair < 100; ++pair) {
    const std::vector<double> u = t.reals(2);
    const double angle = 2 * M_PI * u[1], radius = std::sqrt(-2 * std::log(u[0]));
    for (const double normal : {radius * std::sin(angle), radius * std::cos(angle)}) {
      double r;
      ASSERT_EQ(_kobdRngGamma(0, s, 1, &r, alpha, 0, 1), 0);
      ASSERT_NEAR(r / (d * std::pow(1 + c * normal, 3)), 1, 1e-9) << pair;
      t.reals(1);
    }
  }
  EXPECT_EQ(s.words(2), t.words(2));
}

// A register of zeros: uniforms of 0, and of -1 where the interval begins there.
TEST(Formula, StandsInForWhatAUniformOfZeroLeavesUndefined) {
  const double ln_of_zero = -744.4400719213812;
  double d;
  float f;
  const auto zeros = [] { return Stream(KOB_BRNG_R250, Words(250)); };
  ASSERT_EQ(_kobdRngExponential(0, zeros(), 1, &d, 1, 2), 0);
  EXPECT_DOUBLE_EQ(d, 1 - 2 * ln_of_zero);
  ASSERT_EQ(_kobsRngExponential(0, zeros(), 1, &f, 1, 2), 0);
  EXPECT_FLOAT_EQ(f, 1 + 2 * 103.27893f);
  ASSERT_EQ(_kobdRngGaussian(2, zeros(), 1, &d, 1, 2), 0);
  EXPECT_DOUBLE_EQ(d, 1 - 0.7670519064056041 * std::sqrt(2.0) * 2);
  ASSERT_EQ(_kobsRngGaussian(2, zeros(), 1, &f, 1, 2), 0);
  EXPECT_FLOAT_EQ(f, 1 - 1.0837466f * std::sqrt(2.0f) * 2);
  ASSERT_EQ(_kobdRngCauchy(0, zeros(), 1, &d, 0, 1), 0);
  EXPECT_NEAR(d / std::tan(-M_PI / 2), 1, 1e-6);
}

// H2PE by its steps, one try after the other, with the exact test alone: of a block of tries come all u, then all v.
TEST(Formula, HypergeometricNumbersTryByTry) {
  const int lot = 2000, sample = 400, marked = 500, n = 20000;
  const auto ln_f = [=](double y) {
    return -std::lgamma(y + 1) - std::lgamma(marked - y + 1) - std::lgamma(sample - y + 1) -
           std::lgamma(lot - marked - sample + y + 1);
  };
  const auto ratio = [=](double y) {
    return (marked - y + 1) * (sample - y + 1) / (y * (lot - marked - sample + y));
  };
  const double fraction = double(marked) / lot, mode = std::floor((sample + 1.0) * (marked + 1) / (lot + 2));
  const double variance = (lot - sample) / (lot - 1.0) * sample * fraction * (1 - fraction);
  const double d = std::floor(1.5 * std::sqrt(variance)) + 0.5, xl = mode - d + 0.5, xr = mode + d + 0.5;
  const double lambda_l = std::log(ratio(xl)), lambda_r = -std::log(ratio(xr));
  const double p1 = 2 * d, p2 = p1 + std::exp(ln_f(xl) - ln_f(mode)) / lambda_l;
  const double p3 = p2 + std::exp(ln_f(xr - 1) - ln_f(mode)) / lambda_r;

  const Stream s(KOB_BRNG_MT19937), t(KOB_BRNG_MT19937);
  std::vector<int32_t> r(n), expected;
  ASSERT_EQ(_kobiRngHypergeometric(0, s, n, r.data(), lot, sample, marked), 0);
  while (expected.size() < size_t(n)) {
    const int tries = std::min(n - int(expected.size()), 1024);
    const std::vector<float> uniforms = t.reals<float>(2 * tries, 0, 1);
    for (int i = 0; i < tries; ++i) {
      const double u = p3 * double(uniforms[i]);
      double y, v = uniforms[tries + i];
      if (u <= p1) {
        y = std::floor(xl + u);
      } else if (u <= p2) {
        y = std::floor(xl + std::log(v) / lambda_l);
        v *= (u - p1) * lambda_l;
      } else {
        y = std::floor(xr - std::log(v) / lambda_r);
        v *= (u - p2) * lambda_r;
      }
      if (y >= 0 && y <= sample && std::log(v) <= ln_f(y) - ln_f(mode)) expected.push_back(int32_t(y));
    }
  }
  EXPECT_EQ(r, expected);
  EXPECT_EQ(s.words(2), t.words(2));
}

// ---- parameters at the edges of methods ----

TEST(Counts, OfDegenerateLawsTakeNoUniform) {
  const Stream s(KOB_BRNG_MT19937), t(KOB_BRNG_MT19937);
  std::vector<int32_t> r(5);
  const auto expect_all = [&](int32_t value) { EXPECT_EQ(r, std::vector<int32_t>(5, value)); };
  ASSERT_EQ(_kobiRngBinomial(0, s, 5, r.data(), 100, 0), 0);
  expect_all(0);
  ASSERT_EQ(_kobiRngBinomial(0, s, 5, r.data(), 100, 1), 0);
  expect_all(100);
  ASSERT_EQ(_kobiRngPoisson(0, s, 5, r.data(), 0), 0);
  expect_all(0);
  ASSERT_EQ(_kobiRngPoisson(0, s, 5, r.data(), 1e12), 0);
  expect_all(INT32_MAX);
  ASSERT_EQ(_kobiRngHypergeometric(0, s, 5, r.data(), 100, 30, 100), 0);
  expect_all(30);
  ASSERT_EQ(_kobiRngHypergeometric(0, s, 5, r.data(), 100, 100, 7), 0);
  expect_all(7);
  EXPECT_EQ(s.words(3), t.words(3));
}

// Alternating parameters rebuild what is kept; each gets its own numbers. A difference in the last bits counts.
TEST(Counts, DoNotDependOnWhatIsKept) {
  const Stream s(KOB_BRNG_MT19937);
  const auto drawn = [](const Stream& stream, auto generator, auto... parameters) {
    std::vector<int32_t> r(300);
    EXPECT_EQ(generator(0, stream, 300, r.data(), parameters...), 0);
    return r;
  };
  const auto expect_as_fresh = [&](auto generator, auto... parameters) {
    const Stream fresh(s);
    __kobDeleteChunks(fresh);
    EXPECT_EQ(drawn(s, generator, parameters...), drawn(fresh, generator, parameters...));
  };
  for (int round = 0; round < 2; ++round) {
    for (int trials : {20, 100, 1000})  // for 100 to either side of a threshold
      for (double p : {0.3, 0.3 - 1e-12, 0.7}) expect_as_fresh(_kobiRngBinomial, trials, p);
    for (double mean : {27.0, 27 - 0x1p-40, 26.0, 1e8}) expect_as_fresh(_kobiRngPoisson, mean);
    for (double p : {0.5, 0.2})
      for (double a : {5.0, 5 + 0x1p-40, 100.0, 0.3}) expect_as_fresh(_kobiRngNegbinomial, a, p);
    for (const auto& urn : {std::array{2000, 400, 500}, {2000, 410, 500}, {2000, 410, 30}, {2100, 410, 30}})
      expect_as_fresh(_kobiRngHypergeometric, urn[0], urn[1], urn[2]);
  }
}

// Inversion ends inside the support whatever the sum of all terms came to.
TEST(Counts, OfTheLargestUniformsStayInTheSupport) {
  // Its first number is rounded to 1, the second lies just below.
  const auto largest = [] { return Stream(KOB_BRNG_MCG59, {0xFFFFFFFF, 0x7FFFFFF}); };
  for (int n : {1, 1000}) {
    std::vector<int32_t> r(n);
    ASSERT_EQ(_kobiRngBinomial(0, largest(), n, r.data(), 20, 0.3), 0);
    for (int32_t k : r) EXPECT_TRUE(k >= 0 && k <= 20) << k;
    // Of some means the sum of all terms is rounded to what is below the largest uniform.
    for (double mean = 0.5; mean < 26; mean += 0.75) {
      ASSERT_EQ(_kobiRngPoisson(0, largest(), n, r.data(), mean), 0);
      for (int32_t k : r) ASSERT_TRUE(k >= 0 && k < 150) << k << " of mean " << mean;
    }
    ASSERT_EQ(_kobiRngHypergeometric(0, largest(), n, r.data(), 200, 40, 50), 0);
    for (int32_t k : r) EXPECT_TRUE(k >= 0 && k <= 40) << k;
    ASSERT_EQ(_kobiRngNegbinomial(0, largest(), n, r.data(), 5, 0.5), 0);
    for (int32_t k : r) EXPECT_TRUE(k >= 0 && k < 200) << k;
  }
}

TEST(Parameters, ThatAreNoneAreRefusedWhereRejectionWouldNotEnd) {
  const Stream s(KOB_BRNG_MT19937);
  double d[2];
  int32_t k[2];
  for (double bad : {0.0, -1.0, double(NAN), double(INFINITY)}) {
    EXPECT_EQ(_kobdRngGamma(0, s, 2, d, bad, 0, 1), KOB_ERROR_BAD_ARG);
    EXPECT_EQ(_kobdRngBeta(0, s, 2, d, bad, 2, 0, 1), KOB_ERROR_BAD_ARG);
    EXPECT_EQ(_kobdRngBeta(0, s, 2, d, 2, bad, 0, 1), KOB_ERROR_BAD_ARG);
    EXPECT_EQ(_kobiRngNegbinomial(0, s, 2, k, 1, bad), KOB_ERROR_BAD_ARG);
  }
  EXPECT_EQ(_kobiRngPoisson(2, s, 2, k, 1), KOB_ERROR_METHOD);
  EXPECT_EQ(_kobiRngPoisson(1 | 1 << 30, s, 2, k, 1), 0);  // a bit that all methods know
}

// ---- vectors ----

// The factor of a covariance, as a full upper triangle, and as a packed lower one that is its transpose.
struct Factor {
  explicit Factor(int dimen) : full(size_t(dimen) * dimen, NAN) {
    for (int j = 0; j < dimen; ++j)
      for (int i = 0; i <= j; ++i) full[size_t(j) * dimen + i] = i == j ? 1.5 + j : 0.1 * (i + 1) - 0.05 * j;
    for (int j = 0; j < dimen; ++j)  // column j of the lower triangle is row j of the upper one
      for (int i = j; i < dimen; ++i) packed.push_back(full[size_t(i) * dimen + j]);
  }
  std::vector<double> full, packed;
};

TEST(GaussianMV, IsTheFactorTimesIndependentNumbers) {
  for (int dimen : {1, 2, 3, 10, 17}) {
    const Factor factor(dimen);
    std::vector<double> mean(dimen), diagonal(dimen);
    for (int j = 0; j < dimen; ++j) mean[j] = j + 1, diagonal[j] = 2 + j;
    const int n = 5003;
    const Stream plain(KOB_BRNG_MT19937);
    std::vector<double> z(size_t(n) * dimen);
    ASSERT_EQ(_kobdRngGaussian(1, plain, n * dimen, z.data(), 0, 1), 0);
    for (int storage : {0, 1, 2, 3}) {
      const Stream s(KOB_BRNG_MT19937);
      std::vector<double> r(z.size());
      const double* const t = storage == 0   ? factor.full.data()
                              : storage == 1 ? factor.packed.data()
                                             : diagonal.data();
      ASSERT_EQ(_kobdRngGaussianMV(1, s, n, r.data(), dimen, storage, mean.data(), t), 0);
      EXPECT_EQ(s.words(2), Stream(plain).words(2));
      for (int v = 0; v < n; ++v)
        for (int i = 0; i < dimen; ++i) {
          const double* const x = &z[size_t(v) * dimen];
          double expected = mean[i];
          if (dimen == 1) {
            expected += t[0] * x[0];
          } else if (storage < 2) {
            for (int j = 0; j <= i; ++j) expected += factor.full[size_t(i) * dimen + j] * x[j];
          } else {
            expected = storage == 2 ? mean[i] + diagonal[i] * x[i] : x[i];
          }
          ASSERT_NEAR(r[size_t(v) * dimen + i], expected, 1e-11) << dimen << " " << storage;
        }
    }
  }
}

TEST(InvCov, InvertsAndTellsWhatItCannot) {
  for (int p = 1; p <= 6; ++p) {
    std::vector<double> m(size_t(p) * p), inverse;
    for (int i = 0; i < p; ++i)
      for (int j = 0; j < p; ++j) m[size_t(i) * p + j] = 1.0 / (1 + std::abs(i - j)) + (i == j ? 1 : 0);
    inverse = m;
    ASSERT_EQ(__kobdInvCov(p, inverse.data()), 0);
    for (int i = 0; i < p; ++i)
      for (int j = 0; j < p; ++j) {
        double sum = 0;
        for (int k = 0; k < p; ++k)
          sum += m[size_t(i) * p + k] *
                 inverse[size_t(std::max(k, j)) * p + std::min(k, j)];  // the upper triangle
        EXPECT_NEAR(sum, i == j, 1e-13) << p;
      }
  }
  double singular[4] = {1, 1, 1, 1};
  EXPECT_EQ(__kobdInvCov(2, singular), 0);
  EXPECT_FALSE(std::isfinite(singular[0]));
  const long before = orx_serv_live_blocks();
  float* const zeros = static_cast<float*>(orx_serv_allocate(16 * sizeof(float), 128));
  std::fill_n(zeros, 16, 0.0f);
  EXPECT_EQ(__kobsInvCov(4, zeros), -5041);
  EXPECT_EQ(orx_serv_live_blocks(), before);  // given back there
}

}  // namespace
