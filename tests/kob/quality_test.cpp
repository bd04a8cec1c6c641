// Short statistical tests: frequency, serial pairs and gaps, of every generator, of sub-generators and of the
// parts that a leapfrog makes, and of such streams against each other. Seeds are fixed, so a result never
// changes by itself; |z| > 5 happens by chance once in two million.
#include <array>
#include <cmath>
#include <numeric>

#include "stream.hpp"

namespace {

using Numbers = std::vector<double>;
constexpr int kCount = 1 << 18;

// Chi-square of counts against expected frequencies as a standard normal deviate (Wilson and Hilferty).
double chi_square_z(const std::vector<int>& counts, const std::vector<double>& probabilities) {
  const double n = std::accumulate(counts.begin(), counts.end(), 0.0);
  double chi2 = 0;
  for (size_t i = 0; i < counts.size(); ++i) {
    const double expected = n * probabilities[i];
    chi2 += (counts[i] - expected) * (counts[i] - expected) / expected;
  }
  const double k = double(counts.size()) - 1;
  return (std::cbrt(chi2 / k) - (1 - 2 / (9 * k))) / std::sqrt(2 / (9 * k));
}

double uniform_cells_z(const std::vector<int>& counts) {
  return chi_square_z(counts, std::vector<double>(counts.size(), 1.0 / double(counts.size())));
}

double frequency(const Numbers& u) {
  std::vector<int> counts(4096);
  for (double x : u) ++counts[size_t(x * 4096)];
  return uniform_cells_z(counts);
}

// Pairs (u[i], v[i + lag]), i = 0, step, 2 step, ..., in the cells of a square.
double pairs(const Numbers& u, const Numbers& v, size_t lag = 0, size_t step = 1) {
  std::vector<int> counts(64 * 64);
  for (size_t i = 0; i + lag < u.size(); i += step)
    ++counts[size_t(u[i] * 64) * 64 + size_t(v[i + lag] * 64)];
  return uniform_cells_z(counts);
}
double serial(const Numbers& u) { return pairs(u, u, 1, 2); }

// Numbers between two visits of [0, 1/16).
double gaps(const Numbers& u) {
  constexpr int kLongest = 64;
  constexpr double p = 1.0 / 16;
  std::vector<double> probabilities(kLongest + 1);
  for (int i = 0; i < kLongest; ++i) probabilities[i] = p * std::pow(1 - p, i);
  probabilities[kLongest] = std::pow(1 - p, kLongest);
  std::vector<int> counts(kLongest + 1);
  int gap = 0;
  for (double x : u)
    if (x < p)
      ++counts[size_t(std::min(std::exchange(gap, 0), kLongest))];
    else
      ++gap;
  return chi_square_z(counts, probabilities);
}

std::array<double, 3> figures(const Numbers& u) { return {frequency(u), serial(u), gaps(u)}; }

TEST(Quality, TheTestsThemselvesTellBadFromGood) {
  Numbers even_steps(kCount), alternating(kCount);
  const Numbers good = Stream(KOB_BRNG_MT19937).reals(kCount);
  for (int i = 0; i < kCount; ++i) {
    even_steps[i] = std::fmod(i * 0.6180339887498949, 1.0);
    alternating[i] = (good[i] + i % 2) / 2;
  }
  for (double z : figures(even_steps)) EXPECT_GT(std::fabs(z), 5);
  EXPECT_GT(std::fabs(serial(alternating)), 5);
  EXPECT_GT(std::fabs(gaps(alternating)), 5);
  EXPECT_GT(std::fabs(pairs(good, good)), 5);
}

// A stream for each of several numbers: each by itself, and each against the one before.
template <class Make>
void expect_random_streams(const std::string& name, const std::vector<uint32_t>& numbers, const Make& make) {
  Numbers last;
  for (uint32_t k : numbers) {
    SCOPED_TRACE(name + " " + std::to_string(k));
    const Numbers u = make(k).reals(kCount);
    for (double z : figures(u)) EXPECT_LT(std::fabs(z), 5);
    EXPECT_LT(last.empty() ? 0 : std::fabs(pairs(last, u)), 5) << "with the one before";
    last = u;
  }
}

TEST(Quality, Generators) {
  for (uint32_t id : {KOB_BRNG_R250, KOB_BRNG_MRG32K3A, KOB_BRNG_MT19937, KOB_BRNG_SFMT19937,
                      KOB_BRNG_MCG31M1, KOB_BRNG_MCG59})
    expect_random_streams(std::to_string(id >> 20) + " of seed", {1, 12345, 0x80000001},
                          [&](uint32_t seed) { return Stream(id, {seed}); });
}

TEST(Quality, SubGenerators) {
  const auto sub_generator = [](uint32_t k) { return Stream(k, {4321}); };
  const uint32_t wh = KOB_BRNG_WH, mt = KOB_BRNG_MT2203;
  expect_random_streams("WH", {wh, wh + 1, wh + 2, wh + 100, wh + 101, wh + 271, wh + 272}, sub_generator);
  expect_random_streams("MT2203", {mt, mt + 1, mt + 2, mt + 3000, mt + 6022, mt + 6023}, sub_generator);
}

TEST(Quality, PartsOfALeapfrog) {
  for (uint32_t id : {uint32_t(KOB_BRNG_MCG31M1), uint32_t(KOB_BRNG_MCG59), KOB_BRNG_WH + 5u})
    for (int parts : {2, 3, 10, 16})
      expect_random_streams(std::to_string(id >> 20) + " in " + std::to_string(parts) + ", part", {0, 1},
                            [&](uint32_t k) {
                              Stream s(id, {20231});
                              EXPECT_EQ(__kobLeapfrogStream(s, k, parts), 0);
                              return s;
                            });
}

}  // namespace
