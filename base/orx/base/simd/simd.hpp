// The vocabulary of vectors: one interface, and a file for each instruction set behind it (sse3.hpp, avx.hpp,
// avx2.hpp, avx512.hpp), chosen by the compiler's target flags. Kernels use it and no intrinsics.
//
//   Vec<T, n>     n vectors of singles or doubles that go through the same steps side by side, so that a constant
//                 that comes from memory is loaded once for all of them
//   Mask<T, n>    a truth value for each lane of a Vec<T, n>
//   Ints<E, l>    l integers of 32 or 64 bits, one for each lane of a Vec, whatever width integers come in
//   Row<T>        a constant that fills 64 bytes, an operand of everything that takes a Vec
//
//   memory        load_vectors store_vectors broadcast broadcast_bits constant; in memory.hpp: load_first store_first
//                 first_lanes load_pairs store_pairs load_first_pairs store_first_pairs
//   arithmetic    + - * /  multiply_add multiply_subtract subtract_product min max square_root round magnitude with_sign_of
//                 copy_sign polynomial horner
//   exact         two_sum fast_two_sum exact_product product_residue split
//   approximate   approximate_reciprocal approximate_reciprocal_root integer_reciprocal
//   bits          bit_and bit_or bit_xor bit_andnot bits reals as high_words low_words from_high_words scale_from exponent_field
//                 real_of_bits
//   comparisons   less at_most equal not_equal not_below not_at_most outside unordered; quiet for NaN
//   masks         bit_and bit_or bit_andnot complement select select_by_sign keep spread_signs any movemask
//   integers      + - * & | ^ shift_left shift_right equal greater any multiply_wide
//   conversions   widen narrow to_doubles to_floats round_to_ints truncate_to_ints integer_bits
//   groups        of four doubles, whatever the width, in lanes.hpp; of four words beside them in words.hpp
//   tables        SpilledWords Indices set_indices gather gather_bits gather_pairs gather_rows select_of_4
#pragma once
#include <cstdint>
#include <cstring>
#include <utility>

#include "orx/base/bits.hpp"
#include "orx/base/simd/isa.hpp"
#if defined(ORX_ISA_AVX512)
#include "orx/base/simd/avx512.hpp"
#elif defined(ORX_ISA_AVX2)
#include "orx/base/simd/avx2.hpp"
#elif defined(ORX_ISA_AVX)
#include "orx/base/simd/avx.hpp"
#else
#include "orx/base/simd/sse3.hpp"
#endif

ORX_ISA_BEGIN(orx::simd)

// ---- scalars
// A value that the compiler cannot see through: arithmetic on it happens at run time and raises its exceptions.
template <class T>
inline T hidden(T x) {
  asm volatile("" : "+x"(x));
  return x;
}

// ---- types
template <class T, int bytes = kVectorBytes>
using VectorOf = typename native::VectorType<T, bytes>::Type;

template <class T, int n>
struct Vec {
  using Element = T;
  using V = VectorOf<T>;
  static constexpr int kCount = n;
  static constexpr int kLanesEach = kVectorBytes / sizeof(T);
  static constexpr int kLanes = n * kLanesEach;
  V v[n];
};

// A truth value for each lane: all ones or zero, or where the instruction set has masks of bits, those; they turn
// into vectors and back wherever one is asked for.
#if defined(ORX_ISA_AVX512)
template <class T, int n>
struct BitMask {
  using M = typename native::MaskType<T>::Type;
  static constexpr int kCount = n;
  static constexpr int kLanesEach = kVectorBytes / sizeof(T);
  M v[n];
  operator Vec<T, n>() const;
};
template <class T, int n>
using Mask = BitMask<T, n>;
#else
template <class T, int n>
using Mask = Vec<T, n>;
#endif

// `count` vectors, of 16 bytes at least, in which spare lanes may hold anything.
template <class E, int lanes, int count>
struct Integers {
  using Element = E;
  static constexpr int kCount = count;
  static constexpr int kLanes = lanes;
  static constexpr int kBytes = lanes * sizeof(E) / count < 16 ? 16 : lanes * sizeof(E) / count;
  typedef E V __attribute__((vector_size(kBytes)));
  typedef std::make_unsigned_t<E> U __attribute__((vector_size(kBytes)));  // in which arithmetic wraps
  V v[count];
};
template <class E, int lanes>
using Ints = Integers<E, lanes, (lanes * static_cast<int>(sizeof(E)) + kIntegerBytes - 1) / kIntegerBytes>;
// The integers that are as wide as X's elements, and 32-bit ones, a vector of them for each of X's.
template <class X>
using BitsOfLanes = Ints<BitsOf<typename X::Element>, X::kLanes>;
template <class X>
using WordOfLanes = Integers<int32_t, X::kLanes, X::kCount>;

