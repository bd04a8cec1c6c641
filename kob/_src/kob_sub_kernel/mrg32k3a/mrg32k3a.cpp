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

namespace {

using namespace orx::brng;

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

using Lanes = simd::Vec<double, 1>;  // as many lanes as the processor's vectors have, two at least
Lanes lanes_of(double x) { return simd::broadcast<Lanes>(x); }
template <int direction>
Lanes whole(Lanes x) {
  return simd::round<direction | simd::kQuietly>(x);
}

// The last three numbers of each lane, oldest first, and those that it makes.
struct alignas(64) Numbers {
  double s[3 + kSteps][kLanes];

  Lanes load(int row, int lane) const { return simd::load_vectors<Lanes, true>(&s[row][lane]); }
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
  Lanes reduced(Lanes p) const {
    return p - whole<simd::kToNearest>(p * lanes_of(inverse)) * lanes_of(modulus);
  }
  // The remainder from 0 up of an integer of size below 2 m. The factor is a little below 1 / m: however it is
  // rounded, the quotient of a multiple does not come out below the integer that it is.
  Lanes canonical(Lanes p) const {
    return p - whole<simd::kDown>(p * lanes_of(inverse * (1 - 0x1p-50))) * lanes_of(modulus);
  }
  // The same of one that is reduced.
  Lanes canonical_of_reduced(Lanes r) const { return r + keep(less(r, lanes_of(0)), lanes_of(modulus)); }

  void start(const uint32_t* last, Numbers& numbers) const {
    Lanes s[3];
    for (int j = 0; j < 3; ++j) s[j] = reduced(lanes_of(word_to_double(last[j])));
    for (int i = 0; i < 3; ++i)
      for (int lane = 0; lane < kLanes; lane += Lanes::kLanes) {
        const auto row = [&](const double(&e)[3][3][kLanes]) {
          const auto at = [&](int j) { return simd::load_vectors<Lanes, true>(&e[i][j][lane]); };
          return at(0) * s[0] + at(1) * s[1] + at(2) * s[2];
        };
        const Lanes upper = reduced(row(high));
        simd::store_vectors<true>(&numbers.s[i][lane], reduced(upper * lanes_of(0x1p15) + row(low)));
      }
  }

  // Makes number k of some lanes.
  Lanes next(Numbers& numbers, int k, int lane) const {
    const Lanes made =
        reduced(numbers.load(k + 3 - lag, lane) * lanes_of(near) - numbers.load(k, lane) * lanes_of(far));
    simd::store_vectors<true>(&numbers.s[k + 3][lane], made);
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
    void operator()(int i, Doubles z) const { store4(r + i, double_to_word(z)); }
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
  static Wide2 pair(uint32_t y, uint32_t x) {
    Words4 words = {y};
    __asm__("" : "+x"(words));  // or the compiler would shuffle them together in two more steps
    words[2] = x;
    return Wide2(words);
  }
  // 2^32 is worth 2^32 - m.
  static Wide2 folded(Wide2 p) {
    constexpr Wide2 worth = {0u - kY.m, 0u - kX.m};
    return simd::multiply_wide(p >> 32, worth) + (p & 0xFFFFFFFF);
  }

  // The next number, in integers. Folded twice, a component is hardly ever above its modulus.
  static uint32_t next(State& state) {
    constexpr Wide2 near = {kY.near, kX.near}, far = {kY.far, kX.far}, modulus = {kY.m, kX.m};
    uint32_t* const s = state.S;
    const Wide2 recent = pair(s[6 - kY.lag], s[3 - kX.lag]), oldest = pair(s[3], s[0]);
    Wide2 made =
        folded(folded(simd::multiply_wide(recent, near) + simd::multiply_wide(modulus - oldest, far)));
    const Words4 excess = Words4(simd::Longs2(made) > simd::Longs2(modulus - 1));
    if (__builtin_expect(simd::any(excess), 0)) made -= Wide2(excess) & modulus;
    const uint32_t y = uint32_t(made[0]), x = uint32_t(made[1]);
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
    for (; done + i + 4 <= n; i += 4) sink(done + i, load4(rest + i));
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
        for (int lane = 0; lane < kLanes; lane += Lanes::kLanes) {
          const Lanes y_made = kY.next(y, k + i, lane), x_made = kX.next(x, k + i, lane);
          simd::store_vectors<true>(&z[i][lane], kX.canonical(x_made - kY.canonical_of_reduced(y_made)));
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
    Doubles row[4] = {load4(z), load4(z + kLanes), load4(z + 2 * kLanes), load4(z + 3 * kLanes)};
    simd::transpose4(row);
    for (int lane = 0; lane < 4; ++lane) sink(at + lane * kSteps, row[lane]);
  }
};

}  // namespace

ORX_BRNG_FUNCTIONS(MRG32K3A)
