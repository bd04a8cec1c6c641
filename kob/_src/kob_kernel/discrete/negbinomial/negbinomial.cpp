// Negative binomial: the number of failures before success number a, for any a > 0.
//   mode estimate (a - 1) (1 - p) / p of 100 or more   rejection from a table mountain, the exact test by Stirling's
//                                                      formula
//   below that                                         inversion, where a table holds nearly all numbers; else the
//                                                      table mountain for a of 1 or more, and for a below 1 a Poisson
//                                                      number whose mean is a gamma number (M. Greenwood, G. U. Yule,
//                                                      J. R. Stat. Soc. 83, 1920)
#include "inversion.hpp"
#include "kept.hpp"
#include "uniform_source.hpp"
#include "unimodal.hpp"

using namespace orx::rng;

static int _vdLnCallBack(TefErrorContext* error) { return on_any_error<double>(error); }

namespace {

constexpr double kLargest = INT32_MAX;  // what is beyond is given as this

struct Law {
  double first, last, a, q;

  Law(const VectorMath& math, double successes, double p)
      : first(math.accurate_power(p, successes)), last(kLargest), a(successes), q(1 - p) {}
  double ratio(double k) const { return q * (a + k - 1) / k; }
};

struct Nbar {
  FactorialRatio ratio;
  TableMountain hat;

  Nbar(const VectorMath& math, double a, double p, double mode)
      : ratio(math, mode, 1 - p, {{mode + 1, 1, 1}, {a + mode, 1, -1}}),
        hat(math, ratio, root(a * (1 - p)) / p, 0, __builtin_inf(),
            [&](double k) { return (1 - p) * (a + k - 1) / k; }) {}
};

enum Method { kInversion, kNbar, kMixture };
constexpr double kLeastForNbar = 100, kTabulated = 0.98;

struct Cache {
  double A, P, method;
  union {
    double sums[163];
    Nbar nbar;
  };
};
static_assert(sizeof(Cache) == 1328);

void set_up(const VectorMath& math, Cache& cache, double a, double p, double estimate) {
  cache.A = a;
  cache.P = p;
  cache.method = kNbar;
  if (estimate < kLeastForNbar) {
    const int length = std::max(int(estimate), 0) + 64;
    tabulate(Law(math, a, p), cache.sums, length);
    cache.method = cache.sums[length - 1] >= kTabulated ? kInversion : a < 1 ? kMixture : kNbar;
  }
  if (cache.method == kNbar) cache.nbar = Nbar(math, a, p, __builtin_floor(std::max(estimate, 0.0)));
}

int _kobRngNegbinomialNBAR(const VectorMath& math, KobStream* stream, int n, int32_t* r, const Nbar& nbar) {
  return by_hat(math, stream, n, r, nbar.hat, nbar.ratio, [](double y) { return std::min(y, kLargest); });
}

int mixture(KobStream* stream, int n, int32_t* r, double a, double p) {
  UniformSource uniforms(stream);
  return in_blocks(n, [&](int done, int count) {
    double means[kBlock];
    int status = _kobdRngGamma(0, stream, count, means, a, 0, (1 - p) / p);
    for (int i = 0; i < count && status >= 0; ++i) {
      r[done + i] = int32_t(std::min(uniforms.poisson(means[i]), kLargest));
      status = uniforms.status();
    }
    return status;
  });
}

int negative_binomial(const VectorMath& math, KobStream* stream, int n, int32_t* r, double a, double p) {
  if (n < 1) return KOB_STATUS_OK;
  if (!(a > 0 && p > 0 && p <= 1)) return KOB_ERROR_BAD_ARG;
  Cache* cache;
  const int status = keep(stream, orx::brng::kChunkNegativeBinomial, Cache{0, 0, 0, {}}, &cache);
  if (status != KOB_STATUS_OK) return status;
  const double estimate = (a - 1) * (1 - p) / p;
  if (cache->A != a || cache->P != p) set_up(math, *cache, a, p, estimate);
  if (cache->method == kNbar) return _kobRngNegbinomialNBAR(math, stream, n, r, cache->nbar);
  if (cache->method == kMixture) return mixture(stream, n, r, a, p);
  const int start = std::max(int(estimate), 0), length = start + 64;
  return by_inversion(
      stream, n, r, [&] { return Law(math, a, p); }, cache->sums, length, start,
      [](auto k) { return int32_t(k); });
}

}  // namespace

ORX_API int _kobiRngNegbinomial(int, KobStream* stream, int n, int32_t r[], double a, double p) {
  return framed<negative_binomial>(_vdLnCallBack, stream, n, r, a, p);
}