// f(0), ..., f(n - 1) as the members of an R.
template <class R, class F, int... i>
inline R make_members(F f, std::integer_sequence<int, i...>) {
  return {{f(i)...}};
}
template <class R, class F>
inline R make(F f) {
  return make_members<R>(f, std::make_integer_sequence<int, R::kCount>());
}

// Member i of 2 n halves.
template <class V>
inline auto half(V v, int i) {
  return i % 2 ? native::high_half(v) : native::low_half(v);
}

// ---- memory
// A constant that fills a whole 64-byte row, so that it is an operand as it lies in memory.
template <class T>
struct alignas(64) Row {
  using Element = T;
  T lane[64 / sizeof(T)];
  constexpr Row(T value) : lane{} {
    for (T& x : lane) x = value;
  }
};

template <class X, bool aligned = false>
inline X load_vectors(const typename X::Element* p) {
  return make<X>([p](int i) { return load<typename X::V, aligned>(p + i * X::kLanesEach); });
}
template <bool aligned = false, class T, int n>
inline void store_vectors(T* p, Vec<T, n> x) {
  for (int i = 0; i < n; ++i) store<aligned>(p + i * Vec<T, n>::kLanesEach, x.v[i]);
}
// x - 0 is x, also for -0; a constant x is spread by the compiler.
template <class X>
inline X broadcast(typename X::Element x) {
  return make<X>([x](int) { return x - typename X::V{}; });
}
template <class X>
inline X broadcast_bits(BitsOf<typename X::Element> bits) {
  return broadcast<X>(bit_cast<typename X::Element>(bits));
}
// A row, its bits taken as elements of X.
template <class X, class T>
inline X constant(const Row<T>& r) {
  return make<X>([v = load<typename X::V, true>(r.lane)](int) { return v; });
}

// ---- steps on all members: operands are Vecs, and Rows, whose bits are taken as they are
template <class X, class T>
inline typename X::V member(const Row<T>& r, int) {
  return load<typename X::V, true>(r.lane);
}
template <class X>
inline typename X::V member(const X& x, int i) {
  return x.v[i];
}
template <class X, class F, class... A>
inline X map(F f, const A&... a) {
  return make<X>([&](int i) { return f(member<X>(a, i)...); });
}
template <class X, class F, class... A>
inline Mask<typename X::Element, X::kCount> map_to_mask(F f, const A&... a) {
  return make<Mask<typename X::Element, X::kCount>>([&](int i) { return f(member<X>(a, i)...); });
}

#define ORX_VECTOR_OPERATOR(op)                                         \
  template <class T, int n>                                             \
  inline Vec<T, n> operator op(Vec<T, n> a, Vec<T, n> b) {              \
    return map<Vec<T, n>>([](auto x, auto y) { return x op y; }, a, b); \
  }                                                                     \
  template <class T, int n>                                             \
  inline Vec<T, n> operator op(Vec<T, n> a, const Row<T>& b) {          \
    return map<Vec<T, n>>([](auto x, auto y) { return x op y; }, a, b); \
  }                                                                     \
  template <class T, int n>                                             \
  inline Vec<T, n> operator op(const Row<T>& a, Vec<T, n> b) {          \
    return map<Vec<T, n>>([](auto x, auto y) { return x op y; }, a, b); \
  }
ORX_VECTOR_OPERATOR(+)
ORX_VECTOR_OPERATOR(-)
ORX_VECTOR_OPERATOR(*)
ORX_VECTOR_OPERATOR(/)
#undef ORX_VECTOR_OPERATOR

// a b + c, a b - c and c - a b, the product rounded only where there is no fused operation: for steps that are right either
// way.
template <class T, int n, class B, class C>
inline Vec<T, n> multiply_add(Vec<T, n> a, const B& b, const C& c) {
  return map<Vec<T, n>>([](auto x, auto y, auto z) { return native::multiply_add(x, y, z); }, a, b, c);
}
template <class T, int n, class B, class C>
inline Vec<T, n> multiply_subtract(Vec<T, n> a, const B& b, const C& c) {
  return map<Vec<T, n>>([](auto x, auto y, auto z) { return native::multiply_subtract(x, y, z); }, a, b, c);
}
template <class T, int n, class B, class C>
inline Vec<T, n> subtract_product(const C& c, Vec<T, n> a, const B& b) {
  return map<Vec<T, n>>([](auto x, auto y, auto z) { return native::subtract_product(z, x, y); }, a, b, c);
}

