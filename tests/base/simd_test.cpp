// Each member of the vocabulary of vectors against plain arithmetic on single numbers, on zeros, denormals,
// infinities, NaNs and the ends of the integers. Compiled once for each instruction set.
#include "orx/base/simd/memory.hpp"

#include <gtest/gtest.h>

#include <array>
#include <cfenv>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

using namespace orx;
using namespace orx::simd;

namespace {

template <class X>
using Lanes = std::array<typename X::Element, X::kLanes>;

template <class X, class F>
X vector_of(F f) {
  alignas(64) typename X::Element lane[X::kLanes];
  for (int i = 0; i < X::kLanes; ++i) lane[i] = f(i);
  return load_vectors<X>(lane);
}
template <class X>
Lanes<X> lanes_of(const X& x) {
  Lanes<X> lane;
  store_vectors(lane.data(), x);
  return lane;
}
// Integers: the lanes in use, from the vectors that hold them.
template <class E, int l, int n>
std::array<E, l> lanes_of(const Integers<E, l, n>& a) {
  std::array<E, l> lane;
  for (int i = 0; i < l; ++i) lane[i] = a.v[i / (l / n)][i % (l / n)];
  return lane;
}
template <class I, class F>
I integers_of(F f) {
  I a{};
  constexpr int each = I::kLanes / I::kCount;
  for (int i = 0; i < I::kLanes; ++i) a.v[i / each][i % each] = f(i);
  return a;
}

// NaNs are alike, the rest must agree to the bit.
template <class T>
bool same(T a, T b) {
  return (std::isnan(a) && std::isnan(b)) || bit_cast<BitsOf<T>>(a) == bit_cast<BitsOf<T>>(b);
}
template <class T>
bool same_bits(T a, T b) {
  return bit_cast<BitsOf<T>>(a) == bit_cast<BitsOf<T>>(b);
}

template <class T>
std::vector<T> edges() {
  using L = std::numeric_limits<T>;
  const T whole = sizeof(T) == 8 ? T(0x1p52) : T(0x1p23);
  std::vector<T> list;
  for (T x : {T(0),
              L::denorm_min(),
              L::min() / 2,
              L::min(),
              T(1e-10),
              T(0.25),
              T(0.5),
              T(1) - L::epsilon() / 2,
              T(1),
              T(1.5),
              T(2.5),
              T(3),
              T(1e6) + T(0.5),
              whole / 2 - T(0.5),
              whole / 2 + T(0.5),
              whole - 1,
              whole + 1,
              2 * whole + 2,
              T(1e30),
              L::max(),
              L::infinity(),
              L::quiet_NaN(),
              bit_cast<T>(static_cast<BitsOf<T>>(bit_cast<BitsOf<T>>(L::quiet_NaN()) | 0x1234)),
              T(0.1),
              T(7) / 3})
    for (T y : {x, -x}) list.push_back(y);
  return list;
}
template <class E>
std::vector<E> integer_edges() {
  using L = std::numeric_limits<E>;
  return {0,
          1,
          static_cast<E>(-1),
          2,
          3,
          1000,
          static_cast<E>(-1000),
          L::max(),
          L::min(),
          static_cast<E>(L::max() - 1),
          static_cast<E>(L::max() / 3),
          static_cast<E>(0x80000000),
          0x7FFFFFFF,
          static_cast<E>(0x123456789ABCDEF)};
}

// All pairs of edges, a vector at a time: f(a, b, a's lanes, b's lanes).
template <class X, class F>
void for_pairs(F f) {
  using T = typename X::Element;
  const std::vector<T> list = edges<T>();
  for (T first : list)
    for (size_t from = 0; from < list.size(); ++from) {
      const X a = vector_of<X>([&](int i) { return i % 3 ? list[(from + 2 * i) % list.size()] : first; });
      const X b = vector_of<X>([&](int i) { return list[(from + i) % list.size()]; });
      f(a, b, lanes_of(a), lanes_of(b));
    }
}
template <class X, class V, class S>
void expect_binary(V vector, S scalar) {
  for_pairs<X>([&](X a, X b, auto la, auto lb) {
    const auto r = lanes_of(vector(a, b));
    for (int i = 0; i < X::kLanes; ++i) {
      ASSERT_TRUE(same(r[i], scalar(la[i], lb[i]))) << la[i] << ", " << lb[i] << ": " << r[i];
    }
  });
}
// Random numbers of either sign between 2^-range and 2^range.
template <class X, class F>
void for_random(int range, F f) {
  std::mt19937 random(7);
  std::uniform_real_distribution<double> exponent(-range, range);
  using T = typename X::Element;
  const auto number = [&](int) {
    const T x = static_cast<T>(std::exp2(exponent(random)));
    return random() % 2 ? x : -x;
  };
  for (int k = 0; k < 2000; ++k) f(vector_of<X>(number), vector_of<X>(number));
}

template <class X>
class Simd : public testing::Test {};
using Vectors = testing::Types<Vec<float, 1>, Vec<float, 2>, Vec<float, kVectorBytes == 64 ? 2 : 4>,
                               Vec<double, 1>, Vec<double, 2>>;
TYPED_TEST_SUITE(Simd, Vectors);
template <class X>
class SimdDouble : public testing::Test {};
using DoubleVectors = testing::Types<Vec<double, 1>, Vec<double, 2>, Vec<double, 4>>;
TYPED_TEST_SUITE(SimdDouble, DoubleVectors);

// ---- memory
TYPED_TEST(Simd, MemoryAndConstants) {
  using X = TypeParam;
  using T = typename X::Element;
  alignas(64) T in[X::kLanes + 1], out[X::kLanes + 2];
  for (int i = 0; i <= X::kLanes; ++i) in[i] = T(i) + T(0.5);
  for (T& x : out) x = -1;
  store_vectors(out + 1, load_vectors<X>(in + 1));
  for (int i = 0; i < X::kLanes; ++i) EXPECT_EQ(out[i + 1], in[i + 1]);
  store_vectors<true>(out, load_vectors<X, true>(in));
  for (int i = 0; i < X::kLanes; ++i) EXPECT_EQ(out[i], in[i]);
  EXPECT_EQ(out[X::kLanes + 1], -1);
  alignas(64) static constexpr Row<T> row = T(-0.0);
  static constexpr Row<BitsOf<T>> bits = kSignBit<T>;
  for (const X& x :
       {constant<X>(row), constant<X>(bits), broadcast<X>(hidden(T(-0.0))), broadcast_bits<X>(kSignBit<T>)})
    for (T lane : lanes_of(x)) EXPECT_TRUE(same_bits(lane, T(-0.0)));
}

// Vectors of exactly as many elements as may be touched, so that a sanitizer sees an access beyond them.
TYPED_TEST(Simd, FirstElementsOfMemory) {
  using T = typename TypeParam::Element;
  using X = Vec<T, 1>;
  T out[2 * X::kLanes + 2];
  for (int count = 0; count <= X::kLanes; ++count) {
    std::vector<T> in(2 * static_cast<size_t>(count));
    for (size_t i = 0; i < in.size(); ++i) in[i] = T(i) - 3;
    X a, b;
    load_first_pairs(in.data(), count, T(0.75), a, b);
    const auto la = lanes_of(a), lb = lanes_of(b);
    for (T& x : out) x = 99;
    store_first_pairs(out + 1, count, a, b);
    for (int i = 0; i < 2 * X::kLanes + 2; ++i) EXPECT_EQ(out[i], i >= 1 && i <= 2 * count ? T(i) - 4 : 99);
    in.resize(static_cast<size_t>(count));
    in.shrink_to_fit();
    const auto lane = lanes_of(load_first<X>(in.data(), count, T(0.75)));
    for (int i = 0; i < X::kLanes; ++i) {
      EXPECT_EQ(lane[i], i < count ? T(i) - 3 : T(0.75));
      EXPECT_EQ(la[i], i < count ? T(2 * i) - 3 : T(0.75));
      EXPECT_EQ(lb[i], i < count ? T(2 * i) - 2 : T(0.75));
    }
    for (T& x : out) x = 99;
    store_first(out + 1, count, broadcast<X>(T(5)));
    for (int i = 0; i < X::kLanes + 2; ++i) EXPECT_EQ(out[i], i >= 1 && i <= count ? 5 : 99);
    EXPECT_EQ(movemask(first_lanes<X>(count)), (1 << count) - 1);
  }
}

TYPED_TEST(Simd, InterleavedPairs) {
  using X = TypeParam;
  using T = typename X::Element;
  T in[2 * X::kLanes], out[2 * X::kLanes];
  for (int i = 0; i < 2 * X::kLanes; ++i) in[i] = T(i);
  X a, b;
  load_pairs(in, a, b);
  store_pairs(out, a, b);
  for (int i = 0; i < X::kLanes; ++i) {
    EXPECT_EQ(lanes_of(a)[i], T(2 * i));
    EXPECT_EQ(lanes_of(b)[i], T(2 * i + 1));
    EXPECT_EQ(out[2 * i], T(2 * i));
    EXPECT_EQ(out[2 * i + 1], T(2 * i + 1));
  }
}

// ---- arithmetic
TYPED_TEST(Simd, Arithmetic) {
  using X = TypeParam;
  using T = typename X::Element;
  expect_binary<X>([](X a, X b) { return a + b; }, [](T a, T b) { return a + b; });
  expect_binary<X>([](X a, X b) { return a - b; }, [](T a, T b) { return a - b; });
  expect_binary<X>([](X a, X b) { return a * b; }, [](T a, T b) { return a * b; });
  expect_binary<X>([](X a, X b) { return a / b; }, [](T a, T b) { return a / b; });
  expect_binary<X>([](X a, X b) { return min(a, b); }, [](T a, T b) { return a < b ? a : b; });
  expect_binary<X>([](X a, X b) { return max(a, b); }, [](T a, T b) { return a > b ? a : b; });
  expect_binary<X>([](X a, X) { return square_root(a); }, [](T a, T) { return std::sqrt(a); });
  static constexpr Row<T> seven = 7;
  expect_binary<X>([](X a, X) { return a / seven - seven * a + seven; },
                   [](T a, T) { return a / 7 - 7 * a + 7; });
  expect_binary<X>([](X a, X) { return (seven - a) + min(a, seven) + seven / a; },
                   [](T a, T) { return (7 - a) + (a < 7 ? a : 7) + 7 / a; });
}

TYPED_TEST(Simd, ProductAndSum) {
  using X = TypeParam;
  using T = typename X::Element;
  static constexpr Row<T> third = T(1) / 3;
  const auto product_and = [](T a, T b, T c) { return kFused ? std::fma(a, b, c) : a * b + c; };
  expect_binary<X>([](X a, X b) { return multiply_add(a, b, third); },
                   [&](T a, T b) { return product_and(a, b, third.lane[0]); });
  expect_binary<X>([](X a, X b) { return multiply_add(a, third, b); },
                   [&](T a, T b) { return product_and(a, third.lane[0], b); });
  expect_binary<X>([](X a, X b) { return multiply_subtract(a, third, b); },
                   [&](T a, T b) { return product_and(a, third.lane[0], -b); });
  expect_binary<X>([](X a, X b) { return subtract_product(third, a, b); },
                   [&](T a, T b) { return product_and(-a, b, third.lane[0]); });
}

// Small integers: every scheme is exact.
template <class X, int... k>
void check_polynomial(std::integer_sequence<int, k...>) {
  using T = typename X::Element;
  static constexpr T c[12] = {3, -1, 4, 1, -5, 9, 2, -6, 5, 3, -5, 8};
  static constexpr Row<T> rows[] = {c[k]...};
  const X x = vector_of<X>([](int i) { return T(i % 5 - 2); });
  const auto estrin = lanes_of(polynomial(x, x * x, rows)), chain = lanes_of(horner(x, rows));
  for (int i = 0; i < X::kLanes; ++i) {
    T expected = 0, power = 1;
    for (int m = 0; m < static_cast<int>(sizeof...(k)); ++m, power *= T(i % 5 - 2)) expected += power * c[m];
    EXPECT_EQ(estrin[i], expected) << sizeof...(k);
    EXPECT_EQ(chain[i], expected) << sizeof...(k);
  }
}
template <class X, int... terms>
void check_polynomials(std::integer_sequence<int, terms...>) {
  (check_polynomial<X>(std::make_integer_sequence<int, terms + 1>()), ...);
}
TYPED_TEST(Simd, Polynomials) { check_polynomials<TypeParam>(std::make_integer_sequence<int, 12>()); }

TYPED_TEST(Simd, Rounding) {
  using X = TypeParam;
  using T = typename X::Element;
  expect_binary<X>([](X a, X) { return round<kToNearest>(a); }, [](T a, T) { return std::nearbyint(a); });
  expect_binary<X>([](X a, X) { return round<kDown>(a); }, [](T a, T) { return std::floor(a); });
  expect_binary<X>([](X a, X) { return round<kUp>(a); }, [](T a, T) { return std::ceil(a); });
  expect_binary<X>([](X a, X) { return round<kToZero>(a); }, [](T a, T) { return std::trunc(a); });
  const unsigned nearest = _mm_getcsr();
  for (unsigned mode = 0; mode < 4; ++mode) {
    const auto rounded = [mode](T a) {
      return mode == 0   ? std::nearbyint(a)
             : mode == 1 ? std::floor(a)
             : mode == 2 ? std::ceil(a)
                         : std::trunc(a);
    };
    for_pairs<X>([&](X a, X, auto la, auto) {
      _mm_setcsr(nearest | mode << 13);
      const X y = round<kAsControlled>(a);
      _mm_setcsr(nearest);
      const auto r = lanes_of(y);
      for (int i = 0; i < X::kLanes; ++i) {
        ASSERT_TRUE(same(r[i], rounded(la[i]))) << la[i];
      }
    });
  }
}

// The exceptions that f raises.
template <class F>
unsigned raised(F f) {
  const unsigned before = _mm_getcsr();
  _mm_setcsr(before & ~0x3Fu);
  f();
  const unsigned flags = _mm_getcsr() & 0x3F;
  _mm_setcsr(before & ~0x3Fu);
  return flags;
}

TYPED_TEST(Simd, QuietRoundingIsNotInexact) {
  if (kVectorBytes == 16) GTEST_SKIP() << "no rounding instruction";
  using X = TypeParam;
  const X x = broadcast<X>(hidden(typename X::Element(1.25)));
  X y;
  EXPECT_EQ(raised([&] { y = round<kToNearest | kQuietly>(x); }) & _MM_EXCEPT_INEXACT, 0u);
  EXPECT_EQ(lanes_of(y)[0], 1);
  EXPECT_NE(raised([&] { y = round<kAsControlled>(x); }) & _MM_EXCEPT_INEXACT, 0u);
  EXPECT_EQ(lanes_of(y)[0], 1);
}

// ---- bits
TYPED_TEST(Simd, Bits) {
  using X = TypeParam;
  using T = typename X::Element;
  using B = BitsOf<T>;
  static constexpr Row<B> pattern = static_cast<B>(0x0123456789ABCDEF);
  const B p = pattern.lane[0];
  for_pairs<X>([&](X a, X b, auto la, auto lb) {
    const auto r_and = lanes_of(bit_and(a, b)), r_or = lanes_of(bit_or(a, b)),
               r_xor = lanes_of(bit_xor(a, pattern)), r_not = lanes_of(bit_andnot(a, b)),
               r_row = lanes_of(bit_andnot(pattern, b)), absolute = lanes_of(magnitude(a)),
               signed_ = lanes_of(with_sign_of(a, b)), copied = lanes_of(copy_sign(a, b)),
               by_sign = lanes_of(select_by_sign(a, a, b));
    for (int i = 0; i < X::kLanes; ++i) {
      const B x = bit_cast<B>(la[i]), y = bit_cast<B>(lb[i]);
      ASSERT_EQ(bit_cast<B>(r_and[i]), static_cast<B>(x & y));
      ASSERT_EQ(bit_cast<B>(r_or[i]), static_cast<B>(x | y));
      ASSERT_EQ(bit_cast<B>(r_xor[i]), static_cast<B>(x ^ p));
      ASSERT_EQ(bit_cast<B>(r_not[i]), static_cast<B>(~x & y));
      ASSERT_EQ(bit_cast<B>(r_row[i]), static_cast<B>(~p & y));
      ASSERT_TRUE(same_bits(absolute[i], std::fabs(la[i])));
      ASSERT_TRUE(same_bits(copied[i], std::copysign(la[i], lb[i])));
      ASSERT_EQ(bit_cast<B>(signed_[i]), static_cast<B>(x | (y & kSignBit<T>)));
      ASSERT_EQ(bit_cast<B>(by_sign[i]), x & kSignBit<T> ? x : y);
    }
  });
}

// ---- comparisons and masks
template <class X, class V, class S>
void expect_comparison(V vector, S scalar) {
  for_pairs<X>([&](X a, X b, auto la, auto lb) {
    decltype(vector(a, b)) mask;
    ASSERT_EQ(raised([&] { mask = vector(a, b); }) & _MM_EXCEPT_INVALID, 0u) << "quiet";
    const int bits = movemask(mask);
    const auto chosen = lanes_of(select(mask, a, b)), kept = lanes_of(keep(mask, a));
    bool some = false;
    for (int i = 0; i < X::kLanes; ++i) {
      const bool expected = scalar(la[i], lb[i]);
      some |= expected;
      ASSERT_EQ(bits >> i & 1, expected) << la[i] << ", " << lb[i];
      ASSERT_TRUE(same_bits(chosen[i], expected ? la[i] : lb[i]));
      ASSERT_TRUE(same_bits(kept[i], expected ? la[i] : typename X::Element(0)));
    }
    ASSERT_EQ(any(mask), some);
    if constexpr (X::kLanes < 32) {
      ASSERT_EQ(bits >> X::kLanes, 0);
    }
  });
}

TYPED_TEST(Simd, ComparisonsAndMasks) {
  using X = TypeParam;
  using T = typename X::Element;
  static constexpr Row<T> low = -2, high = T(1e6);
  expect_comparison<X>([](X a, X b) { return less(a, b); }, [](T a, T b) { return a < b; });
  expect_comparison<X>([](X a, X b) { return at_most(a, b); }, [](T a, T b) { return a <= b; });
  expect_comparison<X>([](X a, X b) { return equal(a, b); }, [](T a, T b) { return a == b; });
  expect_comparison<X>([](X a, X b) { return not_equal(a, b); }, [](T a, T b) { return a != b; });
  expect_comparison<X>([](X a, X) { return not_below(a, high); }, [](T a, T) { return !(a < T(1e6)); });
  expect_comparison<X>([](X a, X b) { return not_at_most(a, b); }, [](T a, T b) { return !(a <= b); });
  expect_comparison<X>([](X a, X b) { return unordered(a, b); },
                       [](T a, T b) { return std::isnan(a) || std::isnan(b); });
  expect_comparison<X>([](X a, X) { return outside(a, low, high); },
                       [](T a, T) { return !(a >= -2 && a <= T(1e6)); });
  expect_comparison<X>([](X a, X b) { return bit_andnot(equal(a, low), less(a, b)); },
                       [](T a, T b) { return a < b && a != -2; });
  expect_comparison<X>([](X a, X b) { return bit_or(less(a, b), less(b, a)); },
                       [](T a, T b) { return a < b || b < a; });
}

TYPED_TEST(Simd, SignsOfLanes) {
  using X = TypeParam;
  for_pairs<X>([](X a, X, auto la, auto) {
    const int bits = movemask(a);
    const auto spread = lanes_of(spread_signs(a));
    for (int i = 0; i < X::kLanes; ++i) {
      ASSERT_EQ(bits >> i & 1, std::signbit(la[i]));
      ASSERT_EQ(bit_cast<BitsOf<typename X::Element>>(spread[i]),
                -BitsOf<typename X::Element>(std::signbit(la[i])));
    }
    ASSERT_EQ(any(a), bits != 0);
  });
}

// ---- integers
template <class I, class F>
void for_integer_pairs(F f) {
  using E = typename I::Element;
  const std::vector<E> list = integer_edges<E>();
  for (E first : list)
    for (size_t from = 0; from < list.size(); ++from) {
      const I a = integers_of<I>([&](int i) { return i % 2 ? list[(from + 3 * i) % list.size()] : first; });
      const I b = integers_of<I>([&](int i) { return list[(from + i) % list.size()]; });
      f(a, b, lanes_of(a), lanes_of(b));
    }
}
template <class I>
void check_integers() {
  using E = typename I::Element;
  using U = std::make_unsigned_t<E>;
  for_integer_pairs<I>([](I a, I b, auto la, auto lb) {
    const auto sum = lanes_of(a + b), difference = lanes_of(a - b), product = lanes_of(a * b),
               both = lanes_of(a & b), either = lanes_of(a | b), one = lanes_of(a ^ b),
               left = lanes_of(shift_left<5>(a)), right = lanes_of(shift_right<5>(a)),
               more = lanes_of(greater(a, b)), like = lanes_of(equal(a, b)),
               less_than_1000 = lanes_of(greater(E(1000) - (a ^ a), a)),
               more_than_2 = lanes_of(greater(a, E(2))), mixed = lanes_of((a & E(15)) + E(1));
    for (int i = 0; i < I::kLanes; ++i) {
      const U x = static_cast<U>(la[i]), y = static_cast<U>(lb[i]);
      ASSERT_EQ(sum[i], static_cast<E>(x + y));
      ASSERT_EQ(difference[i], static_cast<E>(x - y));
      ASSERT_EQ(product[i], static_cast<E>(x * y));
      ASSERT_EQ(both[i], static_cast<E>(x & y));
      ASSERT_EQ(either[i], static_cast<E>(x | y));
      ASSERT_EQ(one[i], static_cast<E>(x ^ y));
      ASSERT_EQ(left[i], static_cast<E>(x << 5));
      ASSERT_EQ(right[i], static_cast<E>(la[i] >> 5));
      ASSERT_EQ(more[i], la[i] > lb[i] ? static_cast<E>(-1) : 0);
      ASSERT_EQ(like[i], la[i] == lb[i] ? static_cast<E>(-1) : 0);
      ASSERT_EQ(less_than_1000[i], 1000 > la[i] ? static_cast<E>(-1) : 0);
      ASSERT_EQ(more_than_2[i], la[i] > 2 ? static_cast<E>(-1) : 0);
      ASSERT_EQ(mixed[i], static_cast<E>((x & 15) + 1));
    }
  });
  for (int lane = -1; lane < I::kLanes; ++lane) {
    const auto mask =
        equal(integers_of<I>([](int i) { return E(i); }), integers_of<I>([=](int) { return E(lane); }));
    EXPECT_EQ(any(mask), lane >= 0) << lane;
  }
}

TYPED_TEST(Simd, Integers) {
  constexpr int lanes = TypeParam::kLanes;
  using Signed = std::make_signed_t<BitsOf<typename TypeParam::Element>>;
  check_integers<Ints<BitsOf<typename TypeParam::Element>, lanes>>();
  check_integers<Ints<Signed, lanes>>();
  check_integers<WordOfLanes<TypeParam>>();
}

TYPED_TEST(Simd, BitsAsIntegersAndBack) {
  using X = TypeParam;
  using B = BitsOf<typename X::Element>;
  for_pairs<X>([](X a, X, auto la, auto) {
    const auto integers = bits(a);
    const auto words = lanes_of(as<int32_t>(integers));
    const auto back = lanes_of(reals<X>(integers));
    for (int i = 0; i < X::kLanes; ++i) {
      ASSERT_EQ(lanes_of(integers)[i], bit_cast<B>(la[i]));
      ASSERT_TRUE(same_bits(back[i], la[i]));
      ASSERT_EQ(words[i * (sizeof(B) / 4)], static_cast<int32_t>(bit_cast<B>(la[i])));
    }
  });
}

TYPED_TEST(SimdDouble, WideProducts) {
  using I = BitsOfLanes<TypeParam>;
  for_integer_pairs<I>([](I a, I b, auto la, auto lb) {
    const auto product = lanes_of(multiply_wide(a, b));
    for (int i = 0; i < I::kLanes; ++i) {
      ASSERT_EQ(product[i], (la[i] & 0xFFFFFFFF) * (lb[i] & 0xFFFFFFFF));
    }
  });
}

// ---- conversions
TYPED_TEST(SimdDouble, WordsAndExponents) {
  using X = TypeParam;
  for_pairs<X>([](X a, X, auto la, auto) {
    const auto high = lanes_of(high_words(a)), low = lanes_of(low_words(a));
    const auto field = lanes_of(exponent_field(magnitude(a)));
    const auto doubles = lanes_of(to_doubles(high_words(a)));
    for (int i = 0; i < X::kLanes; ++i) {
      const uint64_t bits = bit_cast<uint64_t>(la[i]);
      ASSERT_EQ(high[i], static_cast<int32_t>(bits >> 32));
      ASSERT_EQ(low[i], static_cast<int32_t>(bits));
      ASSERT_EQ(field[i], static_cast<double>(bits >> 52 & 0x7FF));
      ASSERT_EQ(doubles[i], static_cast<double>(high[i]));
    }
  });
}

TYPED_TEST(SimdDouble, ToIntegers) {
  using X = TypeParam;
  for_pairs<X>([](X a, X, auto la, auto) {
    const auto rounded = lanes_of(round_to_ints(a)), truncated = lanes_of(truncate_to_ints(a));
    for (int i = 0; i < X::kLanes; ++i) {
      const auto expected = [](double x) {
        return std::fabs(x) < 0x1p31 ? static_cast<int32_t>(x) : INT32_MIN;
      };
      ASSERT_EQ(rounded[i], expected(std::nearbyint(la[i]))) << la[i];
      ASSERT_EQ(truncated[i], expected(std::trunc(la[i]))) << la[i];
    }
  });
}

template <int n>
void check_single_conversions() {
  using X = Vec<float, n>;
  using D = Vec<double, 2 * n>;
  for_pairs<X>([](X a, X, auto la, auto) {
    const auto wide = lanes_of(widen(a)), back = lanes_of(narrow(widen(a)));
    const auto rounded = lanes_of(round_to_ints(a)), truncated = lanes_of(truncate_to_ints(a));
    const auto value = lanes_of(integer_bits(a)), again = lanes_of(to_floats<X>(round_to_ints(a)));
    for (int i = 0; i < X::kLanes; ++i) {
      const auto expected = [](float x) {
        return std::fabs(x) < 0x1p31f ? static_cast<int32_t>(x) : INT32_MIN;
      };
      ASSERT_TRUE(same(wide[i], static_cast<double>(la[i])));
      ASSERT_TRUE(same(back[i], la[i]));
      ASSERT_EQ(rounded[i], expected(std::nearbyint(la[i])));
      ASSERT_EQ(truncated[i], expected(std::trunc(la[i])));
      ASSERT_EQ(value[i], static_cast<float>(bit_cast<int32_t>(la[i])));
      ASSERT_EQ(again[i], static_cast<float>(rounded[i]));
    }
  });
  for_pairs<D>([](D a, D, auto la, auto) {
    const auto single = lanes_of(narrow(a));
    for (int i = 0; i < D::kLanes; ++i) {
      ASSERT_TRUE(same(single[i], static_cast<float>(la[i])));
    }
  });
}
TEST(SimdSingle, Conversions) {
  check_single_conversions<1>();
  check_single_conversions<2>();
}

TYPED_TEST(Simd, ScaleFromShiftedInteger) {
  using X = TypeParam;
  using T = typename X::Element;
  constexpr bool is_double = sizeof(T) == 8;
  const T shifter = (is_double ? T(0x1.8p52) : T(0x1.8p23f)) + (is_double ? 1023 : 127) * 16;
  for (int from = -1000; from < 1000; from += 7) {
    const X N = vector_of<X>([&](int i) { return shifter + T(from + i); });
    const auto scale = lanes_of(scale_from<4>(N));
    for (int i = 0; i < X::kLanes; ++i) EXPECT_EQ(scale[i], std::ldexp(T(1), (from + i) >> 4));
  }
}

template <int n>
void check_real_of_bits() {
  using X = Vec<float, n>;
  for (int k = -127; k <= 128; ++k) {
    const X x =
        vector_of<X>([&](int i) { return (static_cast<float>(k + 127) + 0.25f * (i % 4)) * 0x1p23f; });
    const auto y = lanes_of(real_of_bits(x));
    for (int i = 0; i < X::kLanes; ++i)
      EXPECT_EQ(bit_cast<uint32_t>(y[i]), static_cast<uint32_t>(4 * (k + 127) + i % 4) << 21);
  }
}
TEST(SimdSingle, RealOfBits) {
  check_real_of_bits<1>();
  check_real_of_bits<2>();
}

// ---- exact sums and products
__extension__ typedef __float128 Wide;

TYPED_TEST(Simd, ExactSums) {
  using X = TypeParam;
  for_random<X>(20, [](X a, X b) {
    const auto s = two_sum(a, b);
    const X larger = select(less(magnitude(a), magnitude(b)), b, a),
            smaller = select(less(magnitude(a), magnitude(b)), a, b);
    const auto f = fast_two_sum(larger, smaller);
    for (int i = 0; i < X::kLanes; ++i) {
      const auto x = lanes_of(a)[i], y = lanes_of(b)[i];
      ASSERT_EQ(lanes_of(s.high)[i], x + y);
      ASSERT_TRUE(Wide(lanes_of(s.high)[i]) + lanes_of(s.low)[i] == Wide(x) + y);
      ASSERT_EQ(lanes_of(f.high)[i], x + y);
      ASSERT_EQ(lanes_of(f.low)[i], lanes_of(s.low)[i]);
    }
  });
}

TYPED_TEST(Simd, ExactProducts) {
  using X = TypeParam;
  using T = typename X::Element;
  constexpr int digits = std::numeric_limits<T>::digits;
  for_random<X>(30, [](X a, X b) {
    const auto p = exact_product(a, b);
    const auto halves = split(a);
    static constexpr Row<T> one = 1;
    // b with few bits, near 1/a
    const X shortened = split(broadcast<X>(T(1)) / a).high;
    const auto residue = lanes_of(product_residue(a, shortened, one));
    for (int i = 0; i < X::kLanes; ++i) {
      const T x = lanes_of(a)[i], y = lanes_of(b)[i];
      ASSERT_EQ(lanes_of(p.high)[i], x * y);
      ASSERT_TRUE(Wide(lanes_of(p.high)[i]) + lanes_of(p.low)[i] == Wide(x) * y) << x << " * " << y;
      const T high = lanes_of(halves.high)[i], low = lanes_of(halves.low)[i];
      ASSERT_EQ(high + low, x);
      ASSERT_EQ(std::ldexp(high, digits / 2 - std::ilogb(x) - 1),
                std::rint(std::ldexp(high, digits / 2 - std::ilogb(x) - 1)));
      ASSERT_EQ(residue[i], static_cast<T>(Wide(x) * lanes_of(shortened)[i] - 1));
    }
  });
}

// ---- approximations
TYPED_TEST(Simd, Approximations) {
  using X = TypeParam;
  for_random<X>(100, [](X a, X) {
    const auto r = lanes_of(approximate_reciprocal(a) * a),
               s = lanes_of(approximate_reciprocal_root(magnitude(a)) * square_root(magnitude(a)));
    for (int i = 0; i < X::kLanes; ++i) {
      ASSERT_NEAR(r[i], 1, 1.5 * 0x1p-12 + 1e-6);
      ASSERT_NEAR(s[i], 1, 1.5 * 0x1p-12 + 1e-6);
    }
  });
}

TYPED_TEST(SimdDouble, IntegerReciprocals) {
  using X = TypeParam;
  for (float scale : {1.0f, 0.43359375f})
    for (int from = 0; from < 200; ++from) {
      const X x = vector_of<X>([&](int i) { return std::ldexp(1 + (from + 0.37 * i) / 240, -10); });
      Indices<X> index;
      const auto r = lanes_of(integer_reciprocal(x, scale, index));
      for (int i = 0; i < X::kLanes; ++i) {
        EXPECT_NEAR(r[i], scale / lanes_of(x)[i], 0.5 + 1024 * 1.5 * 0x1p-12);
        EXPECT_EQ(index(i), static_cast<int>(r[i]));
      }
    }
}

// ---- look-up
TYPED_TEST(SimdDouble, Tables) {
  using X = TypeParam;
  alignas(64) static double table[64 * 4];
  for (int i = 0; i < 64 * 4; ++i) table[i] = 10 * (i / 4) + i % 4;
  const X N = vector_of<X>([](int i) { return 0x1.8p52 + 0x500 + (37 * i + 5) % 64; });
  const SpilledWords<X> n(N);
  const auto index = [&](int lane) { return n.low(lane) & 63; };
  X first, second, columns[4];
  gather_pairs(
      table, [&](int lane) { return 2 * index(lane); }, first, second);
  gather_rows(table, index, columns);
  const auto words = lanes_of(gather_bits<X>(table, index));
  const auto single = lanes_of(gather<X>(table, index));
  for (int i = 0; i < X::kLanes; ++i) {
    const int row = (37 * i + 5) % 64;
    EXPECT_EQ(index(i), row);
    EXPECT_EQ(n.low_byte(i), row);
    EXPECT_EQ(lanes_of(first)[i], table[4 * row]);
    EXPECT_EQ(lanes_of(second)[i], table[4 * row + 1]);
    for (int k = 0; k < 4; ++k) EXPECT_EQ(lanes_of(columns[k])[i], table[4 * row + k]);
    EXPECT_EQ(single[i], table[row]);
    EXPECT_EQ(words[i], bit_cast<uint64_t>(table[row]));
    EXPECT_EQ(lanes_of(n.bits())[i], bit_cast<uint64_t>(lanes_of(N)[i]));
    EXPECT_EQ(lanes_of(n.vector())[i], lanes_of(N)[i]);
  }
}

TEST(SimdSingle, SelectOfFour) {
  alignas(64) static const float table[8] = {1.5f, 2.5f, 3.5f, 4.5f, 1.5f, 2.5f, 3.5f, 4.5f};
  using X = Vec<float, 2>;
  const X index = vector_of<X>([](int i) { return 0x1.8p23f + static_cast<float>(5 * i + 3); });
  const auto r = lanes_of(select_of_4(table, index));
  for (int i = 0; i < X::kLanes; ++i) EXPECT_EQ(r[i], table[(5 * i + 3) & 3]);
}

}  // namespace
