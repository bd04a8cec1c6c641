// Digests of what every generator gives first, over all sub-generators and all dimensions: one wrong bit in a
// row of a parameter table, or in a direction number, changes one. The tables themselves are judged by the
// programs in tools/kob and by the other tests of this directory; here nothing may change unnoticed.
#include "support/models.hpp"

namespace {

// FNV-1a over the bytes of words, 64 bits.
class Digest {
 public:
  void add(const Words& words) {
    for (const uint32_t w : words)
      for (int shift = 0; shift < 32; shift += 8) value_ = (value_ ^ (w >> shift & 0xFF)) * 0x100000001B3;
  }
  uint64_t value() const { return value_; }

 private:
  uint64_t value_ = 0xCBF29CE484222325;
};

uint64_t digest(const Words& words) {
  Digest d;
  d.add(words);
  return d.value();
}

uint64_t of_sub_generators(uint32_t family, uint32_t count, int words, const Words& seed) {
  Digest d;
  for (uint32_t k = 0; k < count; ++k) {
    const Stream s(family + k, seed);
    d.add(s.words(words));
    for (const double u : s.reals(2)) d.add({uint32_t(u * 0x1p32), uint32_t(uint64_t(u * 0x1p52))});
  }
  return d.value();
}

TEST(Digest, FirstWordsOfTheGenerators) {
  const struct {
    uint32_t id;
    uint64_t digest;
  } expected[] = {
      {KOB_BRNG_MCG31M1, 6952709094410269228},    {KOB_BRNG_R250, 1687218243755088069},
      {KOB_BRNG_MRG32K3A, 17034170469424805556u}, {KOB_BRNG_MCG59, 3743299422195760778},
      {KOB_BRNG_MT19937, 2141515222647300281},    {KOB_BRNG_SFMT19937, 15484508159800150443u},
  };
  for (const auto& e : expected)
    EXPECT_EQ(digest(Stream(e.id, {20240229}).words(10000)), e.digest) << std::hex << e.id;
}

// Seeded so that the parameters are all in what comes out: 2^32 - 1 leaves another remainder for each modulus.
TEST(Digest, RowsOfParameters) {
  EXPECT_EQ(of_sub_generators(KOB_BRNG_WH, 273, 3, Words(4, 0xFFFFFFFF)), 9541989592798140360u);
  EXPECT_EQ(of_sub_generators(KOB_BRNG_MT2203, 6024, 100, {1}), 10624828956905369354u);
}

TEST(Digest, DirectionNumbers) {
  for (const auto& [id, dimension, expected] :
       {std::tuple(uint32_t(KOB_BRNG_SOBOL), 40u, uint64_t(5978597179023913833)),
        {uint32_t(KOB_BRNG_NIEDERR), 318u, 12421769661592218639u}}) {
    Digest d;
    for (const Words& row : rows_of(Stream(id, {dimension}))) d.add(row);
    EXPECT_EQ(d.value(), expected) << id;
  }
}

}  // namespace