// c[0] + c[1] x + ... by Estrin's scheme, whose steps wait less for each other than Horner's; x2 is x * x.
// What limits a kernel is how many elements fit in the processor's window while each waits for its own chain.
template <int first, int terms, class X, class C>
inline X estrin(X x, X x2, const C* c) {
  if constexpr (terms == 1)
    return constant<X>(c[first]);
  else if constexpr (terms == 2)
    return multiply_add(x, c[first + 1], c[first]);
  else if constexpr (terms == 3)
    return multiply_add(x2, c[first + 2], estrin<first, 2>(x, x2, c));
  else if constexpr (terms == 4)
    return multiply_add(x2, estrin<first + 2, 2>(x, x2, c), estrin<first, 2>(x, x2, c));
  else if constexpr (terms <= 8)
    return multiply_add(x2 * x2, estrin<first + 4, terms - 4>(x, x2, c), estrin<first, 4>(x, x2, c));
  else
    return multiply_add((x2 * x2) * (x2 * x2), estrin<first + 8, terms - 8>(x, x2, c),
                        estrin<first, 8>(x, x2, c));
}
template <class X, class C, int terms>
inline X polynomial(X x, X x2, const C (&c)[terms]) {
  return estrin<0, terms>(x, x2, c);
}
// The same from the top coefficient down: fewer multiplications, a longer chain.
template <class X, class C, int terms>
inline X horner(X x, const C (&c)[terms]) {
  X y = constant<X>(c[terms - 1]);
  for (int i = terms - 2; i >= 0; --i) y = multiply_add(y, x, c[i]);
  return y;
}

// The processor's minimum and maximum: b where a lane has NaN, or two zeros.
template <class T, int n, class B>
inline Vec<T, n> min(Vec<T, n> a, const B& b) {
  return map<Vec<T, n>>([](auto x, auto y) { return native::min(x, y); }, a, b);
}
template <class T, int n, class B>
inline Vec<T, n> max(Vec<T, n> a, const B& b) {
  return map<Vec<T, n>>([](auto x, auto y) { return native::max(x, y); }, a, b);
}
template <class T, int n>
inline Vec<T, n> square_root(Vec<T, n> x) {
  return map<Vec<T, n>>([](auto v) { return native::square_root(v); }, x);
}

// To an integer, in one of the processor's four directions or as the control word says. `Quietly` never raises
// inexact, except without SSE4.
enum Rounding {
  kToNearest = _MM_FROUND_TO_NEAREST_INT,
  kDown = _MM_FROUND_TO_NEG_INF,
  kUp = _MM_FROUND_TO_POS_INF,
  kToZero = _MM_FROUND_TO_ZERO,
  kAsControlled = _MM_FROUND_CUR_DIRECTION,
  kQuietly = _MM_FROUND_NO_EXC
};
template <int mode, class T, int n>
inline Vec<T, n> round(Vec<T, n> x) {
  return map<Vec<T, n>>([](auto v) { return native::round<mode>(v); }, x);
}

// ---- bits
#define ORX_BIT_OPERATION(name)                                                     \
  template <class T, int n, class B>                                                \
  inline Vec<T, n> name(Vec<T, n> a, const B& b) {                                  \
    return map<Vec<T, n>>([](auto x, auto y) { return native::name(x, y); }, a, b); \
  }                                                                                 \
  template <class T, class E, int n>                                                \
  inline Vec<T, n> name(const Row<E>& a, Vec<T, n> b) {                             \
    return map<Vec<T, n>>([](auto x, auto y) { return native::name(x, y); }, a, b); \
  }
ORX_BIT_OPERATION(bit_and)
ORX_BIT_OPERATION(bit_or)
ORX_BIT_OPERATION(bit_xor)
ORX_BIT_OPERATION(bit_andnot)  // not a, and b
#undef ORX_BIT_OPERATION

