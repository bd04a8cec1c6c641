// The vectors of data fitting, 32 bytes of either precision: what they need of the house's vocabulary, and the
// same functions for single numbers, so that a formula can be written once for both.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>

#include "orx/base/simd/rows.hpp"

namespace orx::df {

template <class Real>
struct VecOf {
  typedef Real Type __attribute__((vector_size(32)));
  // One integer for each lane.
  typedef int32_t Cells __attribute__((vector_size(4 * 32 / sizeof(Real))));
  typedef ptrdiff_t Indices __attribute__((vector_size(sizeof(ptrdiff_t) * 32 / sizeof(Real))));
};
template <class Real>
using Vec = typename VecOf<Real>::Type;
template <class Real>
using CellVec = typename VecOf<Real>::Cells;
template <class Real>
using IndexVec = typename VecOf<Real>::Indices;
template <class Real>
constexpr int kLanes = 32 / int(sizeof(Real));

// As packed members, not as bytes: GCC keeps what it has copied byte by byte on the stack where registers are few.
template <class Real>
struct [[gnu::packed, gnu::may_alias]] Packed {
  Vec<Real> v;
};
template <class Real>
Vec<Real> load(const Real* p) {
  return reinterpret_cast<const Packed<Real>*>(p)->v;
}
template <class Real>
void store(Real* p, Vec<Real> v) {
  reinterpret_cast<Packed<Real>*>(p)->v = v;
}
template <class Real>
Vec<Real> broadcast(Real x) {
  return x - Vec<Real>{};  // x - 0 is x, also for -0
}
// A number as a number or as a vector.
template <class T, class Real>
T spread(Real x) {
  if constexpr (sizeof(T) == sizeof(Real))
    return x;
  else
    return broadcast(x);
}
template <class T, class Real>
T read(const Real* p) {
  if constexpr (sizeof(T) == sizeof(Real))
    return *p;
  else
    return load(p);
}
inline double magnitude(double x) { return __builtin_fabs(x); }
inline float magnitude(float x) { return __builtin_fabsf(x); }
using simd::rows::magnitude;

// As many elements of the row (a, b) as a vector has, from element k on.
template <int k, class V, std::size_t... lane>
V shifted(V a, V b, std::index_sequence<lane...>) {
  return __builtin_shufflevector(a, b, (k + int(lane))...);
}
template <int k, class V>
V shifted(V a, V b) {
  return shifted<k>(a, b, std::make_index_sequence<sizeof(V) / sizeof(a[0])>());
}

using simd::rows::lanes_at_most;
template <class Real>
constexpr unsigned kAllLanes = (1u << kLanes<Real>)-1;

// The smaller number; where one is none, b.
inline double smaller(double a, double b) { return a < b ? a : b; }
inline float smaller(float a, float b) { return a < b ? a : b; }
using simd::rows::smaller;
// The greater number; where one is none, b.
inline double greater(double a, double b) { return a > b ? a : b; }
inline float greater(float a, float b) { return a > b ? a : b; }
using simd::rows::greater;
inline double round_down(double x) { return __builtin_floor(x); }
inline float round_down(float x) { return __builtin_floorf(x); }
using simd::rows::round_down;

// v in each lane where a <= b, 0 elsewhere.
inline double where_at_most(double a, double b, double v) { return a <= b ? v : 0.0; }
inline float where_at_most(float a, float b, float v) { return a <= b ? v : 0.0f; }
using simd::rows::where_at_most;
template <class T>
T ones_at_most(T a, T b) {
  return where_at_most(a, b, T{} + 1);
}

using simd::rows::gather;
using simd::rows::gather_rows;
using simd::rows::store_pairs;
using simd::rows::store_rows;

}  // namespace orx::df
