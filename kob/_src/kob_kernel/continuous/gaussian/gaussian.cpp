// Gaussian, by three methods: Box and Muller with one normal number of two uniforms, with two of two, and the
// inverse of the distribution function.
#include "box_muller.hpp"
#include "kept.hpp"

using namespace orx::rng;

static int _vdCallBack(TefErrorContext* error) { return on_normal_end<double>(error); }
static int _vsCallBack(TefErrorContext* error) { return on_normal_end<float>(error); }
template <class Real>
constexpr TefErrorCallBack kCallBack = sizeof(Real) == 8 ? _vdCallBack : _vsCallBack;

template <class Real>
static int sine_halves(const VectorMath& math, KobStream* stream, int n, Real* r, Real a, Real sigma) {
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

template <class Real>
static int box_muller(KobStream* stream, int n, Real* r, Real a, Real sigma) {
  return framed<sine_halves<Real>>(kCallBack<Real>, stream, n, r, a, sigma);
}

// The uniforms of a pair whose cosine half is still to be given out; U1 = -1 for none.
template <class Real>
struct PendingPair {
  Real U1, U2;
  bool waits() const { return U1 != -1; }
};
template <class Real>
constexpr orx::brng::ChunkKind kPendingPair = sizeof(Real) == 8 ? orx::brng::kChunkBoxMuller2Double
                                                                : orx::brng::kChunkBoxMuller2Single;

// draw_normal(half, pair) for the half that waits, or for the first half of a new pair, whose second then waits.
template <class Real, class DrawNormal>
static int next_half(KobStream* stream, PendingPair<Real>& pending, const DrawNormal& draw_normal) {
  if (pending.waits()) {
    draw_normal(Half::kCosine, pending);
    pending = {-1, -1};
    return KOB_STATUS_OK;
  }
  Real u[2];
  const int status = uniform(stream, 2, u);
  if (status < 0) return status;
  pending = {u[0], u[1]};
  draw_normal(Half::kSine, pending);
  return status;
}

template <class Real>
static int pairs(const VectorMath& math, KobStream* stream, int n, Real* r, Real a, Real sigma,
                 PendingPair<Real>* pending) {
  // A call that fails leaves the pair waiting.
  const PendingPair<Real> before = *pending;
  Real* const end = r + n;
  const auto draw_normal = [&](Half half, PendingPair<Real> pair) {
    *r++ = normal(math, half, pair.U1, pair.U2, a, sigma);
  };
  if (pending->waits()) next_half(stream, *pending, draw_normal);
  int status = in_blocks(int(end - r) & ~1, [&](int, int count) {
    const int drawn = uniform(stream, count, r);
    if (drawn >= 0) to_normals(math, count / 2, r, r, a, sigma);
    r += count;
    return drawn;
  });
  if (status >= 0 && r < end) status = next_half(stream, *pending, draw_normal);
  if (status < 0) *pending = before;
  return status;
}

template <class Real>
static int one_normal(const VectorMath& math, Half half, PendingPair<Real> pair, Real* r, Real a,
                      Real sigma) {
  *r = normal(math, half, pair.U1, pair.U2, a, sigma);
  return KOB_STATUS_OK;
}

template <class Real>
static int box_muller2(KobStream* stream, int n, Real* r, Real a, Real sigma) {
  if (n < 1) return KOB_STATUS_OK;
  PendingPair<Real>* pending;
  const int status = keep(stream, kPendingPair<Real>, {-1, -1}, &pending);
  if (status != KOB_STATUS_OK) return status;
  if (n > 1 || !needs_no_frame(a, sigma))
    return framed<pairs<Real>>(kCallBack<Real>, stream, n, r, a, sigma, pending);
  return next_half(stream, *pending, [&](Half half, PendingPair<Real> pair) {
    if (pair.U1 > 0 && is_far_from_denormals(pair.U1) && is_far_from_denormals(pair.U2))
      *r = normal(BareVectorMath(), half, pair.U1, pair.U2, a, sigma);
    else
      framed<one_normal<Real>>(kCallBack<Real>, half, pair, r, a, sigma);
  });
}

template <class Real>
struct Icdf {
  Real a, scale;
  static constexpr Real kLow = -1, kHigh = 1;
  static bool is_plain(Real u) { return -1 < u && u < 1; }

  template <class Math>
  void operator()(const Math& math, int count, Real* x) const {
    const Real factor = Real(0x1.6a09e667f3bcdp+0) * scale;
    math.erfinv(count, x, x);
    for (int i = 0; i < count; ++i) x[i] = a + factor * x[i];
  }
};

template <class Real>
static int icdf(KobStream* stream, int n, Real* r, Real a, Real sigma) {
  return by_formula(kCallBack<Real>, stream, n, r, Icdf<Real>{a, sigma});
}

// The workers have the parameters of the exported function, so that there is nothing to do on the way to them.
#define ORX_WORKER(t, Real, Method, draw)                                                              \
  static int _v##t##RngGaussian##Method(int, KobStream* stream, int n, Real r[], Real a, Real sigma) { \
    return draw(stream, n, r, orx::brng::argument_value(a), orx::brng::argument_value(sigma));         \
  }
#define ORX_GAUSSIAN(t, Real)                                                                            \
  ORX_WORKER(t, Real, BoxMuller, box_muller)                                                             \
  ORX_WORKER(t, Real, BoxMuller2, box_muller2)                                                           \
  ORX_WORKER(t, Real, ICDF, icdf)                                                                        \
  ORX_API int _kob##t##RngGaussian(int method, KobStream* stream, int n, Real r[], Real a, Real sigma) { \
    static constexpr decltype(_kob##t##RngGaussian)* Dispatch[] = {                                      \
        _v##t##RngGaussianBoxMuller, _v##t##RngGaussianBoxMuller2, _v##t##RngGaussianICDF};              \
    const uint32_t index = uint32_t(method & ~kAccurate);                                                \
    if (index >= sizeof Dispatch / sizeof *Dispatch) return KOB_ERROR_METHOD;                            \
    return Dispatch[index](method, stream, n, r, a, sigma);                                              \
  }
ORX_GAUSSIAN(d, double)
ORX_GAUSSIAN(s, float)