template <class T, int n>
inline Vec<T, n> magnitude(Vec<T, n> x) {
  return bit_andnot(broadcast_bits<Vec<T, n>>(kSignBit<T>), x);
}
// The sign of `sign` or'ed into x.
template <class T, int n>
inline Vec<T, n> with_sign_of(Vec<T, n> x, Vec<T, n> sign) {
  return bit_or(x, bit_and(sign, broadcast_bits<Vec<T, n>>(kSignBit<T>)));
}
template <class T, int n>
inline Vec<T, n> copy_sign(Vec<T, n> x, Vec<T, n> sign) {
  return with_sign_of(magnitude(x), sign);
}

// ---- comparisons, quiet for NaN
#define ORX_COMPARISON(name, predicate)                                                                   \
  template <class T, int n, class B>                                                                      \
  inline Mask<T, n> name(Vec<T, n> a, const B& b) {                                                       \
    return map_to_mask<Vec<T, n>>([](auto x, auto y) { return native::compare<predicate>(x, y); }, a, b); \
  }
ORX_COMPARISON(less, _CMP_LT_OQ)
ORX_COMPARISON(at_most, _CMP_LE_OQ)
ORX_COMPARISON(equal, _CMP_EQ_OQ)
ORX_COMPARISON(not_equal, _CMP_NEQ_UQ)
ORX_COMPARISON(not_below, _CMP_NLT_UQ)  // true for NaN, as the next
ORX_COMPARISON(not_at_most, _CMP_NLE_UQ)
ORX_COMPARISON(unordered, _CMP_UNORD_Q)
#undef ORX_COMPARISON

// ---- masks
template <class T, int n>
inline Mask<T, n> complement(Mask<T, n> a) {
  return make<Mask<T, n>>([&](int i) { return native::complement(a.v[i]); });
}
// Not low <= x <= high: true for NaN too.
template <class T, int n, class L, class H>
inline Mask<T, n> outside(Vec<T, n> x, const L& low, const H& high) {
  return map_to_mask<Vec<T, n>>(
      [](auto v, auto a, auto b) {
        return native::bit_or(native::compare<_CMP_NGE_UQ>(v, a), native::compare<_CMP_NLE_UQ>(v, b));
      },
      x, low, high);
}
// a where the mask is set, b elsewhere; x where it is set, +0 elsewhere.
template <class T, int n>
inline Vec<T, n> select(Mask<T, n> mask, Vec<T, n> a, Vec<T, n> b) {
  return make<Vec<T, n>>([&](int i) { return native::select(mask.v[i], a.v[i], b.v[i]); });
}
template <class T, int n>
inline Vec<T, n> keep(Mask<T, n> mask, Vec<T, n> x) {
  return make<Vec<T, n>>([&](int i) { return native::keep(mask.v[i], x.v[i]); });
}
// a in the lanes where `sign` is negative, b elsewhere.
template <class T, int n>
inline Vec<T, n> select_by_sign(Vec<T, n> sign, Vec<T, n> a, Vec<T, n> b) {
  return make<Vec<T, n>>([&](int i) { return native::select_by_sign(sign.v[i], a.v[i], b.v[i]); });
}
// Every lane all ones or zero by its sign.
template <class T, int n>
inline Vec<T, n> spread_signs(Vec<T, n> x) {
  return map<Vec<T, n>>([](auto v) { return native::spread_signs(v); }, x);
}
#if defined(ORX_ISA_AVX512)
template <class T, int n>
inline BitMask<T, n>::operator Vec<T, n>() const {
  return make<Vec<T, n>>([&](int i) { return native::lanes_of(v[i], VectorOf<T>{}); });
}
template <class T, int n>
inline Vec<T, n> spread_signs(BitMask<T, n> mask) {
  return mask;
}
template <class T, int n>
inline BitMask<T, n> bit_and(BitMask<T, n> a, BitMask<T, n> b) {
  return make<BitMask<T, n>>([&](int i) { return native::bit_and(a.v[i], b.v[i]); });
}
template <class T, int n>
inline BitMask<T, n> bit_or(BitMask<T, n> a, BitMask<T, n> b) {
  return make<BitMask<T, n>>([&](int i) { return native::bit_or(a.v[i], b.v[i]); });
}
template <class T, int n>
inline BitMask<T, n> bit_andnot(BitMask<T, n> a, BitMask<T, n> b) {
  return bit_and(complement(a), b);
}
template <class T, int n>
inline Vec<T, n> select(Vec<T, n> mask, Vec<T, n> a, Vec<T, n> b) {
  return bit_or(bit_and(mask, a), bit_andnot(mask, b));
}
template <class T, int n>
inline Vec<T, n> keep(Vec<T, n> mask, Vec<T, n> x) {
  return bit_and(mask, x);
}
#endif
// One bit for each lane, of 32 at most: of a mask, or of the lanes' signs; and whether there is any.
template <template <class, int> class X, class T, int n>
inline int movemask(X<T, n> x) {
  static_assert(n * X<T, n>::kLanesEach <= 32);
  unsigned bits = 0;
  for (int i = 0; i < n; ++i) bits |= native::signs(x.v[i]) << (i * X<T, n>::kLanesEach);
  return static_cast<int>(bits);
}
template <template <class, int> class X, class T, int n>
inline bool any(X<T, n> x) {
  auto all = x.v[0];
  for (int i = 1; i < n; ++i) all = native::bit_or(all, x.v[i]);
  return native::signs(all) != 0;
}

