// What all distributions have in common, for every row of their list.
#include <algorithm>
#include <cerrno>
#include <cfenv>
#include <cmath>
#include <cstring>

#include <xmmintrin.h>

#include "orx/tef.h"
#include "rows.hpp"
#include "support/allocations.hpp"

namespace {

constexpr double kUntouched = 77;

std::vector<double> drawn(const Row& row, KobStream* stream, int n) {
  std::vector<double> r(size_t(n) + 1, kUntouched);
  EXPECT_EQ(row.draw(stream, n, r.data()), 0) << row.name;
  EXPECT_EQ(r.back(), kUntouched) << row.name;
  r.pop_back();
  return r;
}

// A call for many numbers, then calls for one, which some generators make in a way of their own.
int draw_some_singly(const Row& row, KobStream* stream, int n, double* r) {
  const int together = n - 40;
  int status = row.draw(stream, together, r);
  for (int i = together; i < n && status == 0; ++i) {
    double one[2] = {kUntouched, kUntouched};
    status = row.draw(stream, 1, one);
    r[i] = one[0];
    EXPECT_EQ(one[1], kUntouched) << row.name;
  }
  return status;
}

// Bits, so that NaNs and signs of zeros count.
bool same_bits(const std::vector<double>& a, const std::vector<double>& b) {
  return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(double)) == 0;
}

TEST(Distributions, NothingIsWrittenForNothing) {
  for (const Row& row : all_rows()) {
    const Stream s(KOB_BRNG_MT19937), t(KOB_BRNG_MT19937);
    drawn(row, s, 0);
    double r[2] = {kUntouched, kUntouched};
    EXPECT_EQ(row.draw(s, -5, r), 0) << row.name;
    EXPECT_EQ(r[0], kUntouched) << row.name;
    EXPECT_TRUE(same_bits(drawn(row, s, 10), drawn(row, t, 10))) << row.name;
  }
}

// What a stream keeps goes with copies and images. Where the list says how many uniforms a number takes, it takes so many
// whatever the cuts into calls.
TEST(Distributions, CutsCopiesAndImagesChangeNothing) {
  constexpr int cuts[] = {1, 2, 3, 1, 1023, 1024, 1025, 7, 2049, 5};
  for (const Row& row : all_rows()) {
    const Stream whole(KOB_BRNG_MRG32K3A), s(KOB_BRNG_MRG32K3A), uniforms(KOB_BRNG_MRG32K3A);
    std::vector<double> pieces;
    for (int n : cuts) {
      const Stream copy(s);
      std::vector<unsigned char> image(size_t(__kobGetStreamSize(s)));
      ASSERT_EQ(__kobSaveStreamM(s, image.data()), 0);
      KobStream* loaded = nullptr;
      ASSERT_EQ(__kobLoadStreamM(&loaded, image.data()), 0);
      const std::vector<double> piece = drawn(row, s, n);
      EXPECT_TRUE(same_bits(piece, drawn(row, copy, n))) << row.name << " copied, " << n;
      EXPECT_TRUE(same_bits(piece, drawn(row, Stream(loaded), n))) << row.name << " loaded, " << n;
      pieces.insert(pieces.end(), piece.begin(), piece.end());
    }
    if (row.uniforms == 0) continue;
    EXPECT_TRUE(same_bits(pieces, drawn(row, whole, int(pieces.size())))) << row.name;
    uniforms.reals(row.uniforms * int(pieces.size()));
    EXPECT_EQ(s.words(3), uniforms.words(3)) << row.name;
  }
}

int handler_calls;
int counting_handler(TefErrorContext*) { return ++handler_calls, 0; }

// What vector mathematics keeps for this thread, set to values that calls could disturb.
struct ThreadState {
  int mode, status, error_number;
  TefErrorCallBack call_back;

  static ThreadState now() {
    return {orx_tef_kernel_GetMode(), orx_tef_kernel_GetErrStatus(), errno,
            orx_tef_kernel_GetErrorCallBack()};
  }
  bool operator==(const ThreadState& other) const {
    return mode == other.mode && status == other.status && error_number == other.error_number &&
           call_back == other.call_back;
  }
};

