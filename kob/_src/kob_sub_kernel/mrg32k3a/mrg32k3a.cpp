// MRG32k3a: z(n) = x(n) - y(n) mod m1 with
//   x(n) = 1403580 x(n-2) - 810728 x(n-3) mod m1 = 2^32 - 209,
//   y(n) = 527612 y(n-1) - 1370589 y(n-3) mod m2 = 2^32 - 22853.
//   P. L'Ecuyer, Good parameters and implementations for combined multiple recursive random number
//   generators, Operations Research 47 (1999).
//
// Few numbers are made one after the other in integers. Many are made by sixteen lanes, each of them 32 numbers
// ahead of the one before, in doubles: all products and sums are exact there, and no rounding mode changes one.
#include <algorithm>

#include "_math/modular.hpp"
#include "_service/generator.hpp"
#include "_service/reals.hpp"
#include "orx/base/simd/simd.hpp"

namespace {

using namespace orx::brng;
namespace simd = orx::simd;

constexpr int kLanes = 16, kSteps = 32, kBlock = kLanes * kSteps;
constexpr int kFew = 64;  // from there on a block costs less than numbers made singly

struct Matrix {
  uint64_t e[3][3];
};

constexpr Matrix multiply(const Matrix& f, const Matrix& g, uint64_t m) {
  Matrix product{};
  for (int i = 0; i < 3; ++i)
    for (int j = 0; j < 3; ++j)
      for (int k = 0; k < 3; ++k) product.e[i][j] = (product.e[i][j] + f.e[i][k] * g.e[k][j] % m) % m;
  return product;
}

template <int direction>
__m256d whole(__m256d x) {
  return _mm256_round_pd(x, direction | _MM_FROUND_NO_EXC);
}

// The last three numbers of each lane, oldest first, and those that it makes.
struct alignas(64) Numbers {
  double s[3 + kSteps][kLanes];

  __m256d load(int row, int lane) const { return _mm256_load_pd(&s[row][lane]); }
};

// One component: s(n) = near s(n - lag) - far s(n - 3) mod m.
struct Component {
  uint32_t m;
  int lag;
  uint32_t near, far;
  double modulus, inverse;
  // The three numbers of lane j come from the first lane's by the recursion's matrix to the power j kSteps. Its
  // balanced elements are 2^15 high + low with low at most 2^14 in size.
  alignas(64) double high[3][3][kLanes], low[3][3][kLanes];

  constexpr Component(uint32_t prime, int steps_back, uint32_t near_factor, uint32_t far_factor)
      : m(prime),
        lag(steps_back),
        near(near_factor),
        far(far_factor),
        modulus(prime),
        inverse(1 / modulus),
        high{},
        low{} {
    Matrix step = {{{0, 1, 0}, {0, 0, 1}, {m - far, 0, 0}}}, ahead = {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
    step.e[2][3 - lag] = near;
    for (int steps = 1; steps < kSteps; steps *= 2) step = multiply(step, step, m);
    for (int lane = 0; lane < kLanes; ++lane, ahead = multiply(step, ahead, m))
      for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j) {
          const int64_t e = int64_t(ahead.e[i][j]), balanced = e > m / 2 ? e - m : e;
          high[i][j][lane] = double((balanced + 0x4000) >> 15);
          low[i][j][lane] = double(balanced - ((balanced + 0x4000) >> 15) * 0x8000);
        }
  }

  // The remainder of least size, up to one unit, of an integer of size below 2^52.5: its quotient by m is below
  // 2^20.5 and computed to within 2^-32.
  __m256d reduced(__m256d p) const {
    return p - whole<_MM_FROUND_TO_NEAREST_INT>(p * _mm256_set1_pd(inverse)) * _mm256_set1_pd(modulus);
  }
  // The remainder from 0 up of an integer of size below 2 m. The factor is a little below 1 / m: however it is
  // rounded, the quotient of a multiple does not come out below the integer that it is.
  __m256d canonical(__m256d p) const {
    const __m256d below = _mm256_set1_pd(inverse * (1 - 0x1p-50));
    return p - whole<_MM_FROUND_TO_NEG_INF>(p * below) * _mm256_set1_pd(modulus);
  }
  // The same of one that is reduced.
  __m256d canonical_of_reduced(__m256d r) const {
    const __m256d negative = _mm256_cmp_pd(r, _mm256_setzero_pd(), _CMP_LT_OQ);
    return r + _mm256_and_pd(negative, _mm256_set1_pd(modulus));
  }

