// Loops that need no library: the arithmetic, roots, rounding, as the compiler makes vector code of them with -O3 -mavx,
// without errno and without regard to trapping.
#include <cmath>
#include <complex>
#include <utility>

#include "peers.hpp"

namespace {

using orx::Operands;

template <class R>
using Row = std::pair<const char*, void (*)(int, const Operands<R>&)>;

// r[i] = expression, in a, b, i and the scalars s.
#define LOOP(Fn, expression)                                              \
  {                                                                       \
#Fn, [](int n, const Operands<R>& o) {                                  \
      [[maybe_unused]] const R *a = o.in[0], *b = o.in[1], *s = o.scalar; \
      R* __restrict r = o.out[0];                                         \
      for (int i = 0; i < n; ++i) r[i] = expression;                      \
    } \
  }
// The same of complex elements; E is the type of a result.
#define COMPLEX_LOOP(Fn, E, expression)                                                       \
  {                                                                                           \
#Fn, [](int n, const Operands<R>& o) {                                                      \
      [[maybe_unused]] const auto *a = reinterpret_cast<const std::complex<R>*>(o.in[0]),     \
                                  *b = reinterpret_cast<const std::complex<R>*>(o.in[1]);     \
      E* __restrict r = reinterpret_cast<E*>(o.out[0]);                                       \
      for (int i = 0; i < n; ++i) r[i] = expression;                                          \
    } \
  }

// Elements on their way, in i, n, a, y, and what selects them: the real, and the complex ones.
#define PACK_ROW(Fn, E, loop)                                        \
  {                                                                  \
#Fn, [](int n, const Operands<R>& o) {                             \
      const E* a = reinterpret_cast<const E*>(o.in[0]);              \
      E* __restrict y = reinterpret_cast<E*>(o.out[0]);              \
      [[maybe_unused]] const int* selection = o.selection;           \
      [[maybe_unused]] const int stride = static_cast<int>(o.stride); \
      loop                                                           \
    } \
  }
#define PACK_ROWS(E)                                                                    \
  PACK_ROW(PackI, E, for (int i = 0; i < n; ++i) y[i] = a[i * stride];),                \
      PACK_ROW(PackM, E, for (int i = 0; i < n; ++i) if (selection[i])* y++ = a[i];),   \
      PACK_ROW(PackV, E, for (int i = 0; i < n; ++i) y[i] = a[selection[i]];),          \
      PACK_ROW(UnpackI, E, for (int i = 0; i < n; ++i) y[i * stride] = a[i];),          \
      PACK_ROW(UnpackM, E, for (int i = 0; i < n; ++i) if (selection[i]) y[i] = *a++;), \
      PACK_ROW(UnpackV, E, for (int i = 0; i < n; ++i) y[selection[i]] = a[i];)

template <class R>
const Row<R> kRealLoops[] = {LOOP(Abs, std::fabs(a[i])),
                             LOOP(Add, a[i] + b[i]),
                             LOOP(Ceil, std::ceil(a[i])),
                             LOOP(Div, a[i] / b[i]),
                             LOOP(Floor, std::floor(a[i])),
                             LOOP(Inv, 1 / a[i]),
                             LOOP(InvSqrt, 1 / std::sqrt(a[i])),
                             LOOP(LinearFrac, (a[i] * s[0] + s[1]) / (b[i] * s[2] + s[3])),
                             LOOP(Mul, a[i] * b[i]),
                             LOOP(NearbyInt, std::nearbyint(a[i])),
                             LOOP(Rint, std::rint(a[i])),
                             LOOP(Sqr, a[i] * a[i]),
                             LOOP(Sqrt, std::sqrt(a[i])),
                             LOOP(Sub, a[i] - b[i]),
                             LOOP(Trunc, std::trunc(a[i])),
                             PACK_ROWS(R)};

template <class R>
const Row<R> kComplexLoops[] = {
    COMPLEX_LOOP(Add, std::complex<R>, a[i] + b[i]),
    COMPLEX_LOOP(CIS, std::complex<R>, (std::complex<R>{std::cos(o.in[0][i]), std::sin(o.in[0][i])})),
    COMPLEX_LOOP(Conj, std::complex<R>, std::conj(a[i])),
    COMPLEX_LOOP(Div, std::complex<R>, a[i] / b[i]),
    COMPLEX_LOOP(Mul, std::complex<R>, a[i] * b[i]),
    COMPLEX_LOOP(MulByConj, std::complex<R>, a[i] * std::conj(b[i])),
    COMPLEX_LOOP(Sub, std::complex<R>, a[i] - b[i]),
    PACK_ROWS(std::complex<R>)};

template <class R, size_t N>
VectorCall<R> find(const Row<R> (&rows)[N], const std::string& name) {
  for (const Row<R>& row : rows)
    if (name == row.first) return row.second;
  return nullptr;
}

}  // namespace

template <class R>
VectorCall<R> compiled_loop(const orx::Function& f) {
  return f.complex() ? find(kComplexLoops<R>, f.name) : find(kRealLoops<R>, f.name);
}
template VectorCall<float> compiled_loop(const orx::Function&);
template VectorCall<double> compiled_loop(const orx::Function&);