// A registered generator whose uniforms are often 0 or the largest, which is 1 in single precision. It fails when it
// has given so many.
constexpr int kFailure = -1120;
int numbers_left;
uint32_t extreme_state;

double next_extreme() {
  extreme_state = extreme_state * 1664525 + 1013904223;
  const uint32_t x = extreme_state >> 24;
  return x < 32 ? 0 : x >= 224 ? 1 - 0x1p-32 : (extreme_state ^ extreme_state >> 15) * 0x1p-32;
}

template <class Real>
int generate_extremes(KobStream*, int n, Real r[], Real a, Real b) {
  if (n > numbers_left) return kFailure;
  numbers_left -= std::max(n, 0);
  for (int i = 0; i < n; ++i) r[i] = Real(next_extreme() * (double(b) - double(a)) + a);
  return 0;
}
int start_extremes(int, KobStream*, int, const uint32_t*) { return 0; }
int no_words(KobStream*, int, uint32_t*) { return kFailure; }

Stream extreme_stream(int numbers) {
  static const KobBrngProperties properties = {
      16, 1, 1, 4, 32, start_extremes, generate_extremes<float>, generate_extremes<double>, no_words};
  static const int id = __kobRegisterBrng(&properties);
  numbers_left = numbers;
  extreme_state = 12345;
  return Stream(uint32_t(id));
}

// A registered generator of two uniforms in turn, whose interval changes nothing.
double the_uniforms[2];
template <class Real>
int repeat_uniforms(KobStream*, int n, Real r[], Real, Real) {
  for (int i = 0; i < n; ++i) r[i] = Real(the_uniforms[i % 2]);
  return 0;
}
Stream two_uniforms(double first, double second) {
  static const KobBrngProperties properties = {
      16, 1, 1, 4, 32, start_extremes, repeat_uniforms<float>, repeat_uniforms<double>, no_words};
  static const int id = __kobRegisterBrng(&properties);
  the_uniforms[0] = first;
  the_uniforms[1] = second;
  return Stream(uint32_t(id));
}
Stream one_uniform(double u) { return two_uniforms(u, u); }

TEST(Distributions, UniformsOfZeroAndOneGiveNumbersAndTheThreadIsAsBefore) {
  orx_tef_kernel_SetErrorCallBack(counting_handler);
  for (const Row& row : all_rows()) {
    const Stream s = extreme_stream(INT32_MAX);
    // The second word has no flush field, which SetMode could not empty again.
    for (int mode : {TEF_HA | TEF_ERRMODE_ERRNO | TEF_ERRMODE_EXCEPT, TEF_EP | TEF_ERRMODE_CALLBACK}) {
      orx_tef_kernel_SetMode(mode);
      orx_tef_kernel_SetErrStatus(StatusUnderflow);
      errno = handler_calls = 0;
      const ThreadState before = ThreadState::now();
      std::vector<double> r(5000);
      EXPECT_EQ(draw_some_singly(row, s, 5000, r.data()), 0) << row.name;
      for (double x : r) ASSERT_TRUE(std::isfinite(x)) << row.name;
      EXPECT_TRUE(ThreadState::now() == before) << row.name;
      EXPECT_EQ(handler_calls, 0) << row.name;
    }
  }
  orx_tef_kernel_ClearErrStatus();
  orx_tef_kernel_ClearErrorCallBack();
}

// Logarithms of 0 carry tries of the tails beyond the ends.
TEST(Distributions, CountsOfExtremeUniformsStayInTheSupport) {
  const Stream s = extreme_stream(INT32_MAX);
  std::vector<int32_t> r(5000);
  const auto expect_within = [&](int32_t least, int32_t most) {
    const auto ends = std::minmax_element(r.begin(), r.end());
    EXPECT_GE(*ends.first, least);
    EXPECT_LE(*ends.second, most);
  };
  ASSERT_EQ(_kobiRngBinomial(0, s, 5000, r.data(), 60, 0.5), 0);
  expect_within(0, 60);
  ASSERT_EQ(_kobiRngHypergeometric(0, s, 5000, r.data(), 2000, 400, 500), 0);
  expect_within(0, 400);
  ASSERT_EQ(_kobiRngPoisson(0, s, 5000, r.data(), 50), 0);
  expect_within(0, INT32_MAX);
  ASSERT_EQ(_kobiRngNegbinomial(0, s, 5000, r.data(), 100, 0.2), 0);
  expect_within(0, INT32_MAX);
}

