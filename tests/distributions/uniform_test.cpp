// Uniform reals, integers and bits; Bernoulli and geometric.
#include <cmath>

#include "support/models.hpp"

namespace {

// A register whose first number is the largest word: its real rounds up to 1 in single precision.
Stream all_ones() {
  Stream s(KOB_BRNG_R250, Words(250, 0xFFFFFFFF));
  s.state()[103] = 0;
  return s;
}

// On an interval of one step every result is rounded to one of its ends, or would be beside it.
template <class Real>
void expect_clamped(int (*draw)(int, KobStream*, int, Real*, Real, Real), Real low, Real high) {
  constexpr int n = 2000, accurately = 1 << 30;
  for (const Case& c : pseudo_cases())
    for (const auto& [a, b] : {std::pair<Real, Real>(low, high), {Real(-5), Real(17)}}) {
      const Stream plain = c.stream(), accurate = c.stream();
      Real f[n], g[n];
      ASSERT_EQ(draw(0, plain, n, f, a, b), 0);
      ASSERT_EQ(draw(accurately, accurate, n, g, a, b), 0);
      for (int i = 0; i < n; ++i) ASSERT_EQ(g[i], std::min(b, std::max(a, f[i]))) << c.name;
    }
  Real r[3];
  ASSERT_EQ(draw(accurately, Stream(KOB_BRNG_MT19937), 3, r, 2, 1), 0);
  EXPECT_EQ(std::count(r, r + 3, Real(1)), 3);  // ends in reverse: everything is clamped to b
}

TEST(Uniform, AccurateModeKeepsTheInterval) {
  float single;
  ASSERT_EQ(_kobsRngUniform(0, all_ones(), 1, &single, 0, 1), 0);
  EXPECT_EQ(single, 1.0f);
  expect_clamped<float>(_kobsRngUniform, 0x1p24f, 0x1p24f + 2);
  expect_clamped<double>(_kobdRngUniform, 0x1p53, 0x1p53 + 2);
}

// Requests of several lengths to draw(stream, n, r), each against expected(uniform) of the generator's reals
// on [a, b); nothing is written behind them.
template <class Real, class Draw, class Expected>
void expect_of_uniforms(Real a, Real b, const Draw& draw, const Expected& expected) {
  for (const Case& c : pseudo_cases()) {
    SCOPED_TRACE(c.name);
    const Stream s = c.stream(), t = c.stream();
    for (int n : {0, -5, 1, 2, 3, 1023, 1024, 1025, 3001}) {
      std::vector<int32_t> r(size_t(std::max(n, 0)) + 1, 77);
      ASSERT_EQ(draw(s, n, r.data()), 0);
      const std::vector<Real> u = t.reals<Real>(std::max(n, 0), a, b);
      for (int i = 0; i < n; ++i) ASSERT_TRUE(expected(r[i], u[i])) << r[i] << " of " << u[i];
      EXPECT_EQ(r.back(), 77);
    }
  }
}

TEST(Uniform, IntegersAreWholePartsOfReals) {
  for (const auto& [a, b] : {std::pair(-3, 8), {INT32_MIN, INT32_MAX}})
    expect_of_uniforms<double>(
        a, b, [a = a, b = b](KobStream* s, int n, int32_t* r) { return _kobiRngUniform(0, s, n, r, a, b); },
        [](int32_t r, double u) { return r == std::floor(u); });
}

TEST(Bernoulli, ComparesWithAUniformOfSinglePrecision) {
  int32_t one = -1;
  ASSERT_EQ(_kobiRngBernoulli(0, all_ones(), 1, &one, 1.0), 0);  // a uniform that rounds to 1
  EXPECT_EQ(one, 1);
  for (double p : {0.0, 1e-3, 0.3, 0.999, 1.0})
    expect_of_uniforms<float>(
        0, 1, [p](KobStream* s, int n, int32_t* r) { return _kobiRngBernoulli(0, s, n, r, p); },
        [p](int32_t r, float u) { return r == (p == 1 || u < float(p)); });
}

// The logarithm is of the fast class: where the quotient is near an integer it may fall on either side.
TEST(Geometric, IsInversionInSinglePrecision) {
  for (double p : {0.01, 0.3, 0.9})
    expect_of_uniforms<float>(
        0, 1, [p](KobStream* s, int n, int32_t* r) { return _kobiRngGeometric(0, s, n, r, p); },
        [p](int32_t r, float u) {
          const double exact = std::log(double(u)) / std::log1p(-p);
          return u == 0 ||
                 (r <= std::floor(exact * (1 + 1e-3) + 1e-6) && r >= std::floor(exact * (1 - 1e-3) - 1e-6));
        });
}

// What n words of 32 bits must be, from the generator's own words; nothing where there are none.
Words expected_bits(const Stream& s, int n) {
  const uint32_t family = uint32_t(__kobGetStreamStateBrng(s)) & ~0xFFFFFu;
  const Words raw = s.words(n);
  if (family == KOB_BRNG_MT19937 || family == KOB_BRNG_MT2203 || family == KOB_BRNG_SFMT19937) return raw;
  Words r;
  for (size_t i = 0; family == KOB_BRNG_MCG59 && i < raw.size(); i += 2)
    r.push_back(uint32_t((raw[i] | uint64_t(raw[i + 1]) << 32) >> 27));
  return r;
}

TEST(Bits, BothWidthsInEveryCut) {
  std::vector<Case> cases = pseudo_cases();
  for (uint32_t id : {KOB_BRNG_SOBOL, KOB_BRNG_NIEDERR}) cases.push_back({"quasi", id, {3}, nullptr});
  for (const Case& c : cases) {
    const Stream narrow = c.stream(), broad = c.stream();
    const Words all = expected_bits(c.stream(), 40000);
    const int support = all.empty() ? KOB_ERROR_UNSUPPORTED_WORD_BITS : 0;
    size_t done = 0, done_wide = 0;
    for (int n : {3, 5, 0, -1, 1, 1, 1, 1, 2, 7, 4096, 2047, 2049, 2048, 1, 623, 5001}) {
      const int count = all.empty() ? 0 : std::max(n, 0);
      Words r(count + 1, 0xA5A5A5A5);
      std::vector<uint64_t> v(count + 1, 0xA5A5A5A5);
      ASSERT_EQ(_kobiRngUniformBits32(0, narrow, n, r.data()), support) << c.name;
      ASSERT_EQ(_kobiRngUniformBits64(0, broad, n, v.data()), support) << c.name;
      for (int i = 0; i < count; ++i, ++done, done_wide += 2) {
        ASSERT_EQ(r[i], all[done]) << c.name << " " << n;
        ASSERT_EQ(v[i], all[done_wide] | uint64_t(all[done_wide + 1]) << 32) << c.name << " " << n;
      }
      EXPECT_EQ(r.back(), 0xA5A5A5A5u);
      EXPECT_EQ(v.back(), 0xA5A5A5A5u);
    }
    EXPECT_TRUE(!all.empty() || narrow.words(5) == c.stream().words(5)) << "the stream must not move";
  }
  const Stream s(KOB_BRNG_SFMT19937);
  for (bool wide : {false, true})
    fail_each_allocation(KOB_ERROR_MEM_FAILURE, [&] {
      uint64_t r[5];
      const int status = wide ? _kobiRngUniformBits64(0, s, 5, r)
                              : _kobiRngUniformBits32(0, s, 5, reinterpret_cast<uint32_t*>(r));
      __kobDeleteChunks(s);
      return status;
    });
}

TEST(Geometric, ZeroUniformsAndTinyProbabilitiesStayCounts) {
  const Stream zeros(KOB_BRNG_R250, Words(250));
  std::vector<int32_t> r(100);
  ASSERT_EQ(_kobiRngGeometric(0, zeros, 100, r.data(), 0.5), 0);
  EXPECT_EQ(r, std::vector<int32_t>(100, 149));  // 103.28 / ln 2
  const Stream ones(KOB_BRNG_R250,
                    Words(250, 0xFFFFFFFF));  // in single precision a uniform of 1, whose logarithm is 0
  ones.state()[103] = 0;
  for (double p : {1e-9, 1e-12, 1e-17, 1e-300}) {
    ASSERT_EQ(_kobiRngGeometric(0, Stream(ones), 1, r.data(), p), 0);
    EXPECT_EQ(r[0], 0) << p;
    const Stream s(KOB_BRNG_MT19937);
    r.resize(20001);
    ASSERT_EQ(_kobiRngGeometric(0, s, 20001, r.data(), p), 0);
    EXPECT_GE(*std::min_element(r.begin(), r.end()), 0) << p;
    // P(X >= 2^31 - 1) = (1 - p)^(2^31 - 1), within four deviations.
    const double share = std::exp(-p * 2147483647), deviation = std::sqrt(20001 * share * (1 - share));
    EXPECT_NEAR(double(std::count(r.begin(), r.end(), INT32_MAX)), 20001 * share, 4 * deviation + 1) << p;
  }
}

// The largest state of MCG59 is rounded to a uniform of 1.
TEST(Uniform, IntegersNeverReachTheUpperEnd) {
  int32_t r[8];
  for (const auto& [a, b] :
       {std::pair(0, 10), {-5, -4}, {INT32_MIN, INT32_MAX}, {INT32_MAX - 1, INT32_MAX}}) {
    const Stream s(KOB_BRNG_MCG59, {0xFFFFFFFF, 0x7FFFFFF});
    ASSERT_EQ(_kobiRngUniform(0, s, 8, r, a, b), 0);
    EXPECT_EQ(r[0], b - 1);
    for (int32_t x : r) EXPECT_TRUE(a <= x && x < b) << x;
  }
}

// A stream of zeros that fails after so many of its blocks of 1024.
int blocks_left;
int failing_refill(KobStream*, uint32_t*, float*, uint32_t*, uint32_t* room, uint32_t*) {
  return --blocks_left > 0 ? int(*room) : -1;
}

TEST(Failure, LeavesWhatWasMadeBefore) {
  std::vector<float> zeros(1024);
  for (int blocks : {1, 2, 100}) {
    KobStream* stream = nullptr;
    ASSERT_EQ(__kobsNewAbstractStream(&stream, 1024, zeros.data(), 0, 1, failing_refill), 0);
    const Stream s(stream);
    const auto draw = [&, blocks](auto generator, auto... arguments) {
      std::vector<int32_t> r(5000, 77);
      blocks_left = blocks;
      const int status = generator(0, Stream(s), 5000, r.data(), arguments...);
      return std::pair(status, int(std::find(r.begin(), r.end(), 77) - r.begin()));
    };
    const int status = blocks < 100 ? KOB_ERROR_ABSTRACT_CALLBACK_FAILED : 0;
    EXPECT_EQ(draw(_kobiRngGeometric, 0.5), std::pair(status, std::min(blocks * 1024, 5000)));
    EXPECT_EQ(draw(_kobiRngBernoulli, 0.5).first, status);
    EXPECT_EQ(draw(_kobiRngUniform, 0, 9), std::pair(int(KOB_ERROR_ABSTRACT_WRONG_KIND), 0));
  }
}

}  // namespace