  void start(const uint32_t* last, Numbers& numbers) const {
    __m256d s[3];
    for (int j = 0; j < 3; ++j) s[j] = reduced(_mm256_set1_pd(word_to_double(last[j])));
    for (int i = 0; i < 3; ++i)
      for (int lane = 0; lane < kLanes; lane += 4) {
        const auto row = [&](const double(&e)[3][3][kLanes]) {
          return _mm256_load_pd(&e[i][0][lane]) * s[0] + _mm256_load_pd(&e[i][1][lane]) * s[1] +
                 _mm256_load_pd(&e[i][2][lane]) * s[2];
        };
        const __m256d upper = reduced(row(high));
        _mm256_store_pd(&numbers.s[i][lane], reduced(upper * _mm256_set1_pd(0x1p15) + row(low)));
      }
  }

  // Makes number k of four lanes.
  __m256d next(Numbers& numbers, int k, int lane) const {
    const __m256d made = reduced(numbers.load(k + 3 - lag, lane) * _mm256_set1_pd(near) -
                                 numbers.load(k, lane) * _mm256_set1_pd(far));
    _mm256_store_pd(&numbers.s[k + 3][lane], made);
    return made;
  }

  // The last three of the first n numbers of a block.
  void finish(const Numbers& numbers, int n, uint32_t* last) const {
    const int lane = std::min(n / kSteps, kLanes - 1), row = n - lane * kSteps;
    for (int j = 0; j < 3; ++j) {
      const double s = numbers.s[row + j][lane];
      last[j] = double_to_word(s < 0 ? s + modulus : s);
    }
  }
};

constexpr Component kX(4294967087, 2, 1403580, 810728), kY(4294944443, 1, 527612, 1370589);

struct MRG32K3A : NoLeapfrog {
  struct State {
    uint32_t S[6];  // the last three numbers of x, oldest first; the same of y
  };

  static int seed(KobStream* stream, int n, const uint32_t* params) {
    uint32_t* s = state<MRG32K3A>(stream).S;
    for (int i = 0; i < 6; ++i) s[i] = i < n ? params[i] : 1;
    seed_component(s, kX.m);
    seed_component(s + 3, kY.m);
    return KOB_STATUS_OK;
  }

  static int skip(KobStream* stream, int, const uint32_t* params) {
    constexpr uint32_t row_x[3] = {0, kX.near, kX.m - kX.far}, row_y[3] = {kY.near, 0, kY.m - kY.far};
    uint32_t* s = state<MRG32K3A>(stream).S;
    jump(s, row_x, kX.m, params);
    jump(s + 3, row_y, kY.m, params);
    return KOB_STATUS_OK;
  }

  static constexpr double kUnit = 0x1.000000d10000bp-32;  // 1 / m1
  static int number(KobStream* stream, double* number) {
    *number = word_to_double(next(state<MRG32K3A>(stream)));
    return KOB_STATUS_OK;
  }
  template <class Real>
  static int reals(KobStream* stream, int n, Real* r, Real a, Real b) {
    return generate(state<MRG32K3A>(stream), n, RealSink<Real>(r, a, (double(b) - double(a)) * kUnit));
  }

  static int words(KobStream* stream, int n, uint32_t* r) {
    State& s = state<MRG32K3A>(stream);
    if (n != 1) return generate(s, n, Words{r});
    *r = next(s);
    return KOB_STATUS_OK;
  }