TEST(Distributions, FailuresArePassedOnAndTheThreadIsAsBefore) {
  orx_tef_kernel_SetErrorCallBack(counting_handler);
  for (const Row& row : all_rows())
    for (int numbers : {0, 1024, 2500, 19999}) {
      const Stream s = extreme_stream(numbers);
      const ThreadState before = ThreadState::now();
      std::vector<double> r(20001, kUntouched);
      EXPECT_EQ(row.draw(s, 20000, r.data()), kFailure) << row.name;
      EXPECT_TRUE(ThreadState::now() == before) << row.name;
    }
  orx_tef_kernel_ClearErrorCallBack();
}

TEST(Distributions, APairThatIsBegunSurvivesAFailure) {
  double both[2], first, second, more[5];
  ASSERT_EQ(_kobdRngGaussian(1, extreme_stream(INT32_MAX), 2, both, 0, 1), 0);
  const Stream s = extreme_stream(2);
  ASSERT_EQ(_kobdRngGaussian(1, s, 1, &first, 0, 1), 0);
  EXPECT_EQ(_kobdRngGaussian(1, s, 5, more, 0, 1), kFailure);
  ASSERT_EQ(_kobdRngGaussian(1, s, 1, &second, 0, 1), 0);
  EXPECT_EQ(first, both[0]);
  EXPECT_EQ(second, both[1]);
}

// Parameters and sizes are right in the image, the rest is not: numbers go on all the same.
TEST(Distributions, DamagedSetUpsAreMadeAnew) {
  constexpr size_t sizes[] = {0, 0, 0, 696, 1328, 544, 596}, parameters[] = {0, 0, 0, 8, 16, 16, 12};
  for (const Row& row : all_rows()) {
    if (row.chunk < 3 || row.chunk > 6) continue;
    const Stream s(KOB_BRNG_MRG32K3A);
    drawn(row, s, 300);
    const Stream sound(s);
    const size_t from = parameters[row.chunk];
    std::memset(static_cast<char*>(__kobSearchChunk(s, uint32_t(row.chunk))) + from, 0xFF,
                sizes[row.chunk] - from);
    std::vector<unsigned char> image(size_t(__kobGetStreamSize(s)));
    ASSERT_EQ(__kobSaveStreamM(s, image.data()), 0);
    KobStream* loaded = nullptr;
    ASSERT_EQ(__kobLoadStreamM(&loaded, image.data()), 0);
    EXPECT_TRUE(same_bits(drawn(row, Stream(loaded), 300), drawn(row, sound, 300))) << row.name;
  }
}

// The caller's rounding mode and treatment of denormals change no bit, and come back.
TEST(Distributions, ControlWordsOfTheCallerChangeNothing) {
  const unsigned usual = _mm_getcsr();
  for (const Row& row : all_rows()) {
    std::vector<double> expected(3000), r(3000);
    EXPECT_EQ(draw_some_singly(row, Stream(KOB_BRNG_MT19937), 3000, expected.data()), 0) << row.name;
    for (int rounding : {FE_DOWNWARD, FE_UPWARD, FE_TOWARDZERO})
      for (unsigned flush : {0u, 0x8040u}) {
        const Stream s(KOB_BRNG_MT19937);
        std::fesetround(rounding);
        _mm_setcsr(_mm_getcsr() | flush);
        const unsigned before = _mm_getcsr() & ~0x3Fu;
        draw_some_singly(row, s, 3000, r.data());
        const unsigned after = _mm_getcsr() & ~0x3Fu;
        const int rounding_after = std::fegetround();
        std::fesetround(FE_TONEAREST);
        _mm_setcsr(usual);
        EXPECT_TRUE(same_bits(r, expected)) << row.name << " " << rounding << " " << flush;
        EXPECT_EQ(after, before);
        EXPECT_EQ(rounding_after, rounding);
      }
  }
}

