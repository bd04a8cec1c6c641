// The loop and the rare path that all mathematical kernels share.
//
// A kernel is described by a struct K:
//
//   T                     element type
//   inputs, outputs       how many vectors go in and come out
//   scalar_second         the second input is one value, not a vector
//   safe                  padding: a value at which the function runs clean and is not rare
//   eval(x..., y&..., r&) the mathematics on whole vectors; sets bit i of r where lane i cannot be trusted
//   rare_lane(x*..., y*...)  the scalar routine: writes the right result, returns the status to report or 0
//
// The frame reads the inputs up to an aligned address through a mask, then two vectors at a time, then the rest
// through a mask; and has rare lanes repaired, in ascending order, before the results are stored.
#pragma once
#include "frame/control.hpp"
#include "frame/simd.hpp"

ORX_ISA_BEGIN

// What most kernels have in common; a description derives from it.
template <class Element, int in = 1, int out = 1>
struct kernel {
  using T = Element;
  using V = widest<T>;
  static constexpr int inputs = in, outputs = out;
  static constexpr bool scalar_second = false;
  static constexpr T safe = T(0.75);
};

// The vectors of one call.
template <class T, int in, int out>
struct operands {
  const T* a[in];
  T* r[out];
  const char* name;
};
template <class K>
using operands_of = operands<typename K::T, K::inputs, K::outputs>;

inline void report_error(int status, int index, const float* a1, const float* a2, float* r1, float* r2, const char* name) {
  orx_tef_kernel_sError(status, index, a1, a2, r1, r2, name);
}
inline void report_error(int status, int index, const double* a1, const double* a2, double* r1, double* r2, const char* name) {
  orx_tef_kernel_dError(status, index, a1, a2, r1, r2, name);
}

// Vectors in flight: K::inputs arguments and K::outputs results.
template <class K>
struct batch {
  typename K::V x[K::inputs], y[K::outputs];

  int eval() {
    int rare = 0;
    if constexpr (K::inputs == 1 && K::outputs == 1)
      K::eval(x[0], y[0], rare);
    else if constexpr (K::inputs == 2 && K::outputs == 1)
      K::eval(x[0], x[1], y[0], rare);
    else
      K::eval(x[0], y[0], y[1], rare);
    return rare;
  }
};

// The same in memory, for the scalar routine.
template <class K, int vectors>
struct spilled {
  static constexpr int lanes = vectors * lanes_of<typename K::V>;
  alignas(64) typename K::T x[K::inputs][lanes], y[K::outputs][lanes];

  void save(int v, const batch<K>& b) {
    for (int k = 0; k < K::inputs; ++k) store<true>(x[k] + v * lanes_of<typename K::V>, b.x[k]);
    for (int k = 0; k < K::outputs; ++k) store<true>(y[k] + v * lanes_of<typename K::V>, b.y[k]);
  }
  void reload(int v, batch<K>& b) const {
    for (int k = 0; k < K::outputs; ++k) b.y[k] = load<typename K::V, true>(y[k] + v * lanes_of<typename K::V>);
  }
  int rare_lane(int lane) {
    if constexpr (K::inputs == 1 && K::outputs == 1)
      return K::rare_lane(x[0] + lane, y[0] + lane);
    else if constexpr (K::inputs == 2 && K::outputs == 1)
      return K::rare_lane(x[0] + lane, x[1] + lane, y[0] + lane);
    else
      return K::rare_lane(x[0] + lane, y[0] + lane, y[1] + lane);
  }
};

// Lanes `mask` of elements base, base + 1, ...: the scalar routine for each, then the error layer, whose callback
// sees the element in the caller's vectors and may change the result there.
template <class K, int vectors>
__attribute__((noinline, cold)) void repair(int mask, int base, spilled<K, vectors>& s, const operands_of<K>& o) {
  for (int lane = 0; lane < 32; ++lane) {
    if (!(static_cast<uint32_t>(mask) >> lane & 1)) continue;
    zero_upper();
    const int status = s.rare_lane(lane);
    if (status == StatusOk) continue;
    const int i = base + lane;
    for (int k = 0; k < K::outputs; ++k) o.r[k][i] = s.y[k][lane];
    if constexpr (K::scalar_second) {
      // The error layer looks for the second input at index i of a vector.
      const typename K::T* second = o.a[1] - i;
      report_error(status, i, o.a[0], second, o.r[0], o.r[K::outputs - 1], o.name);
    } else {
      report_error(status, i, o.a[0], o.a[K::inputs - 1], o.r[0], o.r[K::outputs - 1], o.name);
    }
    for (int k = 0; k < K::outputs; ++k) s.y[k][lane] = o.r[k][i];
  }
}

// Row c has its first c lanes set.
template <class T>
struct mask_rows {
  static constexpr int lanes = vector_bytes / sizeof(T);
  bits_of<T> lane[lanes + 1][lanes];
  constexpr mask_rows() : lane{} {
    for (int c = 0; c <= lanes; ++c)
      for (int i = 0; i < c; ++i) lane[c][i] = ~bits_of<T>(0);
  }
};
template <class T>
alignas(64) inline constexpr mask_rows<T> bm{};

