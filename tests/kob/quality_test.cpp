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

// Pairs (u[i], v[i]) in the cells of a square.
double pairs(const Numbers& u, const Numbers& v) {
  std::vector<int> counts(64 * 64);
  for (size_t i = 0; i < u.size(); ++i) ++counts[size_t(u[i] * 64) * 64 + size_t(v[i] * 64)];
  return uniform_cells_z(counts);
}

double serial(const Numbers& u) {
  Numbers even, odd;
  for (size_t i = 0; i + 1 < u.size(); i += 2) {
    even.push_back(u[i]);
    odd.push_back(u[i + 1]);
  }
  return pairs(even, odd);
}

// Numbers between two visits of [0, 1/16).
double gaps(const Numbers& u) {
  constexpr int kLongest = 64;
  constexpr double p = 1.0 / 16;
  std::vector<double> probabilities(kLongest + 1);
  for (int i = 0; i < kLongest; ++i) probabilities[i] = p * std::pow(1 - p, i);
  probabilities[kLongest] = std::pow(1 - p, kLongest);
  std::vector<int> counts(kLongest + 1);
  int gap = 0;
  for (double x : u) {
    if (x < p) {
      ++counts[size_t(std::min(gap, kLongest))];
      gap = 0;
    } else {
      ++gap;
    }
  }
  return chi_square_z(counts, probabilities);
}

std::array<double, 3> figures(const Numbers& u) { return {frequency(u), serial(u), gaps(u)}; }

void expect_random(const Numbers& u, const std::string& name) {
  for (double z : figures(u)) EXPECT_LT(std::fabs(z), 5) << name;
}

void expect_unrelated(const Numbers& u, const Numbers& v, const std::string& name) {
  EXPECT_LT(std::fabs(pairs(u, v)), 5) << name;
}

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

TEST(Quality, EveryGenerator) {
  for (uint32_t id : {KOB_BRNG_MCG31M1, KOB_BRNG_R250, KOB_BRNG_MRG32K3A, KOB_BRNG_MCG59, KOB_BRNG_MT19937,
                      KOB_BRNG_SFMT19937})
    for (uint32_t seed : {1u, 12345u, 0x80000001u})
      expect_random(Stream(id, {seed}).reals(kCount),
                    std::to_string(id >> 20) + " seed " + std::to_string(seed));
}

TEST(Quality, SubGenerators) {
  const struct {
    uint32_t id;
    std::vector<uint32_t> numbers;
  } families[] = {{KOB_BRNG_WH, {0, 1, 2, 100, 101, 271, 272}}};
  for (const auto& family : families) {
    Numbers last;
    for (uint32_t k : family.numbers) {
      const Numbers u = Stream(family.id + k, {4321}).reals(kCount);
      const std::string name = std::to_string(family.id >> 20) + " sub-generator " + std::to_string(k);
      expect_random(u, name);
      if (!last.empty()) expect_unrelated(last, u, name + " and the one before");
      last = u;
    }
  }
}

TEST(Quality, PartsOfALeapfrog) {
  for (uint32_t id : {uint32_t(KOB_BRNG_MCG31M1), uint32_t(KOB_BRNG_MCG59), KOB_BRNG_WH + 5u})
    for (int parts : {2, 3, 10, 16}) {
      Numbers last;
      for (uint32_t k = 0; k < 2; ++k) {
        const Stream s(id, {20231});
        ASSERT_EQ(__kobLeapfrogStream(s, k, parts), 0);
        const Numbers u = s.reals(kCount);
        const std::string name =
            std::to_string(id >> 20) + " part " + std::to_string(k) + " of " + std::to_string(parts);
        expect_random(u, name);
        if (k > 0) expect_unrelated(last, u, name + " and the one before");
        last = u;
      }
    }
}

}  // namespace
