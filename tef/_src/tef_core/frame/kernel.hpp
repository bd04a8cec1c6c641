// The loop and the rare path that all mathematical kernels share.
//
// A kernel is described by a struct K:
//
//   T                     element type
//   inputs, outputs       how many vectors go in and come out
//   kScalarSecond         the second input is one value, not a vector
//   safe                  padding: a value at which the function runs clean and is not rare
//   rare(X x...)          for X any vec of T: a vec in which the sign of a lane tells that the lane's result
//   will not be
//                         right
//   eval(X x...)          the mathematics; returns y, or, with two outputs, takes X& y1, X& y2
//   rare_lane(x*..., y*...)  the scalar routine: writes the right result, returns the status to report or 0
//
// The frame reads the inputs up to an aligned address through a mask, then two vectors at a time, then the
// rest through a mask; and has rare lanes repaired, in ascending order, before the results are stored.
#pragma once
#include "frame/control.hpp"
#include "frame/simd.hpp"

ORX_ISA_BEGIN(orx::tef)

// What most kernels have in common; a description derives from it.
template <class Element, int in = 1, int out = 1>
struct Kernel {
  using T = Element;
  static constexpr int kInputs = in, kOutputs = out;
  static constexpr bool kScalarSecond = false;
  static constexpr T kSafe = T(0.75);
  static constexpr int kTogether = 1;
};

// The vectors of one call.
template <class T, int in, int out>
struct Operands {
  const T* a[in];
  T* r[out];
  const char* name;
};
template <class K>
using OperandsOf = Operands<typename K::T, K::kInputs, K::kOutputs>;

inline void report_error(int status, int index, const float* a1, const float* a2, float* r1, float* r2,
                         const char* name) {
  orx_tef_kernel_sError(status, index, a1, a2, r1, r2, name);
}
inline void report_error(int status, int index, const double* a1, const double* a2, double* r1, double* r2,
                         const char* name) {
  orx_tef_kernel_dError(status, index, a1, a2, r1, r2, name);
}

// Row c has its first c lanes set.
template <class T>
struct MaskRows {
  static constexpr int kLanes = kVectorBytes / sizeof(T);
  BitsOf<T> lane[kLanes + 1][kLanes];
  constexpr MaskRows() : lane{} {
    for (int c = 0; c <= kLanes; ++c)
      for (int i = 0; i < c; ++i) lane[c][i] = ~BitsOf<T>(0);
  }
};
template <class T>
alignas(64) inline constexpr MaskRows<T> bm{};

// The first `count` elements at p, `safe` in the other lanes; and the same way out. No other element is
// touched.
template <class T>
inline Vec<T, 1> load_lanes(const T* p, int count, T safe) {
#if defined(__AVX__)
  const VectorOf<T> rest = broadcast<Vec<T, 1>>(safe).v[0];
  const __m256i mask = load<__m256i, true>(bm<T>.lane[count]);
  if constexpr (sizeof(T) == 8)
    return {{_mm256_blendv_pd(rest, _mm256_maskload_pd(p, mask), _mm256_castsi256_pd(mask))}};
  else
    return {{_mm256_blendv_ps(rest, _mm256_maskload_ps(p, mask), _mm256_castsi256_ps(mask))}};
#else
  alignas(16) T lane[Vec<T, 1>::kLanes];
  for (int i = 0; i < Vec<T, 1>::kLanes; ++i) lane[i] = i < count ? p[i] : safe;
  return load_vectors<Vec<T, 1>>(lane);
#endif
}

template <class T>
inline void store_lanes(T* p, int count, Vec<T, 1> x) {
#if defined(__AVX__)
  const __m256i mask = load<__m256i, true>(bm<T>.lane[count]);
  if constexpr (sizeof(T) == 8)
    _mm256_maskstore_pd(p, mask, x.v[0]);
  else
    _mm256_maskstore_ps(p, mask, x.v[0]);
#else
  alignas(16) T lane[Vec<T, 1>::kLanes];
  store_vectors<true>(lane, x);
  for (int i = 0; i < count; ++i) p[i] = lane[i];
#endif
}

