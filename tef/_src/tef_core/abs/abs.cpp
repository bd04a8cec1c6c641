#include "frame/simd.hpp"
#include "mode/mode.hpp"

ORX_ISA_BEGIN
namespace {

// |x| as x times 1.0 with the sign of x: unlike clearing the sign bit it quiets a signalling NaN, with its exception,
// and obeys denormals-are-zero.
template <class V>
V magnitude(V x) {
  return x * with_sign_of(broadcast<V>(1), x);
}

// The control word is neither read nor changed: a product with 1 is exact in every rounding mode.
template <class T>
void absolute(int n, const T* a, T* r) {
  using V = vector_of<T, 16>;
  constexpr int step = 32 / sizeof(T), half = step / 2;
  int i = 0;
  for (; i + step <= n; i += step) {
    const V low = load<V>(a + i), high = load<V>(a + i + half);
    store(r + i, magnitude(low));
    store(r + i + half, magnitude(high));
  }
  if (i >= n) return;
  // Lanes past the end repeat the first element of the tail, so that they raise nothing of their own.
  alignas(32) T tail[step];
  for (int j = 0; j < step; ++j) tail[j] = i + j < n ? a[i + j] : a[i];
  store(tail, magnitude(load<V>(tail)));
  store(tail + half, magnitude(load<V>(tail + half)));
  for (int j = 0; i + j < n; ++j) r[i + j] = tail[j];
}

}  // namespace
ORX_ISA_END

ORX_API void orx_tef_kernel_sAbs_G9HAynn(int n, const float* a, float* r) { orx::tef::absolute(n, a, r); }
ORX_API void orx_tef_kernel_dAbs_G9HAynn(int n, const double* a, double* r) { orx::tef::absolute(n, a, r); }