// ---- integers, which wrap, signed ones too
#define ORX_INTEGER_OPERATOR(op)                                                                            \
  template <class E, int l, int n>                                                                          \
  inline Integers<E, l, n> operator op(Integers<E, l, n> a, Integers<E, l, n> b) {                          \
    using I = Integers<E, l, n>;                                                                            \
    return make<I>([&](int i) { return (typename I::V)((typename I::U)a.v[i] op(typename I::U) b.v[i]); }); \
  }                                                                                                         \
  template <class E, int l, int n>                                                                          \
  inline Integers<E, l, n> operator op(Integers<E, l, n> a, E b) {                                          \
    using I = Integers<E, l, n>;                                                                            \
    const auto word = static_cast<std::make_unsigned_t<E>>(b);                                              \
    return make<I>([&](int i) { return (typename I::V)((typename I::U)a.v[i] op word); });                  \
  }                                                                                                         \
  template <class E, int l, int n>                                                                          \
  inline Integers<E, l, n> operator op(E a, Integers<E, l, n> b) {                                          \
    using I = Integers<E, l, n>;                                                                            \
    const auto word = static_cast<std::make_unsigned_t<E>>(a);                                              \
    return make<I>([&](int i) { return (typename I::V)(word op(typename I::U) b.v[i]); });                  \
  }
ORX_INTEGER_OPERATOR(+)
ORX_INTEGER_OPERATOR(-)
ORX_INTEGER_OPERATOR(*)
ORX_INTEGER_OPERATOR(&)
ORX_INTEGER_OPERATOR(|)
ORX_INTEGER_OPERATOR(^)
#undef ORX_INTEGER_OPERATOR

template <int k, class E, int l, int n>
inline Integers<E, l, n> shift_left(Integers<E, l, n> a) {
  return make<Integers<E, l, n>>(
      [&](int i) { return (typename Integers<E, l, n>::V)((typename Integers<E, l, n>::U)a.v[i] << k); });
}
// With copies of the sign if the integers have one.
template <int k, class E, int l, int n>
inline Integers<E, l, n> shift_right(Integers<E, l, n> a) {
  return make<Integers<E, l, n>>([&](int i) { return a.v[i] >> k; });
}
// All ones or zero in each lane.
template <class E, int l, int n>
inline Integers<E, l, n> equal(Integers<E, l, n> a, Integers<E, l, n> b) {
  return make<Integers<E, l, n>>([&](int i) { return (typename Integers<E, l, n>::V)(a.v[i] == b.v[i]); });
}
template <class E, int l, int n>
inline Integers<E, l, n> greater(Integers<E, l, n> a, Integers<E, l, n> b) {
  return make<Integers<E, l, n>>([&](int i) { return (typename Integers<E, l, n>::V)(a.v[i] > b.v[i]); });
}
template <class E, int l, int n>
inline Integers<E, l, n> greater(Integers<E, l, n> a, E b) {
  return make<Integers<E, l, n>>([&](int i) { return (typename Integers<E, l, n>::V)(a.v[i] > b); });
}
// Whether any lane of a mask is set.
template <class E, int l, int n>
inline bool any(Integers<E, l, n> a) {
  using V = typename Integers<E, l, n>::V;
  V all = a.v[0];
  for (int i = 1; i < n; ++i) all |= a.v[i];
  if constexpr (n * sizeof(V) > l * sizeof(E)) {  // spare lanes
    V used{};
    for (int i = 0; i < l / n; ++i) used[i] = static_cast<E>(-1);
    all &= used;
  }
  return native::any(native::whole(all));
}
// The product of the lower halves, whole.
template <int l, int n>
inline Integers<uint64_t, l, n> multiply_wide(Integers<uint64_t, l, n> a, Integers<uint64_t, l, n> b) {
  using I = Integers<uint64_t, l, n>;
  return make<I>([&](int i) {
    return (typename I::V)native::multiply_wide(native::whole(a.v[i]), native::whole(b.v[i]));
  });
}
template <class I>
inline I broadcast_int(typename I::Element x) {
  return make<I>([x](int) { return x + typename I::V{}; });
}
// The same bits as other integers.
template <class E, class F, int l, int n>
inline auto as(Integers<F, l, n> a) {
  using To = Integers<E, l* static_cast<int>(sizeof(F)) / static_cast<int>(sizeof(E)), n>;
  return make<To>([&](int i) { return (typename To::V)a.v[i]; });
}

