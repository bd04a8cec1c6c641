// What the calling thread has set for its own arithmetic, roundings and flushing, changes no number, and stays.
#include <xmmintrin.h>

#include <cfenv>
#include <cstring>

#include "support/models.hpp"

namespace {

// A way to set the control words, for as long as it lives.
class Control {
 public:
  Control(int rounding, bool flush) : mxcsr_(_mm_getcsr()), rounding_(fegetround()) {
    fesetround(rounding);  // of the x87 unit and of SSE
    if (flush) _mm_setcsr(_mm_getcsr() | 0x8040);
  }
  ~Control() {
    fesetround(rounding_);
    _mm_setcsr(mxcsr_);
  }
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;

 private:
  unsigned mxcsr_;
  int rounding_;
};

constexpr unsigned kSticky = 0x3F;

// make() under every setting, each time the same bytes; the settings are not touched.
template <class Make>
void expect_same_numbers(const Make& make) {
  const auto expected = make();
  for (int rounding : {FE_TONEAREST, FE_DOWNWARD, FE_UPWARD, FE_TOWARDZERO})
    for (bool flush : {false, true}) {
      const Control control(rounding, flush);
      const unsigned before = _mm_getcsr() & ~kSticky;
      const auto got = make();
      const unsigned after = _mm_getcsr() & ~kSticky;
      const int rounding_after = fegetround();
      EXPECT_EQ(after, before);
      EXPECT_EQ(rounding_after, rounding);
      ASSERT_EQ(got.size(), expected.size());
      ASSERT_EQ(memcmp(got.data(), expected.data(), got.size() * sizeof got[0]), 0) << rounding << flush;
    }
}

TEST(Rounding, OfTheCallerChangesNothing) {
  std::vector<Case> cases = pseudo_cases();
  for (const Case& quasi : quasi_cases()) cases.push_back(quasi);
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    for (int n : {1, 3, 1000}) {
      expect_same_numbers([&] { return c.stream().words(n); });
      expect_same_numbers([&] { return c.stream().reals<double>(n); });
      expect_same_numbers([&] { return c.stream().reals<float>(n, -1, 3); });
      expect_same_numbers([&] { return c.stream().reals<double>(n, -3e-308, 2e-308); });
    }
  }
}

int no_more(KobStream*, uint32_t*, double*, uint32_t*, uint32_t*, uint32_t*) { return 0; }

TEST(Rounding, OfAbstractAndTrueRandomStreams) {
  double buffer[100];
  for (int i = 0; i < 100; ++i) buffer[i] = 0.1 + 0.007 * i;
  expect_same_numbers([&] {
    KobStream* stream = nullptr;
    EXPECT_EQ(__kobdNewAbstractStream(&stream, 100, buffer, 0.1, 0.9, no_more), 0);
    return Stream(stream).reals(100, -1.0, 5.0);
  });
  if (!__kobCPUisRDRAND()) return;
  for (int rounding : {FE_DOWNWARD, FE_UPWARD, FE_TOWARDZERO}) {
    std::vector<double> d;
    std::vector<float> f;
    {
      const Control control(rounding, true);
      d = Stream(KOB_BRNG_TRNG).reals<double>(3000);
      f = Stream(KOB_BRNG_TRNG).reals<float>(3000);
    }
    for (double x : d) ASSERT_TRUE(x >= 0 && x < 1) << x;
    for (float x : f) ASSERT_TRUE(x >= 0 && x <= 1) << x;
  }
}

}  // namespace
