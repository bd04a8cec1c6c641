// Elements packed and unpacked, by both widths of the call's integers.
#include <gtest/gtest.h>
#include <xmmintrin.h>

#include <cfenv>
#include <complex>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>
#include <type_traits>
#include <vector>

#include "orx/tef.h"

namespace {

using Index = long long;

// The six kernels of a type; E is its element, R what that is made of.
template <class E, class R>
struct Kernels {
  using Element = E;
  using Real = R;
  void (*pack_strided)(Index, const R*, Index, R*, int), (*unpack_strided)(Index, const R*, R*, Index, int);
  void (*pack_masked)(Index, const R*, const int*, R*, int),
      (*unpack_masked)(Index, const R*, R*, const int*, int);
  void (*pack_indexed)(Index, const R*, const int*, R*, int),
      (*unpack_indexed)(Index, const R*, R*, const int*, int);
};
#define ORX_PACKING(t, E, R)                                                    \
  Kernels<E, R> {                                                               \
    orx_tef_kernel_##t##PackI_PXHAynn, orx_tef_kernel_##t##UnpackI_PXHAynn,     \
        orx_tef_kernel_##t##PackM_PXHAynn, orx_tef_kernel_##t##UnpackM_PXHAynn, \
        orx_tef_kernel_##t##PackV_PXHAynn, orx_tef_kernel_##t##UnpackV_PXHAynn  \
  }
template <class F>
void for_each_type(F f) {
  f(ORX_PACKING(s, float, float));
  f(ORX_PACKING(d, double, double));
  f(ORX_PACKING(c, std::complex<float>, float));
  f(ORX_PACKING(z, std::complex<double>, double));
}

template <class E>
E element(size_t i) {
  using R = decltype(std::real(E()));
  if constexpr (std::is_same_v<E, R>)
    return static_cast<R>(i) + R(0.25);
  else
    return {static_cast<R>(i) + R(0.25), -static_cast<R>(i)};
}
template <class E>
std::vector<E> elements(size_t n) {
  std::vector<E> x(n);
  for (size_t i = 0; i < n; ++i) x[i] = element<E>(i);
  return x;
}
template <class K>
auto* reals(std::vector<typename K::Element>& x, size_t from = 0) {
  return reinterpret_cast<typename K::Real*>(x.data() + from);
}

// Selections as kernels take them: `Int` is what they read.
template <class Int>
constexpr int kFlag = std::is_same_v<Int, int> ? 1 : 0;
template <class Int>
const int* selection(const std::vector<Int>& s) {
  return reinterpret_cast<const int*>(s.data());
}
// What must not count: in 32 bits the high word of the count and the stride, in 64 that of an index.
constexpr Index kHigh = Index(5) << 32;

template <class Int, class K>
void check_strides(const K& k) {
  using E = typename K::Element;
  constexpr size_t n = 77, room = 400;
  const Index count = Index(n) + (kFlag<Int> ? kHigh : 0);
  for (int stride : {1, 2, 5, 0, -1, -3}) {
    const Index told = kFlag<Int> ? static_cast<Index>(static_cast<uint32_t>(stride)) | kHigh : stride;
    const size_t first = stride < 0 ? room - 1 : 0;
    const auto place = [&](size_t i) { return first + i * static_cast<size_t>(stride); };
    std::vector<E> a = elements<E>(room), y(room, E(-1)), back(room, E(-1));
    k.pack_strided(count, reals<K>(a, first), told, reals<K>(y), kFlag<Int>);
    for (size_t i = 0; i < room; ++i) ASSERT_EQ(y[i], i < n ? a[place(i)] : E(-1)) << stride;
    k.unpack_strided(count, reals<K>(a), reals<K>(back, first), told, kFlag<Int>);
    std::vector<E> expected(room, E(-1));
    for (size_t i = 0; i < n; ++i) expected[place(i)] = a[i];
    ASSERT_EQ(back, expected) << stride;
  }
}

template <class Int, class K>
void check_masks(const K& k) {
  using E = typename K::Element;
  std::mt19937 random(1);
  for (size_t n : {1, 7, 255, 256, 257, 1000})
    for (int share : {0, 1, 2, 4}) {  // of four that are set
      std::vector<Int> mask(n);
      for (Int& m : mask)
        if (static_cast<int>(random() % 4) < share)
          m = random() % 2 ? 1 : static_cast<Int>(kFlag<Int> ? -128 : kHigh);
      std::vector<E> a = elements<E>(n), y(n + 1, E(-1)), packed = y, back = y, unpacked = y;
      size_t next = 0;
      for (size_t i = 0; i < n; ++i)
        if (mask[i]) {
          unpacked[i] = a[next];
          packed[next++] = a[i];
        }
      const Index count = static_cast<Index>(n) + (kFlag<Int> ? kHigh : 0);
      k.pack_masked(count, reals<K>(a), selection(mask), reals<K>(y), kFlag<Int>);
      k.unpack_masked(count, reals<K>(a), reals<K>(back), selection(mask), kFlag<Int>);
      ASSERT_EQ(y, packed) << n << ", " << share;
      ASSERT_EQ(back, unpacked) << n << ", " << share;
    }
}

template <class Int, class K>
void check_indices(const K& k) {
  using E = typename K::Element;
  constexpr size_t n = 300;
  std::mt19937 random(1);
  std::vector<size_t> at(n);
  for (size_t i = 0; i < n; ++i) at[i] = random() % n;  // some more than once
  std::vector<Int> index(n);
  for (size_t i = 0; i < n; ++i) index[i] = static_cast<Int>(Index(at[i]) + (kFlag<Int> ? 0 : kHigh));
  std::vector<E> a = elements<E>(n), y(n, E(-1)), back = y, expected = y;
  k.pack_indexed(Index(n) + (kFlag<Int> ? kHigh : 0), reals<K>(a), selection(index), reals<K>(y), kFlag<Int>);
  k.unpack_indexed(Index(n) + (kFlag<Int> ? kHigh : 0), reals<K>(a), reals<K>(back), selection(index),
                   kFlag<Int>);
  for (size_t i = 0; i < n; ++i) expected[at[i]] = a[i];
  for (size_t i = 0; i < n; ++i) ASSERT_EQ(y[i], a[at[i]]);
  ASSERT_EQ(back, expected);
}

template <class Int>
void check_all() {
  for_each_type([](const auto& k) {
    check_strides<Int>(k);
    check_masks<Int>(k);
    check_indices<Int>(k);
  });
}
TEST(Packing, InThirtyTwoBits) { check_all<int>(); }
TEST(Packing, InSixtyFourBits) { check_all<Index>(); }

// Indices of elements before the first, and far behind it.
template <class Int, class K>
void check_far_indices(const K& k) {
  using E = typename K::Element;
  constexpr size_t room = 160000, first = room / 2;
  const std::vector<Int> index = {-1, 70000, Int(-static_cast<int>(first)), 32768, 65536, -40000};
  const auto place = [&](size_t i) { return first + static_cast<size_t>(index[i]); };
  const Index n = static_cast<Index>(index.size());
  std::vector<E> a = elements<E>(room), y(index.size()), back(room, E(-1)), expected = back;
  k.pack_indexed(n, reals<K>(a, first), selection(index), reals<K>(y), kFlag<Int>);
  k.unpack_indexed(n, reals<K>(a), reals<K>(back, first), selection(index), kFlag<Int>);
  for (size_t i = 0; i < index.size(); ++i) {
    EXPECT_EQ(y[i], a[place(i)]) << i;
    expected[place(i)] = a[i];
  }
  EXPECT_EQ(back, expected);
}
TEST(Packing, FarIndices) {
  for_each_type([](const auto& k) {
    check_far_indices<int>(k);
    check_far_indices<Index>(k);
  });
}

// Only 1 stands for 32 bits.
TEST(Packing, AnyOtherFlagIsSixtyFourBits) {
  for_each_type([](const auto& k) {
    using K = std::decay_t<decltype(k)>;
    using E = typename K::Element;
    const std::vector<Index> mask = {1, 0, kHigh, 0, 1};
    for (int flag : {0, 2, 3, -1, 1 << 16}) {
      std::vector<E> a = elements<E>(mask.size()), y(mask.size(), E(-1));
      k.pack_masked(Index(mask.size()), reals<K>(a), selection(mask), reals<K>(y), flag);
      EXPECT_EQ(y, (std::vector<E>{a[0], a[2], a[4], E(-1), E(-1)})) << flag;
    }
  });
}

TEST(Packing, CountsThatAreNotPositiveDoNothing) {
  for_each_type([](const auto& k) {
    const auto call = [&](Index n, int flag) {
      k.pack_strided(n, nullptr, 1, nullptr, flag);
      k.unpack_strided(n, nullptr, nullptr, 1, flag);
      k.pack_masked(n, nullptr, nullptr, nullptr, flag);
      k.unpack_masked(n, nullptr, nullptr, nullptr, flag);
      k.pack_indexed(n, nullptr, nullptr, nullptr, flag);
      k.unpack_indexed(n, nullptr, nullptr, nullptr, flag);
    };
    for (Index n : {Index(0), Index(-1)}) {
      call(n, 1);
      call(n, 0);
    }
    call(kHigh, 1);
    call(Index(0x80000000), 1);
    call(-kHigh, 0);
    call(std::numeric_limits<Index>::min(), 0);
  });
}

// Moved as they are, but that a signalling NaN is quieted; MXCSR sees nothing of it.
TEST(Packing, EveryBitArrives) {
  const uint64_t bits[] = {0x7FF0000000000001, 0xFFF4000000000000, 0x7FF8000000000123, 1,
                           0x8000000000000001, 0x8000000000000000, 0x7FEFFFFFFFFFFFFF};
  constexpr Index n = 7;
  double a[n], y[n];
  std::memcpy(a, bits, sizeof a);
  std::feclearexcept(FE_ALL_EXCEPT);
  _mm_setcsr(_mm_getcsr() | 0x8040);
  const unsigned before = _mm_getcsr();
  _tefdPackI(n, a, 1, y);
  EXPECT_EQ(_mm_getcsr(), before);
  _mm_setcsr(before & ~0x8040u);
  for (int i = 0; i < n; ++i) {
    uint64_t got;
    std::memcpy(&got, y + i, 8);
    EXPECT_EQ(got, bits[i] | (i < 2 ? 0x0008000000000000 : 0));
  }
  std::feclearexcept(FE_ALL_EXCEPT);
}

}  // namespace