// Vectors in flight: K::kInputs arguments and K::kOutputs results, each of n vectors.
template <class K, int n>
struct Batch {
  using T = typename K::T;
  using X = Vec<T, n>;
  X x[K::kInputs], y[K::kOutputs];

  void load(const OperandsOf<K>& o, unsigned i) {
    for (int k = 0; k < K::kInputs; ++k)
      x[k] = k == 1 && K::kScalarSecond ? broadcast<X>(*o.a[1]) : load_vectors<X>(o.a[k] + i);
  }
  void load_first(const OperandsOf<K>& o, unsigned i, int count) {
    for (int k = 0; k < K::kInputs; ++k)
      x[k] = k == 1 && K::kScalarSecond ? broadcast<X>(*o.a[1]) : load_lanes(o.a[k] + i, count, K::kSafe);
  }
  void store(const OperandsOf<K>& o, unsigned i) const {
    for (int k = 0; k < K::kOutputs; ++k) store_vectors(o.r[k] + i, y[k]);
  }
  X rare() const {
    if constexpr (K::kInputs == 1)
      return K::rare(x[0]);
    else
      return K::rare(x[0], x[1]);
  }
  void eval() {
    if constexpr (K::kInputs == 1 && K::kOutputs == 1)
      y[0] = K::eval(x[0]);
    else if constexpr (K::kInputs == 2 && K::kOutputs == 1)
      y[0] = K::eval(x[0], x[1]);
    else
      K::eval(x[0], y[0], y[1]);
  }
};

// The same in memory, for the scalar routine.
template <class K, int n>
struct Spilled {
  using X = typename Batch<K, n>::X;
  alignas(64) typename K::T x[K::kInputs][X::kLanes], y[K::kOutputs][X::kLanes];

  explicit Spilled(const Batch<K, n>& b) {
    for (int k = 0; k < K::kInputs; ++k) store_vectors<true>(x[k], b.x[k]);
    for (int k = 0; k < K::kOutputs; ++k) store_vectors<true>(y[k], b.y[k]);
  }
  int rare_lane(int lane) {
    if constexpr (K::kInputs == 1 && K::kOutputs == 1)
      return K::rare_lane(x[0] + lane, y[0] + lane);
    else if constexpr (K::kInputs == 2 && K::kOutputs == 1)
      return K::rare_lane(x[0] + lane, x[1] + lane, y[0] + lane);
    else
      return K::rare_lane(x[0] + lane, y[0] + lane, y[1] + lane);
  }
};

// The rare lanes of a batch whose first element is `base`, in ascending order: the scalar routine for each,
// then the error layer, whose callback sees the element in the caller's vectors and may change the result
// there.
template <class K, int n>
void repair(Batch<K, n>& b, int base, const OperandsOf<K>& o) {
  const int mask = movemask(b.rare());
  Spilled<K, n> s(b);
  for (int lane = 0; lane < Batch<K, n>::X::kLanes; ++lane) {
    if (!(mask >> lane & 1)) continue;
    zero_upper();
    const int status = s.rare_lane(lane);
    if (status == StatusOk) continue;
    const int i = base + lane;
    for (int k = 0; k < K::kOutputs; ++k) o.r[k][i] = s.y[k][lane];
    // The error layer looks for the second input at index i of a vector.
    const typename K::T* second = K::kScalarSecond ? o.a[1] - i : o.a[K::kInputs - 1];
    report_error(status, i, o.a[0], second, o.r[0], o.r[K::kOutputs - 1], o.name);
    for (int k = 0; k < K::kOutputs; ++k) s.y[k][lane] = o.r[k][i];
  }
  for (int k = 0; k < K::kOutputs; ++k) b.y[k] = load_vectors<typename Batch<K, n>::X>(s.y[k]);
}

