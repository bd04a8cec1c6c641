// Sobol's and Niederreiter's sequences: the points, in every way of asking for them.
#include <algorithm>
#include <cstring>
#include <random>

#include "image.hpp"
#include "quasi_reference.hpp"
#ifdef ORX_HAVE_GSL
#include <gsl/gsl_qrng.h>
#endif

using namespace quasi;

namespace {

Words random_words(size_t n, uint32_t seed) {
  std::mt19937 random(seed);
  Words r(n);
  for (uint32_t& w : r) w = uint32_t(random());
  return r;
}

Rows random_rows(uint32_t dimension) {
  Rows rows;
  for (uint32_t d = 0; d < dimension; ++d) rows.push_back(random_words(32, 1000 * dimension + d));
  return rows;
}

struct Case {
  uint32_t id, dimension;
  bool matrix;  // random direction numbers of the user's
};
std::ostream& operator<<(std::ostream& out, const Case& c) {
  return out << (c.id == KOB_BRNG_SOBOL ? "Sobol" : "Niederreiter") << c.dimension
             << (c.matrix ? "User" : "");
}

class Quasi : public testing::TestWithParam<Case> {
 protected:
  Quasi()
      : rows_(GetParam().matrix ? random_rows(dimension()) : rows_of(stream({dimension()}), dimension())) {}
  uint32_t dimension() const { return GetParam().dimension; }
  Stream stream(const Words& seed) const { return Stream(GetParam().id, seed); }
  Stream stream() const { return stream(GetParam().matrix ? matrix_seed(rows_) : Words{dimension()}); }

