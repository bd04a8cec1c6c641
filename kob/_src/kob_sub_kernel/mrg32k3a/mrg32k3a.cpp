// MRG32k3a: z(n) = x(n) - y(n) mod m1 with
//   x(n) = 1403580 x(n-2) - 810728 x(n-3) mod m1 = 2^32 - 209,
//   y(n) = 527612 y(n-1) - 1370589 y(n-3) mod m2 = 2^32 - 22853.
//   P. L'Ecuyer, Good parameters and implementations for combined multiple recursive random number
//   generators, Operations Research 47 (1999).
//
// Products and sums are done in double, where they are exact, with residues balanced around 0.
#include <algorithm>

#include "_math/modular.hpp"
#include "_service/generator.hpp"
#include "_service/reals.hpp"

namespace {

using namespace orx::brng;

constexpr int kLanes = 8;             // numbers made side by side
constexpr int kHistory = 3 * kLanes;  // what they are made from
constexpr int kBlock = 256;

// One component: s(n) = c[0] s(n-1) + c[1] s(n-2) + c[2] s(n-3) mod m. Residues are of size below m, of
// either sign.
struct Component {
  double m, c[3];
  // The recursion of every kLanes-th number, of order three again. Its coefficients are high + low, high a
  // multiple of 2^15 and low at most 2^14 in size, so that products with residues, and their sums, are exact.
  double high[3], low[3];

  constexpr Component(uint32_t modulus, int64_t c1, int64_t c2, int64_t c3)
      : m(modulus), c{double(c1), double(c2), double(c3)}, high{}, low{} {
    // Going to every second number squares the roots of the characteristic polynomial x^3 - e1 x^2 + e2 x -
    // e3 (Graeffe).
    const int64_t p = modulus;
    uint64_t e1 = (c1 % p + p) % p, e2 = (-c2 % p + p) % p, e3 = (c3 % p + p) % p;
    for (int stride = 1; stride < kLanes; stride *= 2) {
      const uint64_t f1 = (e1 * e1 % p + 2 * (p - e2)) % p;
      const uint64_t f2 = (e2 * e2 % p + 2 * (p - e1 * e3 % p)) % p;
      e3 = e3 * e3 % p;
      e1 = f1;
      e2 = f2;
    }
    const uint64_t far[3] = {e1, (p - e2) % p, e3};
    for (int i = 0; i < 3; ++i) {
      const int64_t balanced = int64_t(far[i]) > p / 2 ? int64_t(far[i]) - p : int64_t(far[i]);
      const int64_t upper = ((balanced + 0x4000) >> 15) * 0x8000;
      high[i] = double(upper);
      low[i] = double(balanced - upper);
    }
  }

  // A residue of p + rest. 2^32 is worth 2^32 - m, at most 2^14.5: p is split into a multiple of 2^32, by
  // adding and taking away 3 * 2^83, and what is left. For |p| < 2^48 and no rest the result is of size at
  // most 2^31 + 2^30.5 < m.
  template <class V>
  V fold(V p, V rest) const {
    const V top = (p + 0x3p83) - 0x3p83;
    return top * (1 - m * 0x1p-32) + ((p - top) + rest);
  }

  // The next number, and the next four of those kLanes apart; s points at it in the sequence.
  double next(const double* s) const {
    return fold(fold(c[1] * s[-2] + c[2] * s[-3] + c[0] * s[-1], 0.), 0.);
  }
  __m256d next4(const double* s) const {
    const __m256d s1 = _mm256_load_pd(s - kLanes), s2 = _mm256_load_pd(s - 2 * kLanes),
                  s3 = _mm256_load_pd(s - 3 * kLanes);
    const __m256d lower = low[1] * s2 + low[2] * s3 + low[0] * s1;
    return fold(fold(high[1] * s2 + high[2] * s3 + high[0] * s1, lower), _mm256_setzero_pd());
  }

  double canonical(double s) const { return s < 0 ? s + m : s; }
  __m256d canonical(__m256d s) const {
    return s + _mm256_and_pd(_mm256_cmp_pd(s, _mm256_setzero_pd(), _CMP_LT_OQ), _mm256_set1_pd(m));
  }
};

constexpr Component kX(4294967087, 0, 1403580, -810728), kY(4294944443, 527612, 0, -1370589);

struct MRG32K3A : NoLeapfrog {
  struct State {
    uint32_t S[6];  // the last three numbers of x, oldest first; the same of y
  };

  static int seed(KobStream* stream, int n, const uint32_t* params) {
    uint32_t* s = state<MRG32K3A>(stream).S;
    for (int i = 0; i < 6; ++i) s[i] = i < n ? params[i] : 1;
    seed_component(s, uint32_t(kX.m));
    seed_component(s + 3, uint32_t(kY.m));
    return KOB_STATUS_OK;
  }

