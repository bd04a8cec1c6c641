// Binomial: the number of successes in so many trials.
//   30 or more to be expected   V. Kachitvichyanukul, B. W. Schmeiser, Binomial random variate generation, Commun.
//                               ACM 31 (1988), BTPE
//   fewer                       inversion
#include "inversion.hpp"
#include "kept.hpp"
#include "unimodal.hpp"

using namespace orx::rng;

static int _vsLnCallBack(TefErrorContext* error) { return on_any_error<float>(error); }

namespace {

// With the smaller of p and 1 - p, s: h = s / (1 - s), g = h (trials + 1).
struct Law {
  double first, last, g, h;

  Law(const VectorMath& math, double trials, double s)
      : first(math.accurate_power(1 - s, trials)),
        last(trials),
        g(s / (1 - s) * (trials + 1)),
        h(s / (1 - s)) {}
  double ratio(double k) const { return g / k - h; }
};

struct Btpe {
  Patchwork hat;
  FactorialRatio ratio;

  Btpe(const VectorMath& math, double trials, double s) : Btpe(math, trials, s, trials * s + s) {}

 private:
  Btpe(const VectorMath& math, double n, double p, double ffm)
      : hat(hat_of(n, p, ffm, __builtin_floor(ffm))), ratio(ratio_of(math, n, p, __builtin_floor(ffm))) {}
  static Patchwork hat_of(double n, double p, double ffm, double m) {
    const double q = 1 - p, npq = n * p * q;
    const double p1 = __builtin_floor(2.195 * root(npq) - 4.6 * q) + 0.5;
    const double xl = m + 0.5 - p1, xr = m + 0.5 + p1;
    return Patchwork(m, n, p1, 0.134 + 20.5 / (15.3 + m), (ffm - xl) / (ffm - xl * p), (xr - ffm) / (xr * q));
  }
  static FactorialRatio ratio_of(const VectorMath& math, double n, double p, double m) {
    return FactorialRatio(math, m, p / (1 - p), {{m + 1, 1, 1}, {n - m + 1, -1, 1}});
  }
};

constexpr double kLeastForBtpe = 30;

// What is made for a pair of parameters and good as long as they stay.
struct Cache {
  double Trials, P;
  union {
    double sums[66];
    Btpe btpe;
  };
};
static_assert(sizeof(Cache) == 544);

int binomial(const VectorMath& math, KobStream* stream, int n, int32_t* r, int32_t trials, double p) {
  if (n < 1) return KOB_STATUS_OK;
  const double s = std::min(p, 1 - p), expected = s * trials;
  const bool mirrored = p > 0.5;
  if (!(expected > 0)) {
    std::fill_n(r, n, mirrored ? trials : 0);
    return KOB_STATUS_OK;
  }
  Cache* cache;
  const int status = keep(stream, orx::brng::kChunkBinomial, Cache{0, 0, {}}, &cache);
  if (status != KOB_STATUS_OK) return status;
  const bool is_new = cache->Trials != trials || cache->P != p;
  cache->Trials = trials;
  cache->P = p;
  const auto finish = [=](auto k) { return mirrored ? trials - k : k; };

  if (expected >= kLeastForBtpe) {
    if (is_new) cache->btpe = Btpe(math, trials, s);
    return by_hat(math, stream, n, r, cache->btpe.hat, cache->btpe.ratio, finish);
  }
  const auto law = [&] { return Law(math, trials, s); };
  const int start = int(expected), length = start + 32;
  if (is_new) tabulate(law(), cache->sums, length);
  return by_inversion(stream, n, r, law, cache->sums, length, start,
                      [&](auto k) { return int32_t(finish(int32_t(k))); });
}

}  // namespace

ORX_API int _kobiRngBinomial(int, KobStream* stream, int n, int32_t r[], int32_t trials, double p) {
  return framed<binomial>(_vsLnCallBack, stream, n, r, trials, p);
}
