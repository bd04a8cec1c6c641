#include "peers.hpp"

#include <immintrin.h>
#include <sleef.h>

#include <cmath>

namespace {

// r[i] = expression, in a, b, i and the scalars s.
#define LOOP(Fn, expression)                                         \
  {                                                                  \
#Fn, PeerKind::Loop, [](int n, const KernelOperands<T>& o) {       \
      [[maybe_unused]] const T *a = o.in[0], *b = o.in[1], *s = o.scalar; \
      T* __restrict r = o.out[0];                                        \
      for (int i = 0; i < n; ++i) r[i] = expression;                     \
    } \
  }
#define VECTOR_LOOP(Fn, kind, f)                                                                   \
  {                                                                                                \
#Fn, PeerKind::kind,                                                                           \
        [](int n, const KernelOperands <T>& o) { vector_loop(n, o, [](auto x) { return f(x); }); } \
  }
#define SLEEF_1_0(Fn, f) VECTOR_LOOP(Fn, Sleef10, Sleef_##f##_u10avx)
#define SLEEF_3_5(Fn, f) VECTOR_LOOP(Fn, Sleef35, Sleef_##f##_u35avx)

__m256d load(const double* p) { return _mm256_loadu_pd(p); }
__m256 load(const float* p) { return _mm256_loadu_ps(p); }
void store(double* p, __m256d x) { _mm256_storeu_pd(p, x); }
void store(float* p, __m256 x) { _mm256_storeu_ps(p, x); }

template <class T, class F>
void vector_loop(int n, const KernelOperands<T>& o, F f) {
  for (int i = 0; i < n; i += 32 / sizeof(T)) store(o.out[0] + i, f(load(o.in[0] + i)));
}

template <class T>
std::vector<Peer<T>> vector_peers();
template <>
std::vector<Peer<double>> vector_peers() {
  using T = double;
  return {SLEEF_1_0(Exp, expd4), SLEEF_1_0(Expm1, expm1d4), SLEEF_1_0(Ln, logd4),
          SLEEF_3_5(Ln, logd4),  SLEEF_1_0(Log10, log10d4), SLEEF_1_0(Log1p, log1pd4)};
}
template <>
std::vector<Peer<float>> vector_peers() {
  using T = float;
  return {SLEEF_1_0(Exp, expf8), SLEEF_1_0(Expm1, expm1f8), SLEEF_1_0(Ln, logf8),
          SLEEF_3_5(Ln, logf8),  SLEEF_1_0(Log10, log10f8), SLEEF_1_0(Log1p, log1pf8)};
}

// std::exp and the like are the C library's function of the argument's own type.
template <class T>
std::vector<Peer<T>> all_peers() {
  std::vector<Peer<T>> all{LOOP(Abs, std::fabs(a[i])),
                           LOOP(Add, a[i] + b[i]),
                           LOOP(Exp, std::exp(a[i])),
                           LOOP(Expm1, std::expm1(a[i])),
                           LOOP(LinearFrac, (a[i] * s[0] + s[1]) / (b[i] * s[2] + s[3])),
                           LOOP(Ln, std::log(a[i])),
                           LOOP(Log10, std::log10(a[i])),
                           LOOP(Log1p, std::log1p(a[i])),
                           LOOP(Mul, a[i] * b[i]),
                           LOOP(Sqr, a[i] * a[i]),
                           LOOP(Sub, a[i] - b[i])};
  for (const Peer<T>& p : vector_peers<T>()) all.push_back(p);
  return all;
}

}  // namespace

template <class T>
const std::vector<Peer<T>>& peers() {
  static const std::vector<Peer<T>> all = all_peers<T>();
  return all;
}
template const std::vector<Peer<double>>& peers();
template const std::vector<Peer<float>>& peers();
