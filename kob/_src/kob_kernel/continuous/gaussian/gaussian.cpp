// Gaussian, by three methods: Box and Muller with one normal number of two uniforms, with two of two, and the
// inverse of the distribution function.
#include "box_muller.hpp"
#include "kept.hpp"

using namespace orx::rng;

static int _vdCallBack(TefErrorContext* error) { return on_normal_end<double>(error); }
static int _vsCallBack(TefErrorContext* error) { return on_normal_end<float>(error); }

template <class Real>
static int box_muller(const VectorMath& math, KobStream* stream, int n, Real* r, Real a, Real sigma) {
  Real u[2 * kBlock], radius[kBlock], angle[kBlock];
  return in_blocks(n, [&](int done, int count) {
    const int status = uniform(stream, 2 * count, u);
    if (status < 0) return status;
    to_polar(math, count, u, radius, angle);
    math.sin(count, angle, angle);
    for (int i = 0; i < count; ++i) r[done + i] = a + sigma * (radius[i] * angle[i]);
    return status;
  });
}

// The uniforms of a pair whose cosine half is still to be given out; -1 for none.
template <class Real>
struct PendingPair {
  Real U1, U2;
};
template <class Real>
constexpr orx::brng::ChunkKind kPendingPair = sizeof(Real) == 8 ? orx::brng::kChunkBoxMuller2Double
                                                                : orx::brng::kChunkBoxMuller2Single;

template <class Real>
static int box_muller2(const VectorMath& math, KobStream* stream, int n, Real* r, Real a, Real sigma) {
  if (n < 1) return KOB_STATUS_OK;
  constexpr PendingPair<Real> none = {-1, -1};
  PendingPair<Real>* pending;
  int status = keep(stream, kPendingPair<Real>, none, &pending);
  if (status != KOB_STATUS_OK) return status;

  int done = 0;
  if (pending->U1 != none.U1) r[done++] = normal(math, Half::kCosine, pending->U1, pending->U2, a, sigma);
  const int whole = (n - done) & ~1;
  status = in_blocks(whole, [&](int first, int count) {
    Real* const x = r + done + first;
    const int drawn = uniform(stream, count, x);
    if (drawn >= 0) to_normals(math, count / 2, x, x, a, sigma);
    return drawn;
  });
  if (status < 0) return status;
  done += whole;
  // Only here, so that a call that fails leaves the pair waiting.
  PendingPair<Real> next = none;
  if (done < n) {
    Real pair[2];
    status = uniform(stream, 2, pair);
    if (status < 0) return status;
    next = {pair[0], pair[1]};
    r[done] = normal(math, Half::kSine, pair[0], pair[1], a, sigma);
  }
  *pending = next;
  return KOB_STATUS_OK;
}

template <class Real>
static int icdf(const VectorMath& math, KobStream* stream, int n, Real* r, Real a, Real sigma) {
  const Real scale = Real(0x1.6a09e667f3bcdp+0) * sigma;
  return transformed_uniforms<Real>(stream, n, r, -1, 1, [&](int count, Real* x) {
    math.erfinv(count, x, x);
    for (int i = 0; i < count; ++i) x[i] = a + scale * x[i];
  });
}

template <class Real>
using Worker = int(const VectorMath&, KobStream*, int, Real*, Real, Real);
template <class Real>
static int chosen(const VectorMath& math, Worker<Real>* worker, KobStream* stream, int n, Real* r, Real a,
                  Real sigma) {
  return worker(math, stream, n, r, a, sigma);
}

#define ORX_WORKER(t, Real, Method, how)                                                                   \
  static int _v##t##RngGaussian##Method(const VectorMath& math, KobStream* stream, int n, Real* r, Real a, \
                                        Real sigma) {                                                      \
    return how(math, stream, n, r, a, sigma);                                                              \
  }
#define ORX_GAUSSIAN(t, Real)                                                                               \
  ORX_WORKER(t, Real, BoxMuller, box_muller)                                                                \
  ORX_WORKER(t, Real, BoxMuller2, box_muller2)                                                              \
  ORX_WORKER(t, Real, ICDF, icdf)                                                                           \
  ORX_API int _kob##t##RngGaussian(int method, KobStream* stream, int n, Real r[], Real a, Real sigma) {    \
    static constexpr Worker<Real>* Dispatch[] = {_v##t##RngGaussianBoxMuller, _v##t##RngGaussianBoxMuller2, \
                                                 _v##t##RngGaussianICDF};                                   \
    const uint32_t index = uint32_t(method & ~kAccurate);                                                   \
    if (index >= sizeof Dispatch / sizeof *Dispatch) return KOB_ERROR_METHOD;                               \
    return framed<chosen<Real>>(_v##t##CallBack, Dispatch[index], stream, n, r, a, sigma);                  \
  }
ORX_GAUSSIAN(d, double)
ORX_GAUSSIAN(s, float)