// The first `count` elements at p, `safe` in the other lanes; and the same way out. No other element is touched.
template <class T>
inline widest<T> load_first(const T* p, int count, T safe) {
  using V = widest<T>;
#if defined(__AVX__)
  const V rest = broadcast<V>(safe);
  const __m256i mask = load<__m256i, true>(bm<T>.lane[count]);
  if constexpr (sizeof(T) == 8)
    return _mm256_blendv_pd(rest, _mm256_maskload_pd(p, mask), _mm256_castsi256_pd(mask));
  else
    return _mm256_blendv_ps(rest, _mm256_maskload_ps(p, mask), _mm256_castsi256_ps(mask));
#else
  alignas(16) T lanes[lanes_of<V>];
  for (int i = 0; i < lanes_of<V>; ++i) lanes[i] = i < count ? p[i] : safe;
  return load<V, true>(lanes);
#endif
}

template <class T>
inline void store_first(T* p, int count, widest<T> v) {
#if defined(__AVX__)
  const __m256i mask = load<__m256i, true>(bm<T>.lane[count]);
  if constexpr (sizeof(T) == 8)
    _mm256_maskstore_pd(p, mask, v);
  else
    _mm256_maskstore_ps(p, mask, v);
#else
  alignas(16) T lanes[lanes_of<widest<T>>];
  store<true>(lanes, v);
  for (int i = 0; i < count; ++i) p[i] = lanes[i];
#endif
}

// Elements i to end - 1, at most a vector at a time, through masks.
template <class K>
__attribute__((noinline)) void masked_part(unsigned i, unsigned end, const operands_of<K>& o) {
  using V = typename K::V;
  while (i < end) {
    const unsigned left = end - i;
    const int count = left < lanes_of<V> ? static_cast<int>(left) : lanes_of<V>;
    batch<K> b;
    for (int k = 0; k < K::inputs; ++k)
      b.x[k] = k == 1 && K::scalar_second ? broadcast<V>(*o.a[1]) : load_first(o.a[k] + i, count, K::safe);
    if (const int rare = b.eval(); rare) {
      spilled<K, 1> s;
      s.save(0, b);
      repair<K, 1>(rare, static_cast<int>(i), s, o);
      s.reload(0, b);
    }
    for (int k = 0; k < K::outputs; ++k) store_first(o.r[k] + i, count, b.y[k]);
    i += static_cast<unsigned>(count);
  }
}

// Elements i to end - 1, two vectors at a time.
template <class K>
__attribute__((noinline)) void main_part(unsigned i, unsigned end, const operands_of<K>& vectors) {
  using V = typename K::V;
  constexpr unsigned lanes = lanes_of<V>;
  const operands_of<K> o = vectors;  // a copy that stores through o.r cannot be taken to change
  for (; i < end; i += 2 * lanes) {
    batch<K> b[2];
    for (int v = 0; v < 2; ++v)
      for (int k = 0; k < K::inputs; ++k)
        b[v].x[k] = k == 1 && K::scalar_second ? broadcast<V>(*o.a[1]) : load<V>(o.a[k] + i + v * lanes);
    const int low = b[0].eval(), high = b[1].eval();
    if (const int rare = low | high << lanes; __builtin_expect(rare, 0)) {
      spilled<K, 2> s;
      for (int v = 0; v < 2; ++v) s.save(v, b[v]);
      repair<K, 2>(rare, static_cast<int>(i), s, vectors);
      for (int v = 0; v < 2; ++v) s.reload(v, b[v]);
    }
    for (int v = 0; v < 2; ++v)
      for (int k = 0; k < K::outputs; ++k) store(o.r[k] + i + v * lanes, b[v].y[k]);
  }
}

// All n elements; the count is taken as unsigned.
template <class K>
__attribute__((noinline)) void kernel_body(unsigned n, const operands_of<K>& o) {
  constexpr unsigned block = 2 * lanes_of<typename K::V>;
  const unsigned to_boundary = -reinterpret_cast<uintptr_t>(o.a[0]) % vector_bytes / sizeof(typename K::T);
  const unsigned p = n < to_boundary ? n : to_boundary;
  const unsigned m = p + (n - p) / block * block;
  masked_part<K>(0, p, o);
  main_part<K>(p, m, o);
  masked_part<K>(m, n, o);
}

template <class K>
inline void run_kernel(int n, const operands_of<K>& o) {
  const control_state control(control_state::from_mode());
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
// `bound` is the kernel's largest error in ulps over all arguments, which the accuracy meter holds it to; [from, to]
// is the range of arguments on which it is timed. Meter and benchmark read these lines.
#define ORX_KERNEL(t, Fn, code, K, bound, from, to)                                               \
  ORX_API void orx_tef_kernel_##t##Fn##_##code(int n, const ORX_REAL_##t* a, ORX_REAL_##t* r) {   \
    orx::tef::run_kernel<K>(n, {{a}, {r}, orx::tef::function::t##Fn::_TEF_THISFUNC_NAME});        \
  }