// Elements i to end - 1, at most a vector at a time, through masks.
template <class K>
__attribute__((noinline)) void masked_part(unsigned i, unsigned end, const OperandsOf<K>& o) {
  constexpr unsigned lanes = Vec<typename K::T, 1>::kLanes;
  for (; i < end; i += lanes) {
    const int count = static_cast<int>(end - i < lanes ? end - i : lanes);
    Batch<K, 1> b;
    b.load_first(o, i, count);
    b.eval();
    if (any(b.rare())) repair(b, static_cast<int>(i), o);
    for (int k = 0; k < K::kOutputs; ++k) store_lanes(o.r[k] + i, count, b.y[k]);
  }
}

// A block with rare elements, from its arguments on. Not inlined, so that the main loop need not keep for it
// what it does not need itself.
template <class K>
__attribute__((noinline, cold)) void rare_block(unsigned i, const OperandsOf<K>& o) {
  Batch<K, 2> b;
  b.load(o, i);
  b.eval();
  repair(b, static_cast<int>(i), o);
  b.store(o, i);
}

// Elements i to end - 1, two vectors at a time.
template <class K>
__attribute__((noinline)) void main_part(unsigned i, unsigned end, const OperandsOf<K>& vectors) {
  const OperandsOf<K> o = vectors;  // a copy that stores through o.r cannot be taken to change
  for (; i < end; i += Vec<typename K::T, 2>::kLanes) {
    Batch<K, 2> b;
    b.load(o, i);
    if (__builtin_expect(any(b.rare()), 0)) {
      rare_block<K>(i, vectors);
      continue;
    }
    constexpr int together = K::kTogether;
    for (int v = 0; v < 2; v += together) {
      const unsigned j = i + v * Vec<typename K::T, 1>::kLanes;
      Batch<K, together> part;
      part.load(o, j);
      part.eval();
      part.store(o, j);
    }
  }
}

// All n elements; the count is taken as unsigned.
template <class K>
__attribute__((noinline)) void kernel_body(unsigned n, const OperandsOf<K>& o) {
  constexpr unsigned block = Vec<typename K::T, 2>::kLanes;
  const unsigned to_boundary = -reinterpret_cast<uintptr_t>(o.a[0]) % kVectorBytes / sizeof(typename K::T);
  const unsigned p = n < to_boundary ? n : to_boundary;
  const unsigned m = p + (n - p) / block * block;
  masked_part<K>(0, p, o);
  main_part<K>(p, m, o);
  masked_part<K>(m, n, o);
}

template <class K>
inline void run_kernel(int n, const OperandsOf<K>& o) {
  const ControlState control(ControlState::from_mode());
  kernel_body<K>(static_cast<unsigned>(n), o);
  zero_upper();
}

ORX_ISA_END

// The functions' names, from the list.
namespace orx::tef::function {
#define ORX_FUNCTION(shape, t, Fn, la, ha, ep, cost_la, cost_ha, cost_ep) \
  struct t##Fn {                                                          \
    static constexpr char _TEF_THISFUNC_NAME[] = "v" #t #Fn;              \
  };
#include "functions.def"
#undef ORX_FUNCTION
}  // namespace orx::tef::function

// Defines the entry point of a kernel of one input and one output.
//   ORX_KERNEL(type, function, code, description, bound, from, to)
// `bound` is the kernel's largest error in ulps over all arguments, which the accuracy meter holds it to;
// [from, to] is the range of arguments on which it is timed. Meter and benchmark read these lines.
#define ORX_KERNEL(t, Fn, code, K, bound, from, to)                                             \
  ORX_API void orx_tef_kernel_##t##Fn##_##code(int n, const ORX_REAL_##t* a, ORX_REAL_##t* r) { \
    orx::tef::run_kernel<K>(n, {{a}, {r}, orx::tef::function::t##Fn::_TEF_THISFUNC_NAME});      \
  }