  const Rows rows_;
};

INSTANTIATE_TEST_SUITE_P(All, Quasi,
                         testing::Values(Case{KOB_BRNG_SOBOL, 1, false}, Case{KOB_BRNG_SOBOL, 2, false},
                                         Case{KOB_BRNG_SOBOL, 3, false}, Case{KOB_BRNG_SOBOL, 7, false},
                                         Case{KOB_BRNG_SOBOL, 15, false}, Case{KOB_BRNG_SOBOL, 16, false},
                                         Case{KOB_BRNG_SOBOL, 39, false}, Case{KOB_BRNG_SOBOL, 40, false},
                                         Case{KOB_BRNG_SOBOL, 5, true}, Case{KOB_BRNG_SOBOL, 16, true},
                                         Case{KOB_BRNG_SOBOL, 47, true}, Case{KOB_BRNG_SOBOL, 400, true},
                                         Case{KOB_BRNG_NIEDERR, 1, false}, Case{KOB_BRNG_NIEDERR, 5, false},
                                         Case{KOB_BRNG_NIEDERR, 100, false},
                                         Case{KOB_BRNG_NIEDERR, 318, false}, Case{KOB_BRNG_NIEDERR, 6, true},
                                         Case{KOB_BRNG_NIEDERR, 319, true}),
                         testing::PrintToStringParamName());

// Requests of many lengths, words, doubles and singles in turn; nothing is written behind them.
TEST_P(Quasi, EveryCutContinuesTheSequence) {
  const Stream s = stream();
  const KobBrngProperties p = s.properties();
  const int dim = int(dimension());
  std::mt19937 random(1);
  uint64_t done = 0;
  for (int round = 0; round < 150; ++round) {
    const int lengths[] = {int(random() % 70) - 2, int(random() % 400), dim, dim - 1, dim + 1, 16 * dim + 5};
    const int n = lengths[random() % 6], count = std::max(n, 0), kind = int(random() % 3);
    const Words expected = numbers(rows_, done, count);
    Words memory(size_t(count) * 2 + 16, 0xA5A5A5A5);
    uint32_t* r = memory.data() + random() % 8;
    size_t length = size_t(count);
    if (kind == 0) {
      ASSERT_EQ(p.iGenerate(s, n, r), 0);
      ASSERT_TRUE(std::equal(expected.begin(), expected.end(), r)) << n << " at " << done;
    } else if (kind == 1) {
      ASSERT_EQ(p.sGenerate(s, n, reinterpret_cast<float*>(r), -1.5f, 2), 0);
    } else {
      ASSERT_EQ(p.dGenerate(s, n, reinterpret_cast<double*>(r), -1.5, 2), 0);
      length *= 2;
    }
    for (int i = 0; kind != 0 && i < count; ++i) {
      const double real = expected[i] * (3.5 * 0x1p-32) - 1.5;
      double d;
      float f;
      memcpy(&d, r + 2 * i, sizeof d);
      memcpy(&f, r + i, sizeof f);
      ASSERT_EQ(kind == 2 ? d : f, kind == 2 ? real : float(real)) << n << " at " << done;
    }
    for (uint32_t* behind = r + length; behind < memory.data() + memory.size(); ++behind)
      ASSERT_EQ(*behind, 0xA5A5A5A5u);
    done += uint64_t(count);
  }
}

// From every kind of position, by every kind of step: the stream stands where stepping would have brought it.
TEST_P(Quasi, SkipCountsNumbers) {
  const uint64_t dim = dimension();
  for (uint64_t before : {uint64_t(0), uint64_t(1), dim - 1, dim, dim + 1, 7 * dim + dim / 2}) {
    const Stream start = stream();
    start.words(int(before));
    for (uint64_t skip : {uint64_t(0), uint64_t(1), dim / 2, dim - 1, dim, dim + 1, 3 * dim,
                          100 * dim + dim / 3, uint64_t(0x7FFFFFFF) * dim + 1, uint64_t(0xFFFFFF00) * dim}) {
      const Stream s = start;
      ASSERT_EQ(__kobSkipAheadStream(s, skip), 0);
      const int n = int(2 * dim + 3);
      ASSERT_EQ(s.words(n > 200 ? 200 : n), numbers(rows_, before + skip, n > 200 ? 200 : n))
          << before << " " << skip;
    }
  }
  for (uint64_t skip : {0xFFFFFFFF * dim, 0xFFFFFFFE * dim, ~uint64_t(0)})
    EXPECT_EQ(__kobSkipAheadStream(stream(), skip), KOB_ERROR_SKIPAHEAD_UNSUPPORTED);
  EXPECT_EQ(stream().properties().InitStream(2, stream(), 0, nullptr), KOB_ERROR_SKIPAHEAD_UNSUPPORTED);
}

TEST_P(Quasi, LeapfrogSelectsAComponent) {
  constexpr int kAll = 0x7FFFFFFF;
  const uint32_t dim = dimension();
  const auto expected = [&](uint32_t k, uint32_t index, int n) {
    Words r;
    for (int i = 0; i < n; ++i) r.push_back(component(rows_[k], index + uint32_t(i)));
    return r;
  };
  for (uint32_t k : {uint32_t(0), dim / 2, dim - 1}) {
    const Stream s = stream();
    s.words(int(dim) * 3 + int(dim) / 2);
    // A point that was begun is left behind.
    uint32_t index = dim > 1 ? 5 : 4;
    ASSERT_EQ(__kobLeapfrogStream(s, k, kAll), 0);
    for (int n : {1, 2, 40, 7, 333}) {
      ASSERT_EQ(s.words(n), expected(k, index, n)) << n;
      index += uint32_t(n);
    }
    ASSERT_EQ(__kobSkipAheadStream(s, 1000001), 0);
    index += 1000001;
    ASSERT_EQ(s.words(9), expected(k, index, 9));
    index += 9;
    ASSERT_EQ(__kobLeapfrogStream(s, k, kAll), 0);  // the same again
    ASSERT_EQ(__kobLeapfrogStream(s, 0, kAll), 0);  // another
    ASSERT_EQ(s.words(50), expected(0, index, 50));
  }
  const Stream s = stream();
  EXPECT_EQ(__kobLeapfrogStream(s, dim, kAll), KOB_ERROR_LEAPFROG_UNSUPPORTED);
  EXPECT_EQ(__kobLeapfrogStream(s, 0, kAll - 1), KOB_ERROR_LEAPFROG_UNSUPPORTED);
  EXPECT_EQ(__kobLeapfrogStream(s, 0, 2), KOB_ERROR_LEAPFROG_UNSUPPORTED);
  EXPECT_EQ(s.properties().InitStream(3, s, 0, nullptr), KOB_ERROR_METHOD);
  EXPECT_EQ(s.words(5), numbers(rows_, 0, 5));
}

TEST_P(Quasi, EndsWithTheIndex) {
  const Stream s = stream();
  const uint64_t dim = dimension();
  ASSERT_EQ(__kobSkipAheadStream(s, (uint64_t(0xFFFFFFFF) - 101) * dim), 0);  // at point 2^32 - 101
  Words r(101, 77);
  EXPECT_EQ(s.properties().iGenerate(s, 101, r.data()), KOB_ERROR_QRNG_PERIOD_ELAPSED);
  EXPECT_EQ(r, Words(101, 77));
  EXPECT_EQ(s.words(100), numbers(rows_, (uint64_t(0xFFFFFFFF) - 101) * dim, 100));
  EXPECT_EQ(s.properties().iGenerate(s, 0, r.data()), 0);
}

TEST_P(Quasi, CopiesAndImagesGoOnAlike) {
  const Stream s = stream();
  s.words(37);
  const Stream copy = s;
  KobStream* loaded = nullptr;
  ASSERT_EQ(__kobLoadStreamM(&loaded, image_of(s).data()), 0);
  const Stream from_image(loaded), into = stream();
  ASSERT_EQ(__kobCopyStreamState(into, s), 0);
  const Words expected = numbers(rows_, 37, 700);
  for (const Stream* stream : {&s, &copy, &from_image, &into}) EXPECT_EQ(stream->words(700), expected);
}

TEST_P(Quasi, DamagedImagesDoNoHarm) {
  if (dimension() > 100) return;
  const Stream s = stream();
  s.words(11);
  const Bytes good = image_of(s);
  TemporaryFile file;
  std::mt19937 random(3);
  for (int round = 0; round < 300; ++round) {
    Bytes image = good;
    const size_t chunks = 16 + size_t(s.properties().StateSize) - 16;
    const size_t at = random() % 2 || image.size() == chunks ? random() % 32 : chunks + random() % 28;
    image[at] = uint8_t(random());
    ASSERT_TRUE(survives(file, image)) << at;
  }
}

#ifdef ORX_HAVE_GSL
// The judge's points are of 30 (Sobol) and 31 bits; over 2^16 points that is all that there is.
void agree(uint32_t id, const gsl_qrng_type* type, unsigned dimension) {
  const Stream s(id, {dimension});
  gsl_qrng* judge = gsl_qrng_alloc(type, dimension);
  std::vector<double> point(dimension);
  if (type == gsl_qrng_niederreiter_2) gsl_qrng_get(judge, point.data());  // its first is the origin
  for (int i = 0; i < 1 << 16; ++i) {
    gsl_qrng_get(judge, point.data());
    ASSERT_EQ(s.reals(int(dimension)), point) << i << " of dimension " << dimension;
  }
  gsl_qrng_free(judge);
}

TEST(QuasiJudge, Sobol) {
  for (unsigned dimension : {1, 2, 13, 40}) agree(KOB_BRNG_SOBOL, gsl_qrng_sobol, dimension);
}
TEST(QuasiJudge, Niederreiter) {
  for (unsigned dimension : {1, 5, 12}) agree(KOB_BRNG_NIEDERR, gsl_qrng_niederreiter_2, dimension);
}
#endif

}  // namespace
