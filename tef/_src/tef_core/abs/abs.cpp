#include "frame/simd.hpp"
#include "mode/mode.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

// |x| as x times 1.0 with the sign of x: unlike clearing the sign bit it quiets a signalling NaN, with its
// exception, and obeys denormals-are-zero. The control word is neither read nor changed: the product is exact
// in every rounding.
template <class X>
X product_with_sign(X x) {
  return x * with_sign_of(broadcast<X>(1), x);
}

template <class T>
void absolute(int n, const T* a, T* r) {
  using X = Vec<T, 1>;
  int i = 0;
  for (; i + X::kLanes <= n; i += X::kLanes) store_vectors(r + i, product_with_sign(load_vectors<X>(a + i)));
  if (i >= n) return;
  // Lanes past the end repeat the first element of the tail, so that they raise nothing of their own.
  alignas(kVectorBytes) T tail[X::kLanes];
  for (int j = 0; j < X::kLanes; ++j) tail[j] = i + j < n ? a[i + j] : a[i];
  store_vectors(tail, product_with_sign(load_vectors<X>(tail)));
  for (int j = 0; i + j < n; ++j) r[i + j] = tail[j];
}

}  // namespace
ORX_ISA_END

ORX_API void orx_tef_kernel_sAbs_G9HAynn(int n, const float* a, float* r) { orx::tef::absolute(n, a, r); }
ORX_API void orx_tef_kernel_dAbs_G9HAynn(int n, const double* a, double* r) { orx::tef::absolute(n, a, r); }
