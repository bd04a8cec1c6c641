// Uniform reals, integers and bits; Bernoulli and geometric.
#include <algorithm>
#include <cmath>

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

}  // namespace
