// Vectors to and from memory where that is more than a load or a store: the first few elements alone, and
// pairs that lie interleaved.
#pragma once
#include "orx/base/simd/simd.hpp"

ORX_ISA_BEGIN(orx::simd)

// A mask of the first `count` lanes.
template <class X>
inline X first_lanes(int count) {
  static_assert(X::kCount == 1);
  return {{load<typename X::V, true>(kMaskRows<typename X::Element>.lane[count])}};
}

// The first `count` elements at p, `fill` in the other lanes; and the same way out. No other element is touched.
template <class X>
inline X load_first(const typename X::Element* p, int count, typename X::Element fill) {
  static_assert(X::kCount == 1);
  return {{native::load_few(p, count, broadcast<X>(fill).v[0])}};
}
template <class T>
inline void store_first(T* p, int count, Vec<T, 1> x) {
  if (count >= x.kLanes)
    store(p, x.v[0]);
  else
    native::store_few(p, count, x.v[0]);
}

// Interleaved pairs: the first of each in `a`, the second in `b`.
template <class X>
inline void load_pairs(const typename X::Element* p, X& a, X& b) {
  for (int i = 0; i < X::kCount; ++i) native::load_unzipped(p + 2 * i * X::kLanesEach, a.v[i], b.v[i]);
}
template <class T, int n>
inline void store_pairs(T* p, Vec<T, n> a, Vec<T, n> b) {
  for (int i = 0; i < n; ++i) native::store_zipped(p + 2 * i * a.kLanesEach, a.v[i], b.v[i]);
}
// The first `count` pairs, `fill` in the lanes of the others; and the same way out.
template <class X>
inline void load_first_pairs(const typename X::Element* p, int count, typename X::Element fill, X& a, X& b) {
  constexpr int lanes = X::kLanes;
  const int above = 2 * count - lanes;
  const X low = load_first<X>(p, above < 0 ? 2 * count : lanes, fill);
  const X high = load_first<X>(p + lanes, above < 0 ? 0 : above, fill);
  native::unzip(low.v[0], high.v[0], a.v[0], b.v[0]);
}
template <class T>
inline void store_first_pairs(T* p, int count, Vec<T, 1> a, Vec<T, 1> b) {
  constexpr int lanes = Vec<T, 1>::kLanes;
  native::zip(a.v[0], b.v[0]);
  store_first(p, 2 * count, a);
  if (2 * count > lanes) store_first(p + lanes, 2 * count - lanes, b);
}

ORX_ISA_END
