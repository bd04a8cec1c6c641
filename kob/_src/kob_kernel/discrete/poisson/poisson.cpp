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
  const int row = int(orx::bit_cast<uint64_t>(mean) >> 52) - 1023;
  const int group = mean >= poisson::kLeastForRows ? row : kSeries;
  return mean >= poisson::kLeastForExpansion ? kExpansion : group;
}

static int _viRngPoissonPtpe(const VectorMath& math, KobStream* stream, int n, int32_t* r, double mean) {
  return poisson::ptpe(math, stream, n, r, mean);
}

// x, in place, to numbers of means that are all of one group.
static void by_group(int group, int count, const double* mean, double* x) {
  if (group == kSeries)
    poisson::by_series(count, mean, x);
  else if (group == kExpansion)
    poisson::by_expansion(count, mean, x);
  else
    poisson::by_row(group, count, mean, x);
}

static int _viRngPoissonPoisNorm(const VectorMath&, KobStream* stream, int n, int32_t* r, double mean) {
  double means[kBlock];
  std::fill_n(means, std::min(std::max(n, 0), kBlock), mean);
  const int group = group_of(mean);
  const float bound = float(poisson::polynomial(std::max(mean, 0.0), poisson::__kob_iExp));
  return in_blocks(n, [&](int done, int count) {
    float drawn[kBlock];
    double x[kBlock];
    const int status =
        group == kSeries ? uniform(stream, count, drawn, 0, bound) : gaussian(kIcdf, stream, count, drawn);
    if (status < 0) return status;
    for (int i = 0; i < count; ++i) x[i] = drawn[i];
    by_group(group, count, means, x);
    for (int i = 0; i < count; ++i) r[done + i] = poisson::whole_part(x[i]);
    return status;
  });
}

using Worker = int(const VectorMath&, KobStream*, int, int32_t*, double);
static int chosen(const VectorMath& math, Worker* worker, KobStream* stream, int n, int32_t* r, double mean) {
  return worker(math, stream, n, r, mean);
}

namespace {

// Elements whose means are alike stand together, so that each group goes through its polynomials as an array.
struct Groups {
  int size[kGroups] = {}, end[kGroups] = {};
  int32_t index[kBlock];
  double mean[kBlock];

  Groups(int count, const double* means) {
    uint8_t group[kBlock];
    for (int i = 0; i < count; ++i) {
      group[i] = uint8_t(group_of(means[i]));
      ++size[group[i]];
    }
    for (int g = 1; g < kGroups; ++g) end[g] = end[g - 1] + size[g - 1];
    for (int i = 0; i < count; ++i) index[end[group[i]]++] = i;
    for (int k = 0; k < count; ++k) mean[k] = std::max(means[index[k]], 0.0);
  }
};

// Each number of one uniform on [-1, 1), as the normal numbers of Gaussian's third method are.
int poisson_v(const VectorMath& math, KobStream* stream, int n, int32_t* r, const double* means) {
  return in_blocks(n, [&](int done, int count) {
    float uniforms[kBlock], normals[kBlock];
    const int status = uniform(stream, count, uniforms, -1, 1);
    if (status < 0) return status;
    math.erfinv(count, uniforms, normals);
    const Groups groups(count, means + done);
    double x[kBlock];
    for (int g = 0; g < kGroups; ++g) {
      const int size = groups.size[g], first = groups.end[g] - size;
      const int32_t* const index = groups.index + first;
      const double* const mean = groups.mean + first;
      if (g == kSeries)
        for (int k = 0; k < size; ++k)
          x[k] = (1 + double(uniforms[index[k]])) * 0.5 * poisson::polynomial(mean[k], poisson::__kob_iExp);
      else
        for (int k = 0; k < size; ++k) x[k] = 1.4142135623730951 * double(normals[index[k]]);
      by_group(g, size, mean, x);
      for (int k = 0; k < size; ++k) r[done + index[k]] = poisson::whole_part(x[k]);
    }
    return status;
  });
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
