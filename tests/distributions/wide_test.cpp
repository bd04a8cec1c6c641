// Doubles of 53 bits and integers without bias.
#include <cfenv>
#include <cmath>

#include "support/models.hpp"

namespace {

// The generators that have words of 32 random bits, and those words of a stream two by two.
std::vector<Case> wide_cases() {
  std::vector<Case> cases;
  for (const Case& c : pseudo_cases())
    for (uint32_t family :
         {KOB_BRNG_MCG59, KOB_BRNG_R250, KOB_BRNG_MT19937, KOB_BRNG_MT2203, KOB_BRNG_SFMT19937})
      if ((c.id & ~0xFFFFFu) == family) cases.push_back(c);
  return cases;
}
std::vector<uint64_t> wide_words(const Case& c, int n) {
  std::vector<uint64_t> r(static_cast<size_t>(n));
  const Stream s = c.stream();
  if (c.id != KOB_BRNG_R250) {
    EXPECT_EQ(_kobiRngUniformBits64(0, s, n, r.data()), 0);
    return r;
  }
  const Words w = s.words(2 * n);
  for (size_t i = 0; i < r.size(); ++i) r[i] = w[2 * i] | uint64_t(w[2 * i + 1]) << 32;
  return r;
}

const int kCuts[] = {1, 2, 3, 0, 4, 5, -1, 1, 1023, 1024, 1025, 7, 2049};

// draw(stream, n, r) in cuts of all lengths gives the numbers of one call; nothing is written behind them.
template <class Number, class Draw>
void expect_in_cuts(const Case& c, const std::vector<Number>& expected, const Draw& draw) {
  const Stream s = c.stream();
  size_t done = 0;
  for (const int n : kCuts) {
    const size_t count = size_t(std::max(n, 0));
    std::vector<Number> r(count + 1, 77);
    ASSERT_EQ(draw(s, n, r.data()), 0);
    EXPECT_EQ(r.back(), 77);
    r.pop_back();
    ASSERT_TRUE(std::equal(r.begin(), r.end(), expected.begin() + ptrdiff_t(done))) << c.name << " " << n;
    done += count;
  }
}

TEST(Uniform53, IsTheUpperBitsOfTwoWords) {
  for (const Case& c : wide_cases())
    for (const auto& [a, b] : {std::pair(0.0, 1.0), {-3.5, 1e10}, {-2.0, 1.0}}) {
      std::vector<double> expected;
      for (const uint64_t w : wide_words(c, 6000))
        expected.push_back(double(w >> 11) * ((b - a) * 0x1p-53) + a);
      expect_in_cuts(c, expected, [a = a, b = b](KobStream* s, int n, double* r) {
        return orx_kob_dRngUniform53(0, s, n, r, a, b);
      });
    }
}

TEST(Uniform53, StaysBelowTheUpperEnd) {
  const Stream ones(KOB_BRNG_R250, Words(250, 0xFFFFFFFF));
  ones.state()[103] = 0;
  ones.state()[104] = 0;
  for (const auto& [a, b] : {std::pair(0.0, 1.0), {0x1p53, 0x1p53 + 2}, {-2.0, -1.0}, {-1.0, 0.0}}) {
    const Stream s = ones;
    double r;
    ASSERT_EQ(orx_kob_dRngUniform53(0, s, 1, &r, a, b), 0);
    EXPECT_TRUE(r < b && r >= a) << r;
  }
}

TEST(Uniform53, RoundingOfTheCallerChangesNothing) {
  std::vector<double> r(3001), expected(3001);
  for (const double b : {1.0, 7.25}) {
    ASSERT_EQ(orx_kob_dRngUniform53(0, Stream(KOB_BRNG_MT19937), 3001, expected.data(), 0, b), 0);
    for (const int rounding : {FE_DOWNWARD, FE_UPWARD, FE_TOWARDZERO}) {
      fesetround(rounding);
      const int status = orx_kob_dRngUniform53(0, Stream(KOB_BRNG_MT19937), 3001, r.data(), 0, b);
      fesetround(FE_TONEAREST);
      EXPECT_EQ(status, 0);
      EXPECT_EQ(r, expected) << rounding;
    }
  }
}

TEST(UniformExact, IsTheProductsUpperPart) {
  for (const Case& c : wide_cases())
    for (const auto& [a, b] :
         {std::pair(0, 1), {-7, 90}, {INT32_MIN, INT32_MAX}, {-1610612736, 1610612736}, {0, 1 << 30}}) {
      const uint64_t size = uint64_t(int64_t(b) - a);
      std::vector<int32_t> expected;
      for (const uint64_t w : wide_words(c, 6000)) {
        const uint64_t upper = (w >> 32) * size + ((w & 0xFFFFFFFF) * size >> 32);
        expected.push_back(int32_t(a + int64_t(upper >> 32)));
      }
      expect_in_cuts(c, expected, [a = a, b = b](KobStream* s, int n, int32_t* r) {
        return orx_kob_iRngUniformExact(0, s, n, r, a, b);
      });
    }
}

// The words 0 and 1 times 3 * 2^29 have themselves as fractions; 2^64 mod 3 * 2^29 is 2^30.
TEST(UniformExact, RefusesWordsOfTooSmallAFraction) {
  const auto stream_of = [](const Words& first) {
    Words x = random_rows(9)[0];
    while (x.size() < 250) x.push_back(x[x.size() - 32] * 2654435761u + 1);
    for (size_t i = 0; i < first.size(); ++i) x[i] = first[i] ^ x[i + 103];
    return Stream(KOB_BRNG_R250, x);
  };
  // Wanted, refused, wanted, refused at the end of four, and five more.
  const Words first = {1, 5, 0, 0, 1, 0, 0, 0, 9, 9, 8, 8, 7, 7, 6, 6, 5, 5};
  const Stream s = stream_of(first);
  int32_t r[8] = {77, 77, 77, 77, 77, 77, 77, 77};
  ASSERT_EQ(orx_kob_iRngUniformExact(0, s, 7, r, 0, 0x60000000), 0);
  std::vector<int32_t> expected;
  for (const uint64_t w :
       {5ull << 32 | 1, 1ull, 9ull << 32 | 9, 8ull << 32 | 8, 7ull << 32 | 7, 6ull << 32 | 6, 5ull << 32 | 5})
    expected.push_back(int32_t(((w >> 32) * 0x60000000u + ((w & 0xFFFFFFFF) * 0x60000000u >> 32)) >> 32));
  EXPECT_EQ(std::vector<int32_t>(r, r + 7), expected);
  EXPECT_EQ(r[7], 77);
  const Stream zeros(KOB_BRNG_R250, Words(250));
  EXPECT_EQ(orx_kob_iRngUniformExact(0, zeros, 7, r, 0, 3), KOB_ERROR_BAD_ARG);
  EXPECT_EQ(orx_kob_iRngUniformExact(0, zeros, 7, r, 0, 4), 0);
  // Refusals count while nothing comes between them: a long request meets many.
  std::vector<int32_t> many(100000);
  EXPECT_EQ(orx_kob_iRngUniformExact(0, Stream(KOB_BRNG_MT19937), 100000, many.data(), 0, 3), 0);
}

TEST(Wide, Statuses) {
  double d = 77;
  int32_t i = 77;
  for (uint32_t id : {KOB_BRNG_MCG31M1, KOB_BRNG_MRG32K3A, KOB_BRNG_WH, KOB_BRNG_SOBOL}) {
    const Stream s(id);
    EXPECT_EQ(orx_kob_dRngUniform53(0, s, 1, &d, 0, 1), KOB_ERROR_UNSUPPORTED_WORD_BITS);
    EXPECT_EQ(orx_kob_iRngUniformExact(0, s, 1, &i, 0, 1), KOB_ERROR_UNSUPPORTED_WORD_BITS);
    EXPECT_EQ(s.words(5), Stream(id).words(5)) << "the stream must not move";
  }
  const Stream s(KOB_BRNG_MT19937);
  for (const auto& [a, b] : {std::pair(1.0, 1.0), {2.0, 1.0}, {0.0, double(NAN)}})
    EXPECT_EQ(orx_kob_dRngUniform53(0, s, 1, &d, a, b), KOB_ERROR_BAD_ARG);
  EXPECT_EQ(orx_kob_iRngUniformExact(0, s, 1, &i, 5, 5), KOB_ERROR_BAD_ARG);
  EXPECT_EQ(d, 77);
  EXPECT_EQ(i, 77);
}

}  // namespace
