// Uniform reals, integers and bits; Bernoulli and geometric.
#include <algorithm>
#include <cerrno>
#include <cmath>

#include "orx/tef.h"
#include "reference.hpp"

namespace {

TEST(Uniform, AccurateModeKeepsTheInterval) {
  // The largest word is so near 1 that its real rounds up to b in single precision.
  const Stream s(KOB_BRNG_R250, Words(250, 0xFFFFFFFF));
  s.state()[103] = 0;
  float single;
  ASSERT_EQ(_kobsRngUniform(0, s, 1, &single, 0, 1), 0);
  EXPECT_EQ(single, 1.0f);
  for (const Reference& reference : references()) {
    const Stream plain(reference.id, reference.seed), accurate(reference.id, reference.seed);
    const int n = 2000;
    std::vector<double> d(n), e(n);
    std::vector<float> f(n), g(n);
    ASSERT_EQ(_kobdRngUniform(0, plain, n, d.data(), -5, 17), 0);
    ASSERT_EQ(_kobdRngUniform(1 << 30, accurate, n, e.data(), -5, 17), 0);
    EXPECT_EQ(d, e);
    // An interval of one step: every result is rounded to one of its ends, or would be beside it.
    const float low = 16777216, high = 16777218;
    ASSERT_EQ(_kobsRngUniform(0, plain, n, f.data(), low, high), 0);
    ASSERT_EQ(_kobsRngUniform(1 << 30, accurate, n, g.data(), low, high), 0);
    for (int i = 0; i < n; ++i) ASSERT_EQ(g[i], std::min(high, std::max(low, f[i])));
    // Ends in reverse: everything is clamped to b.
    ASSERT_EQ(_kobdRngUniform(1 << 30, accurate, 3, e.data(), 2, 1), 0);
    for (int i = 0; i < 3; ++i) EXPECT_EQ(e[i], 1.0);
  }
}

TEST(Uniform, IntegersAreWholePartsOfReals) {
  for (const Reference& reference : references()) {
    for (int n : {0, -5, 1, 2, 3, 1023, 1024, 1025, 3001}) {
      const Stream s(reference.id, reference.seed), t(reference.id, reference.seed);
      std::vector<int32_t> r(std::max(n, 0) + 1, 77);
      ASSERT_EQ(_kobiRngUniform(0, s, n, r.data(), -3, 8), 0);
      EXPECT_EQ(r.back(), 77);
      const std::vector<double> reals = t.reals(std::max(n, 0), -3.0, 8.0);
      for (int i = 0; i < n; ++i) ASSERT_EQ(r[i], int(std::floor(reals[i])));
      EXPECT_EQ(s.words(3), t.words(3));
    }
  }
  const Stream s(KOB_BRNG_MCG59);
  std::vector<int32_t> r(5000);
  ASSERT_EQ(_kobiRngUniform(0, s, 5000, r.data(), INT32_MIN, INT32_MAX), 0);
  EXPECT_LT(*std::min_element(r.begin(), r.end()), -2000000000);
  EXPECT_GT(*std::max_element(r.begin(), r.end()), 2000000000);
}

// What n words of 32 bits must be, from the generator's own words.
Words expected_bits(const Stream& s, int n) {
  Words raw = s.words(n), r;
  if (s.properties().WordSize != 8) return Words(raw.begin(), raw.begin() + n);
  for (int i = 0; i < n; ++i) r.push_back(uint32_t((raw[2 * i] | uint64_t(raw[2 * i + 1]) << 32) >> 27));
  return r;
}

TEST(Bits, BothWidthsInEveryCut) {
  for (const Reference& reference : references()) {
    const Stream s(reference.id, reference.seed);
    uint32_t word[4] = {};
    uint64_t wide = 0;
    const int support = _kobiRngUniformBits32(0, Stream(s), 1, word);
    EXPECT_EQ(_kobiRngUniformBits64(0, Stream(s), 1, &wide), support);
    if (support != 0) {
      EXPECT_EQ(support, KOB_ERROR_UNSUPPORTED_WORD_BITS) << reference.name;
      for (int n : {-1, 0, 5}) {
        EXPECT_EQ(_kobiRngUniformBits32(0, s, n, word), support);
        EXPECT_EQ(_kobiRngUniformBits64(0, s, n, &wide), support);
      }
      EXPECT_EQ(s.words(5), Stream(reference.id, reference.seed).words(5)) << "the stream must not move";
      continue;
    }
    const Words all = expected_bits(s, 40000);
    const Stream narrow(reference.id, reference.seed), broad(reference.id, reference.seed);
    size_t done = 0, done_wide = 0;
    for (int n : {3, 5, 0, -1, 1, 1, 1, 1, 2, 7, 4096, 2047, 2049, 2048, 1, 623, 5001}) {
      const int count = std::max(n, 0);
      Words r(count + 1, 0xA5A5A5A5);
      ASSERT_EQ(_kobiRngUniformBits32(0, narrow, n, r.data()), 0);
      ASSERT_TRUE(std::equal(r.begin(), r.end() - 1, all.begin() + done)) << reference.name << " " << n;
      EXPECT_EQ(r.back(), 0xA5A5A5A5u);
      done += count;
      std::vector<uint64_t> v(count + 1, 0xA5A5A5A5);
      ASSERT_EQ(_kobiRngUniformBits64(0, broad, n, v.data()), 0);
      for (int i = 0; i < count; ++i, done_wide += 2)
        ASSERT_EQ(v[i], all[done_wide] | uint64_t(all[done_wide + 1]) << 32) << reference.name << " " << n;
      EXPECT_EQ(v.back(), 0xA5A5A5A5u);
    }
  }
  const Stream s(KOB_BRNG_SFMT19937);
  uint32_t words[5];
  uint64_t wide[5];
  expect_clean_failures([&] {
    const int status = _kobiRngUniformBits32(0, s, 5, words);
    __kobDeleteChunks(s);
    return status;
  });
  expect_clean_failures([&] {
    const int status = _kobiRngUniformBits64(0, s, 5, wide);
    __kobDeleteChunks(s);
    return status;
  });
}

TEST(Bernoulli, ComparesWithAUniformOfSinglePrecision) {
  const Stream extreme(KOB_BRNG_R250, Words(250, 0xFFFFFFFF));
  extreme.state()[103] = 0;
  int32_t one = -1;
  ASSERT_EQ(_kobiRngBernoulli(0, extreme, 1, &one, 1.0), 0);  // a uniform that rounds to 1
  EXPECT_EQ(one, 1);
  for (const Reference& reference : references())
    for (double p : {0.0, 1e-3, 0.3, 0.5, 0.999, 1.0}) {
      const Stream s(reference.id, reference.seed), t(reference.id, reference.seed);
      const int n = 3001;
      std::vector<int32_t> r(n + 1, 77);
      ASSERT_EQ(_kobiRngBernoulli(0, s, n, r.data(), p), 0);
      const std::vector<float> u = t.reals<float>(n);
      for (int i = 0; i < n; ++i) ASSERT_EQ(r[i], p == 1 || u[i] < float(p)) << p;
      EXPECT_EQ(r[n], 77);
      EXPECT_EQ(_kobiRngBernoulli(0, s, -1, r.data() + n, p), 0);
      EXPECT_EQ(r[n], 77);
    }
}

// ---- geometric, and the vector math that it shares with other distributions ----

int counting_handler_calls;
int counting_handler(TefErrorContext*) { return ++counting_handler_calls, 0; }

TEST(Geometric, IsInversionInSinglePrecision) {
  for (const Reference& reference : references())
    for (double p : {0.01, 0.3, 0.9}) {
      const Stream s(reference.id, reference.seed), t(reference.id, reference.seed);
      const int n = 2500;
      std::vector<int32_t> r(n + 1, 77);
      ASSERT_EQ(_kobiRngGeometric(0, s, n, r.data(), p), 0);
      EXPECT_EQ(r[n], 77);
      const std::vector<float> u = t.reals<float>(n);
      double sum = 0;
      for (int i = 0; i < n; ++i) {
        if (u[i] == 0) continue;
        // The logarithm is of the fast class: where the quotient is near an integer it may fall on either
        // side.
        const double exact = std::log(double(u[i])) / std::log1p(-p);
        ASSERT_LE(r[i], std::floor(exact * (1 + 1e-3) + 1e-6)) << u[i];
        ASSERT_GE(r[i], std::floor(exact * (1 - 1e-3) - 1e-6)) << u[i];
        sum += r[i];
      }
      const double mean = (1 - p) / p, deviation = std::sqrt(1 - p) / p;
      EXPECT_NEAR(sum / n, mean, 5 * deviation / std::sqrt(double(n))) << reference.name;
    }
}

TEST(Geometric, AUniformOfZeroIsNoError) {
  const Stream s(KOB_BRNG_R250, Words(250));  // nothing but zeros
  orx_tef_kernel_ClearErrStatus();
  orx_tef_kernel_SetErrorCallBack(counting_handler);
  errno = 0;
  std::vector<int32_t> r(100);
  ASSERT_EQ(_kobiRngGeometric(0, s, 100, r.data(), 0.5), 0);
  EXPECT_EQ(r, std::vector<int32_t>(100, 149));  // 103.28 / ln 2
  EXPECT_EQ(counting_handler_calls, 0);
  EXPECT_EQ(errno, 0);
  orx_tef_kernel_ClearErrorCallBack();
}

// A generator whose third call fails.
int calls_left;
int failing_init(int, KobStream*, int, const uint32_t*) { return 0; }
template <class Real>
int failing_reals(KobStream*, int n, Real r[], Real, Real) {
  if (calls_left-- == 0) return KOB_ERROR_TRNG_FAILED;
  std::fill(r, r + n, Real(0));
  return 0;
}
int failing_words(KobStream*, int, uint32_t*) { return KOB_ERROR_TRNG_FAILED; }

TEST(Failure, IsPassedOnAndModeAndHandlerAreAsBefore) {
  const KobBrngProperties p = {
      16, 1, 1, 4, 32, failing_init, failing_reals<float>, failing_reals<double>, failing_words};
  const int id = __kobRegisterBrng(&p);
  ASSERT_GT(id, 0);
  const Stream s{uint32_t(id)};
  orx_tef_kernel_SetErrorCallBack(counting_handler);
  for (int mode :
       {TEF_HA | TEF_ERRMODE_DEFAULT, TEF_LA | TEF_ERRMODE_IGNORE, TEF_EP | TEF_ERRMODE_ERRNO | TEF_FLUSH_ON})
    for (int calls : {0, 2, 100}) {
      orx_tef_kernel_SetMode(mode);
      const int before = orx_tef_kernel_GetMode();
      calls_left = calls;
      std::vector<int32_t> r(5000, 77);
      EXPECT_EQ(_kobiRngGeometric(0, s, 5000, r.data(), 0.5), calls < 100 ? KOB_ERROR_TRNG_FAILED : 0);
      EXPECT_EQ(r[0] != 77, calls > 0);  // what was made before the failure stays
      EXPECT_EQ(r[2048] == 77, calls < 100);
      EXPECT_EQ(orx_tef_kernel_GetErrorCallBack(), counting_handler);
      // The flush field cannot be emptied again, but "off" acts like an empty one.
      EXPECT_EQ(orx_tef_kernel_GetMode() & ~TEF_FLUSH_OFF, before & ~TEF_FLUSH_OFF);
    }
  orx_tef_kernel_SetMode(TEF_HA | TEF_ERRMODE_DEFAULT | TEF_FLUSH_OFF);
  orx_tef_kernel_ClearErrorCallBack();
  calls_left = 0;
  int32_t r = 77;
  uint32_t word;
  EXPECT_EQ(_kobiRngUniform(0, s, 1, &r, 0, 9), KOB_ERROR_TRNG_FAILED);
  calls_left = 0;
  EXPECT_EQ(_kobiRngBernoulli(0, s, 1, &r, 0.5), KOB_ERROR_TRNG_FAILED);
  EXPECT_EQ(_kobiRngUniformBits(0, s, 1, &word), KOB_ERROR_TRNG_FAILED);
  EXPECT_EQ(r, 77);
}

}  // namespace
