// What all kernels owe: no element outside, the same result wherever an element stands, the caller's MXCSR.
#include <gtest/gtest.h>
#include <immintrin.h>

#include <cmath>
#include <cstring>
#include <random>
#include <vector>

#include "functions.h"

namespace {

using namespace orx;

// A count of usual elements, and what each gives in a call of its own.
template <class R>
struct Reference {
  Reference(const Function& f, const Kernel& k, int count) {
    std::mt19937 random(1);
    for (int i = 0; i < count; ++i) {
      elements.push_back(test::usual_element<R>(f, random));
      // A second argument that is one for all is that of the first.
      for (size_t j = static_cast<size_t>(f.columns_in()); j < elements[0].size(); ++j)
        elements.back()[j] = elements[0][j];
      test::Vectors<R> one(f, 1);
      one.set(0, elements.back());
      one.run(k);
      results.push_back(one.result(0));
    }
  }
  void put_into(test::Vectors<R>& v, int n) const {
    for (int i = 0; i < n; ++i) v.set(i, elements[static_cast<size_t>(i)]);
  }

  std::vector<std::vector<R>> elements, results;
};

TEST(Loop, EveryCountAndPlace) {
  test::for_each_function([](const Function& f, auto real) {
    using R = decltype(real);
    for (const Kernel& k : f.kernels) {
      const Reference<R> reference(f, k, 80);
      for (int from = 0; from < 9; ++from)
        for (int to = 0; to < 9; to += 3)
          for (int n = 0; n < 80; n += n < 20 ? 1 : 7)
            for (bool in_place : {false, true}) {
              if (in_place && f.in_width() != f.out_width()) continue;
              test::Vectors<R> v(f, n, from, to);
              if (in_place) v.in_place();
              reference.put_into(v, n);
              v.run(k);
              for (int i = 0; i < n; ++i)
                ASSERT_TRUE(test::same_bits(v.result(i), reference.results[static_cast<size_t>(i)]))
                    << k.name << " n " << n << " from " << from << " to " << to << " element " << i;
              ASSERT_TRUE(v.surroundings_untouched())
                  << k.name << " n " << n << " from " << from << " to " << to;
            }
    }
  });
}

TEST(Loop, ArraysThatAreNotAlignedToTheirElements) {
  alignas(8) char in[41 * 8 + 8], out[41 * 8 + 8];
  double a[41], expected[41];
  for (int i = 0; i < 41; ++i) a[i] = 0.3 + i;
  for (const Function& f : functions()) {
    if (f.type != 'd' || f.shape->name != std::string("unary")) continue;
    for (const Kernel& k : f.kernels) {
      const auto call = reinterpret_cast<void (*)(int, const double*, double*)>(k.entry);
      call(41, a, expected);
      std::memcpy(in + 4, a, sizeof a);
      call(41, reinterpret_cast<double*>(in + 4), reinterpret_cast<double*>(out + 4));
      EXPECT_EQ(std::memcmp(out + 4, expected, sizeof expected), 0) << k.name;
    }
  }
}

// MXCSR after a kernel that was called with `csr`.
template <class R>
unsigned csr_after(test::Vectors<R>& v, const Kernel& k, unsigned csr) {
  const unsigned caller = _mm_getcsr();
  _mm_setcsr(csr);
  v.run(k);
  const unsigned after = _mm_getcsr();
  _mm_setcsr(caller);
  return after;
}

// Kernels compute in round-to-nearest with the flush that the mode asks for, and give MXCSR back bit for bit where they
// had to change it.
TEST(Loop, ControlWord) {
  const test::TefState state;
  _tefSetMode(TEF_ERRMODE_IGNORE);
  test::for_each_function([](const Function& f, auto real) {
    using R = decltype(real);
    constexpr int n = 50;
    for (const Kernel& k : f.kernels) {
      const bool keeps = test::serves(k, f.descriptor->keep_control_word);
      const Reference<R> reference(f, k, n);
      test::Vectors<R> v(f, n), none(f, 0);
      reference.put_into(v, n);
      for (int flush : {TEF_FLUSH_OFF, TEF_FLUSH_ON})
        for (unsigned rounding = 0; rounding < 4; ++rounding)
          for (unsigned bits : {0x0000u, 0x8000u, 0x0040u, 0x8040u}) {
            _tefSetMode(flush);
            const unsigned csr = 0x1F80 | rounding << 13 | bits;
            const unsigned after = csr_after(v, k, csr);
            const bool untouched = keeps || (csr & 0xE040) == (flush == TEF_FLUSH_ON ? 0x8040u : 0u);
            // Exception flags stay where nothing was changed.
            EXPECT_EQ(untouched ? after & ~0x3Fu : after & ~0x3Fu, csr) << k.name;
            for (int i = 0; i < n && !keeps; ++i)
              EXPECT_TRUE(test::same_bits(v.result(i), reference.results[static_cast<size_t>(i)])) << k.name;
            EXPECT_EQ(csr_after(none, k, csr), csr) << k.name;
          }
    }
  });
  _tefSetMode(TEF_FLUSH_OFF);
}

// The saved image goes back whole where it had to be changed: flags that were raised meanwhile are lost.
TEST(Loop, FlagsAreLostWhereTheControlWordChanged) {
  const test::TefState state;
  _tefSetMode(TEF_ERRMODE_IGNORE);
  const double a[1] = {-1};
  double r[1];
  for (unsigned rounding : {0x0000u, 0x4000u}) {
    _mm_setcsr(0x1F80 | rounding);
    _tefdLn(1, a, r);
    EXPECT_EQ(_mm_getcsr() & 1, rounding ? 0u : 1u);
    _mm_setcsr(0x1F80);
  }
}

// Padding lanes raise nothing: usual elements leave invalid, zero-divide, overflow and underflow alone.
TEST(Loop, UsualElementsRaiseNothing) {
  test::for_each_function([](const Function& f, auto real) {
    using R = decltype(real);
    if (f.descriptor->formula) return;
    for (const Kernel& k : f.kernels)
      for (int n : {1, 3, 29}) {
        const Reference<R> reference(f, k, n);
        test::Vectors<R> v(f, n);
        reference.put_into(v, n);
        EXPECT_EQ(csr_after(v, k, 0x1F80) & 0x1D, 0u) << k.name;
      }
  });
}

std::vector<int> order;
int note_index(TefErrorContext* e) {
  order.push_back(e->index);
  if (e->index == 7) e->res1 = 99.0;
  return 0;
}

TEST(Loop, ErrorsComeInAscendingOrderAndMayChangeResults) {
  const test::TefState state;
  _tefSetMode(TEF_ERRMODE_CALLBACK);
  _tefSetErrorCallBack(note_index);
  alignas(32) double a[41], r[41];
  for (int offset = 0; offset < 4; ++offset) {
    order.clear();
    for (double& x : a) x = 2.0;
    for (int i : {0, 1, 7, 8, 15, 22, 30}) a[offset + i] = i % 2 ? -1.0 : 0.0;
    a[offset + 3] = std::nan("");  // special, but no error
    _tefdLn(31, a + offset, r);
    EXPECT_EQ(order, (std::vector<int>{0, 1, 7, 8, 15, 22, 30}));
    EXPECT_EQ(r[7], 99.0);
    EXPECT_EQ(r[8], -HUGE_VAL);
    EXPECT_NEAR(r[9], std::log(2.0), 1e-15);
  }
}

}  // namespace
