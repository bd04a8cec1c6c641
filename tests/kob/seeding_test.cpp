// What pseudo generators make of their seeds, published sequences, and the modular powers behind the jumps.
#include <cmath>

#include "support/models.hpp"

namespace {

Words state_words(uint32_t id, const Words& seed, size_t count) {
  const Stream s(id, seed);
  return Words(s.state(), s.state() + count);
}

TEST(Seeding, CongruentialAndCombinedGenerators) {
  constexpr uint32_t a = 1132489760, m1 = 4294967087, m2 = 4294944443;
  const struct {
    uint32_t id;
    Words seed, state;
  } cases[] = {{KOB_BRNG_MCG31M1, {}, {1, a}},
               {KOB_BRNG_MCG31M1, {0}, {1, a}},
               {KOB_BRNG_MCG31M1, {0x7FFFFFFF}, {1, a}},
               {KOB_BRNG_MCG31M1, {0x80000000}, {1, a}},
               {KOB_BRNG_MCG31M1, {0xFFFFFFFF, 5}, {1, a}},
               {KOB_BRNG_MCG31M1, {0x80000005}, {6, a}},
               {KOB_BRNG_MCG59, {}, {1, 0, 0x9B23C5FD, 0x11376}},
               {KOB_BRNG_MCG59, {0}, {1, 0}},
               {KOB_BRNG_MCG59, {0, 0x8000000}, {1, 0}},
               {KOB_BRNG_MCG59, {6}, {6, 0}},
               {KOB_BRNG_MCG59, {0, 0xFFFFFFFF, 9}, {0, 0x7FFFFFF}},
               {KOB_BRNG_WH, {}, {1, 1, 1, 1, 125, 117, 127, 126}},
               {KOB_BRNG_WH + 272, {16766363, 16766358}, {1, 16766358, 1, 1, 126, 127, 125, 124}},
               {KOB_BRNG_WH, {16770648, 16770643, 0, 0xFFFFFFFF, 7}, {1, 1, 1, 0xFFFFFFFF % 16770617}},
               {276, {}, {1, 1, 1, 1, 126, 127, 125, 124}},
               {KOB_BRNG_MRG32K3A, {}, Words(6, 1)},
               {KOB_BRNG_MRG32K3A, {m1, 0, 0}, {1, 0, 0, 1, 1, 1}},
               {KOB_BRNG_MRG32K3A, {m1, m1 + 1, m1 - 1, m2, m2 + 1, m2 - 1}, {0, 1, m1 - 1, 0, 1, m2 - 1}},
               {KOB_BRNG_MRG32K3A, {5, 6, 7, 0, m2, 0, 9}, {5, 6, 7, 1, 0, 0}}};
  for (const auto& c : cases)
    EXPECT_EQ(state_words(c.id, c.seed, c.state.size()), c.state) << testing::PrintToString(c.seed);
}

TEST(Seeding, R250) {
  const auto filled = [](uint32_t s) {
    Words x(250);
    uint32_t power = 1;
    for (uint32_t& word : x) word = s * (power *= 69069);
    for (int j = 0; j < 32; ++j) {
      uint32_t& word = x[3 + 7 * j];
      word |= 0x80000000u >> j;
      for (int bit = 0; bit < j; ++bit) word &= ~(0x80000000u >> bit);
    }
    return x;
  };
  const Words own = random_rows(250)[0], zeros(250);
  for (const auto& [seed, register_words] : {std::pair(Words{}, filled(1)),
                                             {{0}, filled(1)},
                                             {Words(249, 12), filled(12)},
                                             {Words(250, 3), Words(250, 3)},
                                             {zeros, zeros}}) {
    Words expected = register_words;
    expected.insert(expected.end(), {0, 103});
    EXPECT_EQ(state_words(KOB_BRNG_R250, seed, 252), expected);
  }
}

TEST(Seeding, TwistersUseAllOfTheKey) {
  Words longer(2000);
  for (uint32_t i = 0; i < longer.size(); ++i) longer[i] = i * 2654435761u;
  std::vector<Words> keys = {{}, {5489}, longer};
  for (size_t length : {68, 69, 70, 623, 624, 625}) keys.push_back(Words(length, 9));
  for (uint32_t i = 0; i < 32; ++i) keys.push_back({i});  // SFMT's states of both parities
  for (const Words& key : keys) {
    const auto with_index = [](const Words& words) {  // the first request makes new words
      Words state(words.end() - std::min<ptrdiff_t>(624, ptrdiff_t(words.size())), words.end());
      state.push_back(uint32_t(state.size()));
      return state;
    };
    EXPECT_EQ(state_words(KOB_BRNG_MT19937, key, 625), with_index(twister_state(624, key))) << key.size();
    EXPECT_EQ(state_words(KOB_BRNG_MT2203 + 5, key, 70), with_index(twister_state(69, key))) << key.size();
    EXPECT_EQ(state_words(KOB_BRNG_SFMT19937, key, 625), with_index(Sfmt(key).w_)) << key.size();
  }
}

TEST(Seeding, PublishedSequences) {
  EXPECT_EQ(Stream(KOB_BRNG_MT19937, {0x123, 0x234, 0x345, 0x456}).words(3),
            (Words{1067595299, 955945823, 477289528}));
  Words sfmt = Stream(KOB_BRNG_SFMT19937, {0x1234, 0x5678, 0x9abc, 0xdef0}).words(1);
  sfmt.resize(3);
  EXPECT_EQ(sfmt, (Words{2920711183, 3885745737, 3501893680}));
  const std::vector<double> u = Stream(KOB_BRNG_MRG32K3A, Words(6, 12345)).reals(5);
  const double published[] = {0.1270111220, 0.3185275654, 0.3091860156, 0.8258468629, 0.2216299158};
  for (int i = 0; i < 5; ++i) EXPECT_NEAR(u[i], published[i], 1e-9);
}

TEST(ModularPowers, AgreeWithStepping) {
  std::mt19937 random(3);
  for (uint32_t round = 0; round < 300; ++round) {
    const uint32_t m = round % 3 ? random() | 1 : 0xFFFFFFFF - round, a = uint32_t(random()),
                   steps = round % 50;
    const uint64_t wide = uint64_t(a) << 27 | uint32_t(random());
    uint32_t v[3], row[3];
    for (int i = 0; i < 3; ++i) v[i] = uint32_t(random() % m), row[i] = uint32_t(random() % m);
    uint64_t power = 1 % m, power31 = 1, power59 = 1;
    Words stepped(v, v + 3);
    for (uint32_t i = 0; i < steps; ++i) {
      power = power * (a % m) % m;
      power31 = power31 * (a % 0x7FFFFFFF) % 0x7FFFFFFF;
      power59 = power59 * wide & ((uint64_t(1) << 59) - 1);
      uint64_t top = 0;
      for (int j = 0; j < 3; ++j) top = (top + uint64_t(row[j]) * stepped[j] % m) % m;
      stepped = {uint32_t(top), stepped[0], stepped[1]};
    }
    __kobiVect3PowMod(v, row, m, steps, 0);
    EXPECT_EQ(__kobiPowMod(a, steps, 0, m), power);
    EXPECT_EQ(__kobiPowMod2P31M1(a, steps, 0), power31);
    EXPECT_EQ(__kobiPowMod2P59(uint32_t(wide), uint32_t(wide >> 32), steps, 0), power59);
    EXPECT_EQ(Words(v, v + 3), stepped) << m << " " << steps;
  }
  // Both words of the exponent: Fermat, and the order of the units mod 2^59.
  EXPECT_EQ(__kobiPowMod(3, 0, 4294967290u, 4294967291u), 1u);
  EXPECT_EQ(__kobiPowMod2P31M1(7, 0x7FFFFFFE, 0x7FFFFFFE), 1u);
  EXPECT_EQ(__kobiPowMod2P59(5, 0, 0, 1u << 25), 1u);
  EXPECT_NE(__kobiPowMod2P59(5, 0, 0, 1u << 24), 1u);
}

// ---- seeds from keys ----

uint64_t splitmix64(uint64_t& state) {
  uint64_t z = state += 0x9E3779B97F4A7C15;
  z = (z ^ z >> 30) * 0xBF58476D1CE4E5B9;
  z = (z ^ z >> 27) * 0x94D049BB133111EB;
  return z ^ z >> 31;
}

Words spread(const Words& key, int n) {
  Words seed(size_t(n) + 1, 77);
  EXPECT_EQ(orx_kob_spread_seed(int(key.size()), key.data(), n, seed.data()), 0);
  EXPECT_EQ(seed.back(), 77u);
  seed.pop_back();
  return seed;
}

TEST(SpreadSeed, IsSplitMix64) {
  uint64_t published = 1234567;  // five numbers in J. S. Vigna's publication
  for (uint64_t number : {6457827717110365317u, 3203168211198807973u, 9817491932198370423u,
                          4593380528125082431u, 16408922859458223821u})
    EXPECT_EQ(splitmix64(published), number);
  for (const Words& key : {Words{}, {5}, {5, 0}, {1, 2, 3}, random_rows(7)[0]}) {
    uint64_t state = key.size();
    for (size_t i = 0; i < key.size(); i += 2)
      state = splitmix64(state) ^ (key[i] | uint64_t(i + 1 < key.size() ? key[i + 1] : 0) << 32);
    state = splitmix64(state);
    Words expected;
    for (uint64_t w; expected.size() < 12; expected.push_back(uint32_t(w >> 32)))
      w = splitmix64(state), expected.push_back(uint32_t(w));
    for (int n = 0; n <= 12; ++n) EXPECT_EQ(spread(key, n), Words(expected.begin(), expected.begin() + n));
  }
  uint32_t word = 77;
  EXPECT_EQ(orx_kob_spread_seed(-1, &word, 1, &word), KOB_ERROR_BAD_ARG);
  EXPECT_EQ(orx_kob_spread_seed(1, &word, -1, &word), KOB_ERROR_BAD_ARG);
  EXPECT_EQ(word, 77u);
}

// Each bit of the key, and each step of a small number in it, changes each bit of the seed in half of the cases,
// to five standard deviations.
TEST(SpreadSeed, Avalanche) {
  constexpr int kKeys = 400, kWords = 6;
  std::mt19937 random(11);
  for (uint32_t length : {1u, 2u, 3u, 8u}) {
    std::vector<std::vector<int>> flips(32 * length, std::vector<int>(32 * kWords));
    for (int k = 0; k < kKeys; ++k) {
      Words key(length);
      // Small numbers of an even number of bits: no two of them differ by one.
      for (uint32_t& w : key) w = k % 2 ? uint32_t(random()) : uint32_t(k + __builtin_parity(uint32_t(k)));
      const Words seed = spread(key, kWords);
      for (uint32_t bit = 0; bit < 32 * length; ++bit) {
        key[bit / 32] ^= 1u << bit % 32;
        const Words other = spread(key, kWords);
        key[bit / 32] ^= 1u << bit % 32;
        for (size_t i = 0; i < 32 * kWords; ++i)
          flips[bit][i] += (seed[i / 32] ^ other[i / 32]) >> i % 32 & 1;
      }
    }
    double chi2 = 0;
    int most = 0;
    for (const auto& row : flips)
      for (int count : row) {
        const int off = std::abs(count - kKeys / 2);
        most = std::max(most, off);
        chi2 += 4.0 * off * off / kKeys;
      }
    const double cells = 32.0 * length * 32 * kWords;
    EXPECT_LT(most, 6 * std::sqrt(kKeys) / 2) << length;
    EXPECT_LT(std::fabs(chi2 - cells), 6 * std::sqrt(2 * cells)) << length;
  }
}

}  // namespace
