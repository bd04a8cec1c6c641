// What generators make of their seeds, published sequences, and the modular powers behind the jumps.
#include <random>

#include "stream.hpp"

namespace {

Words state_words(uint32_t id, const Words& seed, int count) {
  const Stream s(id, seed);
  return Words(s.state(), s.state() + count);
}

TEST(Seeding, CongruentialGenerators) {
  constexpr uint32_t a = 1132489760;
  EXPECT_EQ(state_words(KOB_BRNG_MCG31M1, {}, 2), (Words{1, a}));
  EXPECT_EQ(state_words(KOB_BRNG_MCG31M1, {0}, 2), (Words{1, a}));
  EXPECT_EQ(state_words(KOB_BRNG_MCG31M1, {0x7FFFFFFF}, 2), (Words{1, a}));
  EXPECT_EQ(state_words(KOB_BRNG_MCG31M1, {0x80000000}, 2), (Words{1, a}));
  EXPECT_EQ(state_words(KOB_BRNG_MCG31M1, {0xFFFFFFFF, 5}, 2), (Words{1, a}));
  EXPECT_EQ(state_words(KOB_BRNG_MCG31M1, {0x80000005}, 1), Words{6});

  EXPECT_EQ(state_words(KOB_BRNG_MCG59, {}, 4), (Words{1, 0, 0x9B23C5FD, 0x11376}));
  EXPECT_EQ(state_words(KOB_BRNG_MCG59, {0}, 2), (Words{1, 0}));
  EXPECT_EQ(state_words(KOB_BRNG_MCG59, {0, 0x8000000}, 2), (Words{1, 0}));
  EXPECT_EQ(state_words(KOB_BRNG_MCG59, {6}, 2), (Words{6, 0}));
  EXPECT_EQ(state_words(KOB_BRNG_MCG59, {0, 0xFFFFFFFF, 9}, 2), (Words{0, 0x7FFFFFF}));

  EXPECT_EQ(state_words(KOB_BRNG_WH, {}, 8), (Words{1, 1, 1, 1, 125, 117, 127, 126}));
  EXPECT_EQ(state_words(KOB_BRNG_WH + 272, {16766363, 16766358}, 8),
            (Words{1, 16766358, 1, 1, 126, 127, 125, 124}));
  EXPECT_EQ(state_words(KOB_BRNG_WH, {16770648, 16770643, 0, 0xFFFFFFFF, 7}, 4),
            (Words{1, 1, 1, 0xFFFFFFFF % 16770617}));
  EXPECT_EQ(state_words(276, {}, 8), state_words(KOB_BRNG_WH + 272, {}, 8));
}

TEST(Seeding, Mrg32k3a) {
  constexpr uint32_t m1 = 4294967087, m2 = 4294944443;
  EXPECT_EQ(state_words(KOB_BRNG_MRG32K3A, {}, 6), Words(6, 1));
  EXPECT_EQ(state_words(KOB_BRNG_MRG32K3A, {m1, 0, 0}, 6), (Words{1, 0, 0, 1, 1, 1}));
  EXPECT_EQ(state_words(KOB_BRNG_MRG32K3A, {m1, m1 + 1, m1 - 1, m2, m2 + 1, m2 - 1}, 6),
            (Words{0, 1, m1 - 1, 0, 1, m2 - 1}));
  EXPECT_EQ(state_words(KOB_BRNG_MRG32K3A, {5, 6, 7, 0, m2, 0, 9}, 6), (Words{5, 6, 7, 1, 0, 0}));
  // The beginning that the generator's author gives for seeds of 12345.
  const std::vector<double> u = Stream(KOB_BRNG_MRG32K3A, Words(6, 12345)).reals(5);
  const double published[] = {0.1270111220, 0.3185275654, 0.3091860156, 0.8258468629, 0.2216299158};
  for (int i = 0; i < 5; ++i) EXPECT_NEAR(u[i], published[i], 1e-9);
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
    x.push_back(0);
    x.push_back(103);
    return x;
  };
  EXPECT_EQ(state_words(KOB_BRNG_R250, {}, 252), filled(1));
  EXPECT_EQ(state_words(KOB_BRNG_R250, {0}, 252), filled(1));
  EXPECT_EQ(state_words(KOB_BRNG_R250, Words(249, 12), 252), filled(12));
  Words own(250, 3);
  own[249] = 0xFFFFFFFF;
  Words state = own;
  state.push_back(0);
  state.push_back(103);
  EXPECT_EQ(state_words(KOB_BRNG_R250, own, 252), state);
  EXPECT_EQ(Stream(KOB_BRNG_R250, Words(250)).words(9), Words(9));  // a register of zeros is not refused
}

TEST(ModularPowers, AgreeWithStepping) {
  std::mt19937 random(3);
  for (int round = 0; round < 300; ++round) {
    const uint32_t m = round % 3 ? random() | 1 : 0xFFFFFFFF - uint32_t(round), a = uint32_t(random());
    const uint32_t steps = round % 50;
    uint64_t power = 1 % m, power31 = 1, power59 = 1;
    const uint64_t wide = uint64_t(a) << 27 | uint32_t(random());
    for (uint32_t i = 0; i < steps; ++i) {
      power = power * (a % m) % m;
      power31 = power31 * (a % 0x7FFFFFFF) % 0x7FFFFFFF;
      power59 = power59 * wide & ((uint64_t(1) << 59) - 1);
    }
    EXPECT_EQ(__kobiPowMod(a, steps, 0, m), power);
    EXPECT_EQ(__kobiPowMod2P31M1(a, steps, 0), power31);
    EXPECT_EQ(__kobiPowMod2P59(uint32_t(wide), uint32_t(wide >> 32), steps, 0), power59);

    uint32_t v[3], row[3];
    for (int i = 0; i < 3; ++i) {
      v[i] = uint32_t(random() % m);
      row[i] = uint32_t(random() % m);
    }
    Words stepped(v, v + 3);
    for (uint32_t i = 0; i < steps; ++i) {
      uint64_t top = 0;
      for (int j = 0; j < 3; ++j) top = (top + uint64_t(row[j]) * stepped[j] % m) % m;
      stepped = {uint32_t(top), stepped[0], stepped[1]};
    }
    __kobiVect3PowMod(v, row, m, steps, 0);
    EXPECT_EQ(Words(v, v + 3), stepped) << m << " " << steps;
  }
  // Both words of the exponent: Fermat, and the order of the units mod 2^59.
  EXPECT_EQ(__kobiPowMod(3, 4294967291u - 1, 0, 4294967291u), 1u);
  EXPECT_EQ(__kobiPowMod(3, 0, 2, 4294967291u),
            __kobiPowMod(__kobiPowMod(3, 0x80000000u, 0, 4294967291u), 4, 0, 4294967291u));
  EXPECT_EQ(__kobiPowMod2P31M1(7, 0x7FFFFFFE, 0), 1u);
  EXPECT_EQ(__kobiPowMod2P31M1(7, 0xFFFFFFFC, 0), 1u);
  EXPECT_EQ(__kobiPowMod2P59(5, 0, 0, 1u << 25), 1u);
  EXPECT_NE(__kobiPowMod2P59(5, 0, 0, 1u << 24), 1u);
}

}  // namespace