// The bits of a Vec as integers and back.
template <class T, int n>
inline BitsOfLanes<Vec<T, n>> bits(Vec<T, n> x) {
  using I = BitsOfLanes<Vec<T, n>>;
  return make<I>([&](int i) {
    if constexpr (I::kCount == n)
      return (typename I::V)x.v[i];
    else
      return (typename I::V)half(x.v[i / 2], i);
  });
}
template <class X, class E, int l, int n>
inline X reals(Integers<E, l, n> a) {
  return make<X>([&](int i) {
    if constexpr (X::kCount == n) {
      return (typename X::V)a.v[i];
    } else {
      using Half = VectorOf<double, sizeof(typename X::V) / 2>;
      return (typename X::V)native::join((Half)a.v[2 * i], (Half)a.v[2 * i + 1]);
    }
  });
}

// The bits of singles, read as 32-bit integers, as singles.
template <int n>
inline Vec<float, n> integer_bits(Vec<float, n> x) {
  return map<Vec<float, n>>([](auto v) { return native::to_float(native::as_int(v)); }, x);
}

// ---- conversions
template <int n>
inline Vec<double, 2 * n> widen(Vec<float, n> x) {
  return make<Vec<double, 2 * n>>([&](int i) { return native::to_double(half(x.v[i / 2], i)); });
}
template <int n>
inline Vec<float, n / 2> narrow(Vec<double, n> x) {
  using X = Vec<float, n / 2>;
  return make<X>(
      [&](int i) { return native::join(native::to_single(x.v[2 * i]), native::to_single(x.v[2 * i + 1])); });
}
// Doubles and 32-bit integers. Rounding is the control word's; what does not fit becomes INT32_MIN and raises
// invalid.
template <int l, int n>
inline Vec<double, n> to_doubles(Integers<int32_t, l, n> a) {
  return make<Vec<double, n>>([&](int i) { return native::to_double(native::whole(a.v[i])); });
}
template <int n>
inline WordOfLanes<Vec<double, n>> round_to_ints(Vec<double, n> x) {
  using I = WordOfLanes<Vec<double, n>>;
  return make<I>([&](int i) { return (typename I::V)native::round_to_int(x.v[i]); });
}
template <int n>
inline WordOfLanes<Vec<double, n>> truncate_to_ints(Vec<double, n> x) {
  using I = WordOfLanes<Vec<double, n>>;
  return make<I>([&](int i) { return (typename I::V)native::truncate_to_int(x.v[i]); });
}
template <int n>
inline WordOfLanes<Vec<double, n>> high_words(Vec<double, n> x) {
  using I = WordOfLanes<Vec<double, n>>;
  return make<I>([&](int i) { return (typename I::V)native::high_words(x.v[i]); });
}
template <int n>
inline WordOfLanes<Vec<double, n>> low_words(Vec<double, n> x) {
  using I = WordOfLanes<Vec<double, n>>;
  return make<I>([&](int i) { return (typename I::V)native::low_words(x.v[i]); });
}
// Doubles with the high words given, their low words 0.
template <class X, class E, int l, int n>
inline X from_high_words(Integers<E, l, n> a) {
  return make<X>([&](int i) { return native::from_high_words(native::whole(a.v[i])); });
}
// Singles and 32-bit integers: integer values in the bits of a Vec, or the Vec's values.
template <int n>
inline auto round_to_ints(Vec<float, n> x) {
  return as<int32_t>(
      bits(map<Vec<float, n>>([](auto v) { return (decltype(v))native::round_to_int(v); }, x)));
}
template <int n>
inline auto truncate_to_ints(Vec<float, n> x) {
  return as<int32_t>(
      bits(map<Vec<float, n>>([](auto v) { return (decltype(v))native::truncate_to_int(v); }, x)));
}
template <class X, int l, int n>
inline X to_floats(Integers<int32_t, l, n> a) {
  return integer_bits(reals<X>(a));
}

