// WH: four congruential generators x_i(n+1) = a_i x_i(n) mod m_i, m_i primes just below 2^24; the fractional
// part of the sum of the x_i / m_i is uniform.
//   B. A. Wichmann, I. D. Hill, Algorithm AS 183, Applied Statistics 31 (1982).
//   N. M. MacLaren, The generation of multiple independent sequences of pseudorandom numbers,
//   Applied Statistics 38 (1989).
#include "wh/wh_tables.hpp"

#include "_math/modular.hpp"
#include "_service/generator.hpp"
#include "_service/reals.hpp"

#include <cstddef>

namespace {

using namespace orx::brng;

double whole(double x) { return int(x); }
Doubles whole(Doubles x) { return simd::round<simd::kToZero | simd::kQuietly>(x); }

struct WH {
  struct State {
    uint32_t X[4], A[4];
  };

  static int seed(KobStream* stream, int n, const uint32_t* params) {
    State& s = state<WH>(stream);
    const uint32_t row = sub_generator(stream);
    for (int i = 0; i < 4; ++i) {
      const uint32_t x = i < n ? params[i] % _kob_WH_M[row][i] : 1;
      s.X[i] = x ? x : 1;
      s.A[i] = _kob_WH_A[row] >> 8 * i & 0xFF;
    }
    return KOB_STATUS_OK;
  }

  static int leapfrog(KobStream* stream, int n, const uint32_t* params) {
    move(stream, params[0], 0);
    State& s = state<WH>(stream);
    const uint32_t* m = _kob_WH_M[sub_generator(stream)];
    for (int i = 0; i < 4; ++i) s.A[i] = __kobiPowMod(s.A[i], uint32_t(n), 0, m[i]);
    return KOB_STATUS_OK;
  }

  static int skip(KobStream* stream, int, const uint32_t* params) {
    move(stream, params[0], params[1]);
    return KOB_STATUS_OK;
  }

  static constexpr double kUnit = 1;
  static int number(KobStream* stream, double* number) {
    const uint32_t row = sub_generator(stream);
    const Doubles u = step(state<WH>(stream), row) * load4(_kobdWH_IM_Tab[row]);
    const double sum = ((u[0] + u[1]) + u[2]) + u[3];
    *number = sum - whole(sum);
    return KOB_STATUS_OK;
  }
  template <class Real>
  static int reals(KobStream* stream, int n, Real* r, Real a, Real b) {
    const uint32_t row = sub_generator(stream);
    generate(state<WH>(stream), row, n,
             Uniform<Real>{RealSink<Real>(r, a, double(b) - double(a)), _kobdWH_IM_Tab[row]});
    return KOB_STATUS_OK;
  }

  static int words(KobStream* stream, int n, uint32_t* r) {
    State& s = state<WH>(stream);
    const uint32_t row = sub_generator(stream);
    if (n == 1) {
      store4(r, load4(s.X));
      step(s, row);
    } else {
      generate(s, row, n, Words{r});
    }
    return KOB_STATUS_OK;
  }

  static bool adopt(KobStream* stream) {
    const State& s = state<WH>(stream);
    const uint32_t* m = _kob_WH_M[sub_generator(stream)];
    for (int i = 0; i < 4; ++i)
      if (s.X[i] == 0 || s.X[i] >= m[i] || s.A[i] == 0 || s.A[i] >= m[i]) return false;
    return true;
  }

 private:
  static void move(KobStream* stream, uint32_t n_low, uint32_t n_high) {
    State& s = state<WH>(stream);
    const uint32_t* m = _kob_WH_M[sub_generator(stream)];
    for (int i = 0; i < 4; ++i)
      s.X[i] = multiply_mod(s.X[i], __kobiPowMod(s.A[i], n_low, n_high, m[i]), m[i]);
  }

  // Sinks take the four components of four numbers, or of one.
  template <class Real>
  struct Uniform {
    RealSink<Real> sink;
    const double* inverse;

