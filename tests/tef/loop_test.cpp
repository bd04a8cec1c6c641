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
      const bool asks_mode = k.name.find("_N8") == std::string::npos;  // the others never flush
      const Reference<R> reference(f, k, n);
      test::Vectors<R> v(f, n), none(f, 0);
      reference.put_into(v, n);
      for (int flush : {TEF_FLUSH_OFF, TEF_FLUSH_ON})
        for (unsigned rounding = 0; rounding < 4; ++rounding)
          for (unsigned bits : {0x0000u, 0x8000u, 0x0040u, 0x8040u}) {
            _tefSetMode(flush);
            const unsigned csr = 0x1F80 | rounding << 13 | bits;
            const unsigned after = csr_after(v, k, csr);
            const bool changed =
                !keeps && (csr & 0xE040) != (asks_mode && flush == TEF_FLUSH_ON ? 0x8040u : 0u);
            EXPECT_EQ(changed ? after : after & ~0x3Fu, csr)
                << k.name;  // unchanged, it collects exception flags
            for (int i = 0; i < n && !keeps; ++i)
              EXPECT_TRUE(test::same_bits(v.result(i), reference.results[static_cast<size_t>(i)])) << k.name;
            EXPECT_EQ(csr_after(none, k, csr), csr) << k.name;
          }
    }
  });
  _tefSetMode(TEF_FLUSH_OFF);
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

}  // namespace