// The biased exponent field of positive lanes, as doubles.
template <int n>
inline Vec<double, n> exponent_field(Vec<double, n> x) {
  return to_doubles(as<int32_t>(shift_right<20>(as<uint32_t>(high_words(x)))));
}
// 2^k, k being n >> bit, from N = shifter + n, where the shifter holds the exponent's bias times 2^bit in its
// low bits.
template <int bit, class X>
inline X scale_from(X N) {
  if constexpr (bit > 0) N = bit_and(N, broadcast_bits<X>(~BitsOf<typename X::Element>{} << bit));
  return reals<X>(shift_left<(sizeof(typename X::Element) == 8 ? 52 : 23) - bit>(bits(N)));
}

// The single whose bits, as an integer, are x rounded: 2^k from (k + 127) 2^23.
template <int n>
inline Vec<float, n> real_of_bits(Vec<float, n> x) {
  return map<Vec<float, n>>([](auto v) { return (decltype(v))native::round_to_int(v); }, x);
}

// ---- exact sums and products
template <class X>
struct HighLow {
  X high, low;
};
// Knuth's sum with its rounding error, whichever term is larger.
template <class X>
inline HighLow<X> two_sum(X a, X b) {
  const X s = a + b, t = s - a;
  return {s, (a - (s - t)) + (b - t)};
}
// Dekker's, for |a| >= |b| or a = 0.
template <class X>
inline HighLow<X> fast_two_sum(X a, X b) {
  const X s = a + b;
  return {s, b - (s - a)};
}
// x as its leading bits, 26 of a double's or 12 of a single's, and the rest.
template <class T, int n>
inline HighLow<Vec<T, n>> split(Vec<T, n> x) {
  const Vec<T, n> high = bit_and(
      x, broadcast_bits<Vec<T, n>>(static_cast<BitsOf<T>>(~uint64_t{0} << (sizeof(T) == 8 ? 27 : 12))));
  return {high, x - high};
}
// The product with its rounding error: fused, or by Veltkamp's split and Dekker's sum, for factors below 2^995 (2^115
// in single) in magnitude. The error is exact where it is not denormal.
template <class T, int n>
inline HighLow<Vec<T, n>> exact_product(Vec<T, n> a, Vec<T, n> b) {
  const Vec<T, n> p = a * b;
  if constexpr (kFused) {
    return {p, multiply_subtract(a, b, p)};
  } else {
    const auto halves = [](Vec<T, n> x) {
      const Vec<T, n> t = x * broadcast<Vec<T, n>>(sizeof(T) == 8 ? T(0x1p27 + 1) : T(0x1p12f + 1));
      const Vec<T, n> high = t - (t - x);
      return HighLow<Vec<T, n>>{high, x - high};
    };
    const auto x = halves(a), y = halves(b);
    return {p, x.low * y.low - (((p - x.high * y.high) - x.low * y.high) - x.high * y.low)};
  }
}
// a s - c where s has few significant bits (26 of a double's at most, 12 of a single's) and the product is near c, so
// that nothing but the last sum rounds.
template <class T, int n, class C>
inline Vec<T, n> product_residue(Vec<T, n> a, Vec<T, n> s, const C& c) {
  if constexpr (kFused) {
    return multiply_subtract(a, s, c);
  } else {
    const auto x = split(a);
    return (x.high * s - c) + x.low * s;
  }
}

// ---- approximations
// 1/x and its root, good to 1.5 * 2^-12; how far beyond depends on the processor. Doubles must be in the range of
// singles.
template <class T, int n>
inline Vec<T, n> approximate_reciprocal(Vec<T, n> x) {
  return map<Vec<T, n>>([](auto v) { return native::approximate_reciprocal(v); }, x);
}
template <class T, int n>
inline Vec<T, n> approximate_reciprocal_root(Vec<T, n> x) {
  return map<Vec<T, n>>([](auto v) { return native::approximate_reciprocal_root(v); }, x);
}

