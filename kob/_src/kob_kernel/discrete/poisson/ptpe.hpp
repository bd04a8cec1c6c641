// Poisson numbers of one mean, exactly: by inversion below a mean of 27, from there on by PTPE.
//   B. W. Schmeiser, V. Kachitvichyanukul, Poisson random variate generation, Purdue University (1981).
#pragma once

#include "inversion.hpp"
#include "kept.hpp"
#include "unimodal.hpp"

namespace orx::rng::poisson {

constexpr double kLargest = INT32_MAX;  // what is beyond is given as this

struct Law {
  double first, last, mean;

  Law(const VectorMath& math, double of_mean)
      : first(math.accurate_exp(-of_mean)), last(kLargest), mean(of_mean) {}
  double ratio(double k) const { return mean / k; }
};

struct Ptpe {
  Patchwork hat;
  FactorialRatio ratio;

  Ptpe(const VectorMath& math, double mean)
      : hat(hat_of(mean, __builtin_floor(mean))),
        ratio(math, __builtin_floor(mean), mean, {{__builtin_floor(mean) + 1, 1, 1}}) {}

 private:
  static Patchwork hat_of(double mean, double m) {
    const double p1 = __builtin_floor(2.195 * root(mean) - 2.2) + 0.5;
    const double xl = m + 0.5 - p1, xr = m + 0.5 + p1;
    return Patchwork(m, __builtin_inf(), p1, 0.133 + 8.56 / (mean + 6.83), (mean - xl) / mean,
                     (xr - mean) / xr);
  }
};

constexpr double kLeastForPtpe = 27;

struct Cache {
  double Mean;
  union {
    double sums[86];
    Ptpe ptpe;
  };
};
static_assert(sizeof(Cache) == 696);

inline int ptpe(const VectorMath& math, KobStream* stream, int n, int32_t* r, double mean) {
  if (n < 1) return KOB_STATUS_OK;
  // No mean, or one whose numbers are all beyond the largest.
  if (!(mean > 0 && mean < 2 * kLargest)) {
    std::fill_n(r, n, mean > 0 ? INT32_MAX : 0);
    return KOB_STATUS_OK;
  }
  Cache* cache;
  const int status = keep(stream, orx::brng::kChunkPoisson, Cache{0, {}}, &cache);
  if (status != KOB_STATUS_OK) return status;
  const bool is_new = cache->Mean != mean;
  cache->Mean = mean;
  if (mean >= kLeastForPtpe) {
    if (is_new) cache->ptpe = Ptpe(math, mean);
    return by_hat(math, stream, n, r, cache->ptpe.hat, cache->ptpe.ratio,
                  [](double y) { return std::min(y, kLargest); });
  }
  const auto law = [&] { return Law(math, mean); };
  const int start = int(mean), length = start + 40;
  if (is_new) tabulate(law(), cache->sums, length);
  return by_inversion(stream, n, r, law, cache->sums, length, start, [](auto k) { return int32_t(k); });
}

}  // namespace orx::rng::poisson
