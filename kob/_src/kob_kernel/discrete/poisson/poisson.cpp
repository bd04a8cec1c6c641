// Poisson numbers, exactly or, near the law, of normal numbers; of one mean or of means of their own.
#include "normal_method.hpp"
#include "orx/base/bits.hpp"
#include "ptpe.hpp"

using namespace orx::rng;

static int _vsLnCallBack(TefErrorContext* error) { return on_any_error<float>(error); }
static int _vsCallBack(TefErrorContext* error) { return on_normal_end<float>(error); }

// The ways of the normal method: rows by exponent, then these.
constexpr int kSeries = 7, kExpansion = 8, kGroups = 9;

static int group_of(double mean) {
  if (!(mean >= poisson::kLeastForRows)) return kSeries;
  return mean >= poisson::kLeastForExpansion ? kExpansion : int(orx::bit_cast<uint64_t>(mean) >> 52) - 1023;
}

static int _viRngPoissonPtpe(const VectorMath& math, KobStream* stream, int n, int32_t* r, double mean) {
  return poisson::ptpe(math, stream, n, r, mean);
}

static int _viRngPoissonPoisNorm(const VectorMath&, KobStream* stream, int n, int32_t* r, double mean) {
  double means[kBlock];
  std::fill_n(means, std::min(std::max(n, 0), kBlock), mean);
  return in_blocks(n, [&](int done, int count) {
    float drawn[kBlock];
    double x[kBlock], y[kBlock];
    const bool small = !(mean >= poisson::kLeastForRows);
    const float bound = float(poisson::polynomial(std::max(mean, 0.0), poisson::__kob_iExp));
    const int status =
        small ? uniform(stream, count, drawn, 0, bound) : gaussian(kIcdf, stream, count, drawn);
    if (status < 0) return status;
    for (int i = 0; i < count; ++i) x[i] = drawn[i];
    if (small)
      poisson::by_series(count, means, x, y);
    else if (mean >= poisson::kLeastForExpansion)
      poisson::by_expansion(count, means, x, y);
    else
      poisson::by_row(group_of(mean), count, means, x, y);
    for (int i = 0; i < count; ++i) r[done + i] = poisson::whole_part(y[i]);
    return status;
  });
}

using Worker = int(const VectorMath&, KobStream*, int, int32_t*, double);
static int chosen(const VectorMath& math, Worker* worker, KobStream* stream, int n, int32_t* r, double mean) {
  return worker(math, stream, n, r, mean);
}

namespace {

// Elements whose means are alike, so that each group goes through its polynomials as an array.
struct Group {
  int count = 0;
  int index[kBlock];
  double mean[kBlock], x[kBlock], y[kBlock];
};
// Each number of one uniform on [-1, 1), as the normal numbers of Gaussian's third method are.
int poisson_v(const VectorMath& math, KobStream* stream, int n, int32_t* r, const double* means) {
  return in_blocks(
      n,
      [&](int done, int count) {
        float uniforms[kBlock], normals[kBlock];
        const int status = uniform(stream, count, uniforms, -1, 1);
        if (status < 0) return status;
        math.erfinv(count, uniforms, normals);
        Group groups[kGroups];
        for (int i = 0; i < count; ++i) {
          const double mean = std::max(means[done + i], 0.0);
          const int which = group_of(mean);
          Group& group = groups[which];
          group.index[group.count] = i;
          group.mean[group.count] = mean;
          group.x[group.count++] = which == kSeries ? (1 + double(uniforms[i])) * 0.5 *
                                                          poisson::polynomial(mean, poisson::__kob_iExp)
                                                    : 1.4142135623730951 * double(normals[i]);
        }
        for (int which = 0; which < kGroups; ++which) {
          Group& group = groups[which];
          if (which == kSeries)
            poisson::by_series(group.count, group.mean, group.x, group.y);
          else if (which == kExpansion)
            poisson::by_expansion(group.count, group.mean, group.x, group.y);
          else
            poisson::by_row(which, group.count, group.mean, group.x, group.y);
          for (int k = 0; k < group.count; ++k) r[done + group.index[k]] = poisson::whole_part(group.y[k]);
        }
        return status;
      },
      kBlock / 2);
}

}  // namespace

ORX_API int _kobiRngPoisson(int method, KobStream* stream, int n, int32_t r[], double mean) {
  static constexpr Worker* Dispatch[] = {_viRngPoissonPtpe, _viRngPoissonPoisNorm};
  const uint32_t index = uint32_t(method & ~kAccurate);
  if (index >= sizeof Dispatch / sizeof *Dispatch) return KOB_ERROR_METHOD;
  return framed<chosen>(_vsLnCallBack, Dispatch[index], stream, n, r, mean);
}

ORX_API int _kobiRngPoissonV(int, KobStream* stream, int n, int32_t r[], const double means[]) {
  return framed<poisson_v>(_vsCallBack, stream, n, r, means);
}