// ---- look-up
// One table index for each lane, in memory, where the integer unit can take it from: cheaper than moving the lanes
// over one by one, and it leaves the vector unit to the arithmetic.
template <class X>
struct Indices {
  alignas(kVectorBytes) int at[X::kLanes];
  int operator()(int lane) const { return at[lane]; }
};
// Of integers that were computed.
template <class X>
inline void set_indices(Indices<X>& index, WordOfLanes<X> a) {
  for (int i = 0; i < X::kCount; ++i)
    std::memcpy(index.at + X::kLanesEach * i, &a.v[i], X::kLanesEach * sizeof(int));
  asm("" : "+m"(index.at));  // or the compiler would look through the stores
}
// The lanes of a Vec of doubles in memory in the same way, for indices taken from their low words.
template <class X>
struct SpilledWords {
  alignas(kVectorBytes) int word[2 * X::kLanes];
  explicit SpilledWords(X x) {
    store_vectors<true>(reinterpret_cast<double*>(word), x);
    asm("" : "+m"(word));  // or the compiler would look through the store
  }
  int low(int lane) const { return word[2 * lane]; }
  int low_byte(int lane) const { return reinterpret_cast<const unsigned char*>(word)[8 * lane]; }
  int high(int lane) const { return word[2 * lane + 1]; }
  BitsOfLanes<X> bits() const {
    using I = BitsOfLanes<X>;
    return make<I>([this](int i) { return load<typename I::V, true>(word + i * (I::kBytes / 4)); });
  }
  X vector() const {
    return make<X>([this](int i) { return load<typename X::V, true>(word + 2 * i * X::kLanesEach); });
  }
};

// scale/x rounded to an integer, from an approximation of 1/x that is good to 1.5 * 2^-12: as doubles, and as
// indices. x and the result must be in the range of singles and integers.
template <class X>
inline X integer_reciprocal(X x, float scale, Indices<X>& index) {
  const X result = make<X>([&](int i) {
    const auto r = native::rounded_reciprocal(x.v[i], scale);
    std::memcpy(index.at + X::kLanesEach * i, &r, X::kLanesEach * sizeof(int));
    return native::to_double(r);
  });
  asm("" : "+m"(index.at));  // or the compiler would look through the stores
  return result;
}

// A vector from 128-bit pieces: piece(first), piece(first + step), ...
template <class V, class F>
inline V from_pieces(F piece, int first, int step) {
  if constexpr (sizeof(V) == 16) {
    return (V)piece(first);
  } else {
    using Half = VectorOf<double, sizeof(V) / 2>;
    constexpr int pieces = sizeof(V) / 32;
    return (V)native::join(from_pieces<Half>(piece, first, step),
                           from_pieces<Half>(piece, first + pieces * step, step));
  }
}

// The 64-bit words of a table that index(lane) names, as integers and as doubles.
template <class X, class W, class F>
inline BitsOfLanes<X> gather_bits(const W* table, F index) {
  using I = BitsOfLanes<X>;
  const auto piece = [&](int lane) {
    const auto word = [&](int l) { return reinterpret_cast<const double*>(table + index(l)); };
    return _mm_loadh_pd(_mm_load_sd(word(lane)), word(lane + 1));
  };
  return make<I>([&](int i) { return from_pieces<typename I::V>(piece, i * (I::kBytes / 8), 2); });
}
template <class X, class F>
inline X gather(const double* table, F index) {
  return reals<X>(gather_bits<X>(table, index));
}

// Rows of two doubles, 16-byte aligned: the first of each in `first`, the second in `second`. Of longer rows with
// `stride` doubles those that `table` points to.
template <int stride = 2, class X, class F>
inline void gather_pairs(const double* table, F index, X& first, X& second) {
  for (int i = 0; i < X::kCount; ++i) {
    const auto pair = [&](int lane) { return _mm_load_pd(table + stride * index(i * X::kLanesEach + lane)); };
    const auto even = from_pieces<typename X::V>(pair, 0, 2), odd = from_pieces<typename X::V>(pair, 1, 2);
    first.v[i] = native::unpack_low(even, odd);
    second.v[i] = native::unpack_high(even, odd);
  }
}
// Rows of four doubles.
template <class X, class F>
inline void gather_rows(const double* table, F index, X (&columns)[4]) {
  gather_pairs<4>(table, index, columns[0], columns[1]);
  gather_pairs<4>(table + 2, index, columns[2], columns[3]);
}

// For each lane the element of `table`, four singles, that the low two bits of `index`'s lane name.
template <int n>
inline Vec<float, n> select_of_4(const float* table, Vec<float, n> index) {
  return map<Vec<float, n>>([table](auto i) { return native::select_of_4(table, i); }, index);
}

ORX_ISA_END