// Parameters and uniforms that flushing would make 0, by the caller's control words or by the thread's mode.
TEST(Distributions, FlushedDenormalsChangeNoSingleNumber) {
  const auto draw_all = [](std::vector<double>& r) {
    for (double beta : {1e-310, 1.0}) {
      double u;
      for (const double next : {0x1p-1060, 0.3}) {
        const auto draw = [&](const auto& generator) {
          EXPECT_EQ(generator(one_uniform(next)), 0);
          r.push_back(u);
        };
        draw([&](const Stream& s) { return _kobdRngExponential(0, s, 1, &u, 0, beta); });
        draw([&](const Stream& s) { return _kobdRngRayleigh(0, s, 1, &u, 0, beta); });
        draw([&](const Stream& s) { return _kobdRngCauchy(0, s, 1, &u, 0, beta); });
        draw([&](const Stream& s) { return _kobdRngGaussian(1, s, 1, &u, 0, beta); });
        draw([&](const Stream& s) { return _kobdRngGaussian(2, s, 1, &u, 0, beta); });
      }
      EXPECT_EQ(_kobdRngGaussian(1, two_uniforms(0.3, 0x1p-1060), 1, &u, 0, beta), 0);
      r.push_back(u);
    }
  };
  std::vector<double> expected, by_mode, by_control_word;
  draw_all(expected);
  const int mode = orx_tef_kernel_GetMode();
  orx_tef_kernel_SetMode(TEF_FLUSH_ON);
  draw_all(by_mode);
  orx_tef_kernel_SetMode(mode | TEF_FLUSH_OFF);
  const unsigned usual = _mm_getcsr();
  _mm_setcsr(usual | 0x8040);
  draw_all(by_control_word);
  _mm_setcsr(usual);
  EXPECT_TRUE(same_bits(by_mode, expected));
  EXPECT_TRUE(same_bits(by_control_word, expected));
}

TEST(Distributions, LaplaceOfASelectorInTheMiddleIsAbove) {
  double r[2];
  ASSERT_EQ(_kobdRngLaplace(0, one_uniform(0.5), 2, r, 1, 2), 0);
  EXPECT_NEAR(r[0], 1 + 2 * std::log(2.0), 1e-6);
  EXPECT_EQ(r[1], r[0]);
}

// Rounding can lift a uniform to 1 and its logarithm above 0; a registered generator may go farther.
TEST(Distributions, NoNumberIsBelowItsDisplacement) {
  const Stream s = one_uniform(1 + 0x1p-52);
  for (int n : {1, 2, 9}) {
    std::vector<double> r(n);
    const auto expect_displacement = [&] { EXPECT_EQ(r, std::vector<double>(n, 1)); };
    ASSERT_EQ(_kobdRngExponential(0, s, n, r.data(), 1, 2), 0);
    expect_displacement();
    ASSERT_EQ(_kobdRngRayleigh(0, s, n, r.data(), 1, 2), 0);
    expect_displacement();
    ASSERT_EQ(_kobdRngWeibull(0, s, n, r.data(), 1.5, 1, 2), 0);
    expect_displacement();
    ASSERT_EQ(_kobdRngLognormal(0, s, n, r.data(), 0, 1, 1, -2), 0);
    expect_displacement();
  }
}

TEST(Distributions, FailedAllocationsLeaveTheStreamUsable) {
  for (const Row& row : all_rows()) {
    const Stream s(KOB_BRNG_MT19937), t(KOB_BRNG_MT19937);
    const Stream tried(KOB_BRNG_MT19937);
    double r[8];
    const int allocations = fail_each_allocation(KOB_ERROR_MEM_FAILURE, [&] {
      const int status = row.draw(tried, 7, r);
      __kobDeleteChunks(tried);
      return status;
    });
    EXPECT_EQ(allocations > 0, row.chunk != 0) << row.name;
    for (long k = 1; k <= allocations; ++k) {
      orx_serv_fail_allocation(k);
      EXPECT_EQ(row.draw(s, 7, r), KOB_ERROR_MEM_FAILURE) << row.name;
      orx_serv_fail_allocation(0);
    }
    EXPECT_TRUE(same_bits(drawn(row, s, 50), drawn(row, t, 50))) << row.name;
  }
}

}  // namespace