  static bool adopt(KobStream* stream) {
    const uint32_t* s = state<MRG32K3A>(stream).S;
    return is_component(s, kX.m) && is_component(s + 3, kY.m);
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
  static int generate(State& s, int n, const Sink& sink) {
    if (n < kFew)
      singly(s, n, sink);
    else
      in_blocks(s, n, sink);
    return KOB_STATUS_OK;
  }

  template <class Sink>
  static void singly(State& s, int n, const Sink& sink) {
    for (int i = 0; i < n; ++i) sink(i, word_to_double(next(s)));
  }

  // Words of y and of x in 64-bit lanes, y in the lower one: the chain from number to number goes through it.
  using Pair = simd::Integers<uint64_t, 2, 1>;
  static Pair pair(uint32_t y, uint32_t x) {
    simd::Integers<uint32_t, 4, 1> words = {{{y, 0, 0, 0}}};
    __asm__("" : "+x"(words.v[0]));  // or the compiler would shuffle them together in two more steps
    words.v[0][2] = x;
    return simd::as<uint64_t>(words);
  }
  // 2^32 is worth 2^32 - m.
  static Pair folded(Pair p) {
    constexpr Pair worth = {{{0u - kY.m, 0u - kX.m}}};
    return multiply_wide(simd::shift_right<32>(p), worth) + (p & uint64_t(0xFFFFFFFF));
  }

  // The next number, in integers. Folded twice, a component is hardly ever above its modulus.
  static uint32_t next(State& state) {
    constexpr Pair near = {{{kY.near, kX.near}}}, far = {{{kY.far, kX.far}}}, modulus = {{{kY.m, kX.m}}};
    uint32_t* const s = state.S;
    const Pair recent = pair(s[6 - kY.lag], s[3 - kX.lag]), oldest = pair(s[3], s[0]);
    Pair made = folded(folded(multiply_wide(recent, near) + multiply_wide(modulus - oldest, far)));
    const auto excess =
        simd::as<uint64_t>(simd::greater(simd::as<int64_t>(made), simd::as<int64_t>(modulus - uint64_t(1))));
    if (__builtin_expect(any(excess), 0)) made = made - (excess & modulus);
    const uint32_t y = uint32_t(made.v[0][0]), x = uint32_t(made.v[0][1]);
    // Each in a store of its own: a load of two would wait for both.
    const auto put = [s](int i, uint32_t word) {
      s[i] = word;
      __asm__("" : "+m"(s[i]));
    };
    put(0, s[1]), put(1, s[2]), put(2, x);
    put(3, s[4]), put(4, s[5]), put(5, y);
    return x >= y ? x - y : x - y + kX.m;
  }

  template <class Sink>
  [[gnu::noinline]] static void in_blocks(State& s, int n, const Sink& sink) {
    int done = 0;
    for (; n - done >= kBlock; done += kBlock) block(s, kBlock, sink, done);
    if (done == n) return;
    alignas(32) double rest[kBlock];  // of a block of which not all is wanted
    block(s, n - done, RealSink<double>(rest, 0, 1), 0);
    int i = 0;
    for (; done + i + 4 <= n; i += 4) sink(done + i, _mm256_load_pd(rest + i));
    for (; done + i < n; ++i) sink(done + i, rest[i]);
  }

  // Makes a whole block, of which the state moves on by n numbers.
  template <class Sink>
  static void block(State& s, int n, const Sink& sink, int at) {
    Numbers x, y;
    kX.start(s.S, x);
    kY.start(s.S + 3, y);
    for (int k = 0; k < kSteps; k += 4) {
      alignas(64) double z[4][kLanes];
      for (int i = 0; i < 4; ++i) {
        for (int lane = 0; lane < kLanes; lane += 4) {
          const __m256d y_made = kY.next(y, k + i, lane), x_made = kX.next(x, k + i, lane);
          _mm256_store_pd(&z[i][lane], kX.canonical(x_made - kY.canonical_of_reduced(y_made)));
        }
        // The compiler would carry the last three numbers of all lanes through registers that there are not.
        __asm__ volatile("" : : : "memory");
      }
      for (int lane = 0; lane < kLanes; lane += 4) emit(&z[0][lane], sink, at + lane * kSteps + k);
    }
    kX.finish(x, n, s.S);
    kY.finish(y, n, s.S + 3);
  }

  // Four numbers of each of four lanes, in rows across the lanes, to where the lanes put them.
  template <class Sink>
  static void emit(const double* z, const Sink& sink, int at) {
    const __m256d z0 = _mm256_load_pd(z), z1 = _mm256_load_pd(z + kLanes),
                  z2 = _mm256_load_pd(z + 2 * kLanes), z3 = _mm256_load_pd(z + 3 * kLanes);
    const __m256d even01 = _mm256_unpacklo_pd(z0, z1), odd01 = _mm256_unpackhi_pd(z0, z1),
                  even23 = _mm256_unpacklo_pd(z2, z3), odd23 = _mm256_unpackhi_pd(z2, z3);
    sink(at, _mm256_permute2f128_pd(even01, even23, 0x20));
    sink(at + kSteps, _mm256_permute2f128_pd(odd01, odd23, 0x20));
    sink(at + 2 * kSteps, _mm256_permute2f128_pd(even01, even23, 0x31));
    sink(at + 3 * kSteps, _mm256_permute2f128_pd(odd01, odd23, 0x31));
  }
};

}  // namespace

ORX_BRNG_FUNCTIONS(MRG32K3A)
