// Pairs that lie side by side in vectors, taken apart and put together where lanes need not keep their order.
#pragma once
#include "orx/base/simd/simd.hpp"

ORX_ISA_BEGIN(orx::simd)

// The firsts and the seconds of pairs, in an order that depends on the instruction set; of a single vector each twice.
template <class T, int n>
inline void unzip_pairs(Vec<T, n> x, Vec<T, (n + 1) / 2>& first, Vec<T, (n + 1) / 2>& second) {
  for (int i = 0; i < n; i += 2) {
    auto &a = first.v[i / 2], &b = second.v[i / 2];
#if defined(ORX_ISA_AVX) || defined(ORX_ISA_AVX2)
    native::unzip_halves(x.v[i], x.v[n > 1 ? i + 1 : 0], a, b);
#else
    native::unzip(x.v[i], x.v[n > 1 ? i + 1 : 0], a, b);
#endif
  }
}
// Such pairs side by side again.
template <int n, class T>
inline Vec<T, n> zip_pairs(Vec<T, (n + 1) / 2> first, Vec<T, (n + 1) / 2> second) {
  Vec<T, n> x;
  for (int i = 0; i < n; i += 2) {
    auto &a = first.v[i / 2], &b = second.v[i / 2];
#if defined(ORX_ISA_AVX) || defined(ORX_ISA_AVX2)
    native::zip_halves(a, b);
#else
    native::zip(a, b);
#endif
    x.v[i] = a;
    if constexpr (n > 1) x.v[i + 1] = b;
  }
  return x;
}

ORX_ISA_END