  static int skip(KobStream* stream, int, const uint32_t* params) {
    constexpr uint32_t kRowX[3] = {0, 1403580, 4294967087u - 810728},
                       kRowY[3] = {527612, 0, 4294944443u - 1370589};
    uint32_t* s = state<MRG32K3A>(stream).S;
    jump(s, kRowX, uint32_t(kX.m), params);
    jump(s + 3, kRowY, uint32_t(kY.m), params);
    return KOB_STATUS_OK;
  }

  template <class Real>
  static int reals(KobStream* stream, int n, Real* r, Real a, Real b) {
    constexpr double kInverse = 0x1.000000d10000bp-32;  // 1 / m1
    generate(state<MRG32K3A>(stream), n, RealSink<Real>(r, a, (double(b) - double(a)) * kInverse));
    return KOB_STATUS_OK;
  }

  static int words(KobStream* stream, int n, uint32_t* r) {
    return orx::in_default_arithmetic([=] {
      generate(state<MRG32K3A>(stream), n, Words{r});
      return KOB_STATUS_OK;
    });
  }

  static bool adopt(KobStream* stream) {
    const uint32_t* s = state<MRG32K3A>(stream).S;
    return is_component(s, uint32_t(kX.m)) && is_component(s + 3, uint32_t(kY.m));
  }

 private:
  static bool is_component(const uint32_t* s, uint32_t m) {
    return (s[0] | s[1] | s[2]) && s[0] < m && s[1] < m && s[2] < m;
  }

  struct Words {
    uint32_t* r;
    void operator()(int i, __m256d z) const { store4(r + i, double_to_word(z)); }
    void operator()(int i, double z) const { r[i] = double_to_word(z); }
  };

  static void seed_component(uint32_t* s, uint32_t m) {
    for (int i = 0; i < 3; ++i) s[i] %= m;
    if (!(s[0] | s[1] | s[2])) s[0] = 1;
  }

  // The companion matrix takes its vector newest first.
  static void jump(uint32_t* s, const uint32_t* row, uint32_t m, const uint32_t* nskip) {
    std::swap(s[0], s[2]);
    __kobiVect3PowMod(s, row, m, nskip[0], nskip[1]);
    std::swap(s[0], s[2]);
  }

  template <class Sink>
  static void generate(State& s, int n, Sink sink) {
    alignas(32) double x_memory[kHistory + kBlock], y_memory[kHistory + kBlock];
    double *const x = x_memory + kHistory, *const y = y_memory + kHistory;
    for (int j = 0; j < 3; ++j) {
      x[j - 3] = s.S[j];
      y[j - 3] = s.S[3 + j];
    }
    int count = 0;
    for (int done = 0; done < n; done += count) {
      if (done) {  // the end of the last block is the history of this one
        std::copy_n(x + kBlock - kHistory, kHistory, x_memory);
        std::copy_n(y + kBlock - kHistory, kHistory, y_memory);
      }
      count = std::min(n - done, kBlock);
      extend(x, y, done ? 0 : kHistory, count);
      emit(x, y, done, count, sink);
    }
    for (int j = 0; j < 3; ++j) {
      s.S[j] = double_to_word(kX.canonical(x[count + j - 3]));
      s.S[3 + j] = double_to_word(kY.canonical(y[count + j - 3]));
    }
  }

  // Makes x[0 .. n) and y[0 .. n): the first of them singly, the others, which have a full history, in lanes.
  static void extend(double* x, double* y, int singly, int n) {
    int i = 0;
    for (; i < std::min(n, singly); ++i) {
      x[i] = kX.next(x + i);
      y[i] = kY.next(y + i);
    }
    for (; i < n; i += kLanes)
      for (int lane = i; lane < i + kLanes; lane += 4) {
        _mm256_store_pd(x + lane, kX.next4(x + lane));
        _mm256_store_pd(y + lane, kY.next4(y + lane));
      }
  }

  template <class Sink>
  static void emit(const double* x, const double* y, int done, int n, Sink sink) {
    int i = 0;
    for (; i + 4 <= n; i += 4)
      sink(done + i, kX.canonical(kX.canonical(_mm256_load_pd(x + i)) - kY.canonical(_mm256_load_pd(y + i))));
    for (; i < n; ++i) sink(done + i, kX.canonical(kX.canonical(x[i]) - kY.canonical(y[i])));
  }
};

}  // namespace

ORX_BRNG_FUNCTIONS(MRG32K3A)