    template <class V>
    void operator()(int i, const V (&x)[4]) const {
      const V sum = ((x[0] * inverse[0] + x[1] * inverse[1]) + x[2] * inverse[2]) + x[3] * inverse[3];
      sink(i, sum - whole(sum));
    }
  };

  struct Words {
    uint32_t* r;
    void operator()(int i, const double (&x)[4]) const {
      for (int j = 0; j < 4; ++j) r[4 * ptrdiff_t(i) + j] = uint32_t(int(x[j]));
    }
    void operator()(int i, const Doubles (&x)[4]) const {
      Doubles row[4] = {x[0], x[1], x[2], x[3]};
      simd::transpose4(row);
      for (int j = 0; j < 4; ++j) store4(r + 4 * ptrdiff_t(i + j), Words4(simd::truncate_to_ints(row[j])));
    }
  };

  // Whatever the rounding mode: x a mod m for x and a below m < 2^24, in double; a_by_m is a times the inverse of m.
  // The product is exact. Its quotient by m is no integer unless the product is 0, so it lies at least 1/m > 2^-24
  // away from any; x a_by_m, below 2^24, errs by less than 2^-26 and has the same whole part.
  template <class V, class C>
  static V multiply(V x, C a, C a_by_m, C m) {
    return x * a - whole(x * a_by_m) * m;
  }
  // One step of all four components; what they were before.
  static Doubles step(State& s, uint32_t row) {
    const auto doubles = [](const uint32_t* words) { return simd::to_doubles(Ints4(load4(words))); };
    const Doubles x = doubles(s.X), a = doubles(s.A), m = doubles(_kob_WH_M[row]);
    store4(s.X, Words4(simd::truncate_to_ints(multiply(x, a, a * load4(_kobdWH_IM_Tab[row]), m))));
    return x;
  }

  template <class Sink>
  static void generate(State& s, uint32_t row, int n, Sink sink) {
    constexpr int at_once = 8;
    const double* inverse = _kobdWH_IM_Tab[row];
    double x[4], a[4], m[4];
    for (int c = 0; c < 4; ++c) {
      x[c] = s.X[c];
      a[c] = s.A[c];
      m[c] = _kob_WH_M[row][c];
    }
    int i = 0;
    if (n >= at_once) {
      Doubles lanes[2][4];
      double jump[4], jump_by_m[4];
      for (int c = 0; c < 4; ++c) {
        const auto square = [m = m[c], inverse = inverse[c]](double y) {
          return multiply(y, y, y * inverse, m);
        };
        const double a2 = square(a[c]), a4 = square(a2), a2_by_m = a2 * inverse[c];
        const double next = multiply(x[c], a[c], a[c] * inverse[c], m[c]);
        const Doubles first = {x[c], next, multiply(x[c], a2, a2_by_m, m[c]),
                               multiply(next, a2, a2_by_m, m[c])};
        lanes[0][c] = first;
        lanes[1][c] = multiply(first, a4, a4 * inverse[c], m[c]);
        jump[c] = square(a4);
        jump_by_m[c] = jump[c] * inverse[c];
      }
      for (; i <= n - at_once; i += at_once)
        for (int j = 0; j < 2; ++j) {
          sink(i + 4 * j, lanes[j]);
          for (int c = 0; c < 4; ++c) lanes[j][c] = multiply(lanes[j][c], jump[c], jump_by_m[c], m[c]);
        }
      int j = 0;
      for (; i <= n - 4; i += 4) sink(i, lanes[j++]);
      for (int c = 0; c < 4; ++c) x[c] = lanes[j][c][0];
    }
    for (; i < n; ++i) {
      sink(i, x);
      for (int c = 0; c < 4; ++c) x[c] = multiply(x[c], a[c], a[c] * inverse[c], m[c]);
    }
    for (int c = 0; c < 4; ++c) s.X[c] = uint32_t(int(x[c]));
  }
};

}  // namespace

ORX_BRNG_FUNCTIONS(WH)
