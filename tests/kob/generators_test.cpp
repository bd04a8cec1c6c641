// What holds for every generator, pseudo and quasi: its sequence, however it is asked for, copied or saved.
#include <cstring>
#include <numeric>

#include "image.hpp"
#include "support/models.hpp"

namespace {

class Generator : public testing::TestWithParam<Case> {
 protected:
  Stream stream() const { return GetParam().stream(); }
};
INSTANTIATE_TEST_SUITE_P(Pseudo, Generator, testing::ValuesIn(pseudo_cases()), name_of);
INSTANTIATE_TEST_SUITE_P(Quasi, Generator, testing::ValuesIn(quasi_cases()), name_of);

// Requests of all small lengths and some long ones, in random order, words, doubles and singles in turn, to
// places of every alignment: the sequence goes on, and nothing is written before or behind.
TEST_P(Generator, EveryCutContinuesTheSequence) {
  const Stream s = stream();
  const KobBrngProperties p = s.properties();
  const auto model = GetParam().model();
  const double ends[][2] = {{-1.5, 2}, {0, 1}, {-3.7, 11.25}};
  std::vector<int> lengths(70);
  std::iota(lengths.begin(), lengths.end(), -1);
  for (int longer : {100, 127, 128, 147, 149, 249, 250, 251,  255,  256,  257,
                     499, 511, 512, 513, 623, 624, 625, 1000, 1300, 3333, 6405})
    lengths.push_back(longer);
  lengths.insert(lengths.end(), 40, 1);  // single numbers have a path of their own
  std::mt19937 random(1);
  for (int round = 0; round < 4; ++round) {
    std::shuffle(lengths.begin(), lengths.end(), random);
    for (int n : lengths) {
      const int kind = (n + round + 1) % 3, count = std::max(n, 0);           // every length in every kind
      const size_t size = kind == 0 ? size_t(p.WordSize) / 4 : size_t(kind);  // of a number, in words
      const double *ab = ends[random() % 3], a = ab[0], b = ab[1];
      Words expected(size_t(count) * size + 32, 0xA5A5A5A5), got = expected;
      const size_t start = 8 + random() % 8;
      for (size_t at = start; at < start + size_t(count) * size; at += size) {
        const Words word = kind == 0 ? model->word() : Words{};
        const double d = kind == 2 ? model->real(a, b) : 0;
        const float f = kind == 1 ? float(model->real(float(a), float(b))) : 0;
        memcpy(&expected[at],
               kind == 0   ? static_cast<const void*>(word.data())
               : kind == 1 ? &f
                           : (void*)&d,
               4 * size);
      }
      void* const r = &got[start];
      const int status = kind == 0   ? p.iGenerate(s, n, static_cast<uint32_t*>(r))
                         : kind == 1 ? p.sGenerate(s, n, static_cast<float*>(r), float(a), float(b))
                                     : p.dGenerate(s, n, static_cast<double*>(r), a, b);
      ASSERT_EQ(status, 0);
      ASSERT_TRUE(got == expected) << n << " of kind " << kind;
    }
  }
}

// Numbers of all kinds, as bytes.
Words everything(const Stream& s) {
  Words all = s.words(700), bits(11);
  const std::vector<double> d = s.reals(331);
  std::vector<uint64_t> wide(7);
  _kobiRngUniformBits32(0, s, 11, bits.data());
  _kobiRngUniformBits64(0, s, 7, wide.data());
  all.insert(all.end(), bits.begin(), bits.end());
  for (double x : d) wide.push_back(uint64_t(x * 0x1p60));
  for (uint64_t w : wide) all.push_back(uint32_t(w)), all.push_back(uint32_t(w >> 32));
  return all;
}

TEST_P(Generator, CopiesAndImagesGoOnAlike) {
  const long before = orx_serv_live_blocks();
  {
    const Stream s = stream();
    for (int drawn : {0, 1, 5, 37, 250}) {
      s.words(drawn);
      s.reals(drawn / 3);
      const TemporaryFile file;
      ASSERT_EQ(__kobSaveStreamF(s, file.name(), -1), 0);
      EXPECT_EQ(file.content(), image_of(s));
      KobStream *from_file = nullptr, *from_memory = nullptr;
      ASSERT_EQ(__kobLoadStreamF(&from_file, file.name(), -1), 0);
      ASSERT_EQ(__kobLoadStreamM(&from_memory, image_of(s).data()), 0);
      const Stream copy = s, state_of = stream(), f(from_file), m(from_memory);
      ASSERT_EQ(__kobCopyStreamState(state_of, s), 0);
      const Words expected = everything(s);
      for (const Stream* other : {&copy, &state_of, &f, &m}) EXPECT_EQ(everything(*other), expected) << drawn;
    }
  }
  EXPECT_EQ(orx_serv_live_blocks(), before);
}

// A bounded run of what the fuzzer does for long: images, with chunks, changed at random.
TEST_P(Generator, DamagedImagesDoNoHarm) {
  const Stream s = stream();
  everything(s);
  add_chunk(s, 100, {1, 2, 3});
  const Bytes good = image_of(s);
  std::mt19937 random(2);
  TemporaryFile file;
  for (int round = 0; round < 200; ++round) {
    Bytes image = good;
    for (int changes = 1 + int(random() % 4); changes > 0; --changes) {
      // Headers and ends, where indices and chunks are, more often than the rest.
      const size_t places[] = {random() % 32, random() % image.size(),
                               size_t(s.properties().StateSize) + random() % 28,
                               image.size() - 1 - random() % std::min<size_t>(150, image.size())};
      image[places[random() % 4]] = random() % 2 ? uint8_t(random()) : uint8_t(random() % 2 ? 0 : 0xFF);
    }
    if (random() % 8 == 0) image.resize(random() % image.size());
    ASSERT_TRUE(survives(file, image)) << round;
  }
}

TEST(R250, StateDoesNotHangOnTheCuts) {
  for (const int n : {499, 500, 750, 1234}) {
    const Stream s(KOB_BRNG_R250), singly = s;
    s.words(17), s.words(n);
    for (int i = 0; i < 17 + n; ++i) singly.words(1);
    EXPECT_EQ(image_of(s), image_of(singly)) << n;
  }
}

// x and y of MRG32k3a at the ends of their ranges, and equal, which no run is long enough to meet: as the first numbers of
// a stream whose state is chosen for it.
TEST(Mrg32k3a, NumbersAtTheEndsOfTheirRanges) {
  constexpr uint64_t m1 = 4294967087, m2 = 4294944443;
  // The state's number of factor `near` that makes the next one `made`; by Fermat's theorem.
  const auto chosen = [](uint64_t made, uint64_t oldest, uint64_t near, uint64_t far, uint64_t m) {
    uint64_t number = (made + far * oldest) % m;
    for (uint64_t n = m - 2, power = near; n > 0; n /= 2, power = power * power % m)
      if (n % 2 == 1) number = number * power % m;
    return number;
  };
  for (const uint64_t x : {uint64_t(0), uint64_t(1), uint64_t(207), uint64_t(208), m2 - 1, m2, m1 - 1})
    for (const uint64_t y : {uint64_t(0), uint64_t(1), uint64_t(208), uint64_t(22852), m2 - 1})
      for (const uint64_t oldest : {uint64_t(0), uint64_t(1), uint64_t(77777777), m2 - 1}) {
        const uint64_t x_before = chosen(x, oldest, 1403580, 810728, m1),
                       y_before = chosen(y, oldest, 527612, 1370589, m2);
        const Words seed = {uint32_t(oldest), uint32_t(x_before), 1, uint32_t(oldest), 2, uint32_t(y_before)};
        for (const int n : {1, 3, 700}) {
          Mrg32k3a model;
          model.x.assign(seed.begin(), seed.begin() + 3);
          model.y.assign(seed.begin() + 3, seed.end());
          const Stream s(KOB_BRNG_MRG32K3A, seed);
          for (const int count : {n, 5}) {
            Words expected;
            for (int i = 0; i < count; ++i) expected.push_back(model.word()[0]);
            ASSERT_EQ(s.words(count), expected) << x << ' ' << y << ' ' << oldest << ' ' << n;
          }
        }
      }
}

// ---- splitting ----

// The numbers that belong to part k of `parts`.
Words every(const Words& words, int per_word, int k, int parts) {
  Words r;
  for (size_t i = size_t(k) * per_word; i < words.size(); i += size_t(parts) * per_word)
    r.insert(r.end(), words.begin() + i, words.begin() + i + per_word);
  return r;
}

void expect_words(const Stream& s, const Words& expected) {
  EXPECT_EQ(s.words(int(expected.size()) * 4 / s.properties().WordSize), expected);
}

// A leapfrog takes every so manieth number, of another leapfrog's too; a skip counts the stream's own.
void expect_leaps(const Case& c) {
  const Stream plain = c.stream();
  const int per_word = plain.properties().WordSize / 4;
  const Words all = plain.words(2000);
  for (int parts : {1, 2, 3, 7})
    for (int k = 0; k < parts; ++k) {
      const Stream part = c.stream();
      ASSERT_EQ(__kobLeapfrogStream(part, uint32_t(k), parts), 0);
      const Stream part_of_part = part;
      const Words expected = every(all, per_word, k, parts);
      expect_words(part, expected);
      ASSERT_EQ(__kobLeapfrogStream(part_of_part, 1, 5), 0);
      expect_words(part_of_part, every(expected, per_word, 1, 5));
    }
}

void expect_skips(const Stream& start) {
  const auto skipped = [&](std::initializer_list<uint64_t> skips) {
    const Stream s = start;
    for (uint64_t n : skips) EXPECT_EQ(__kobSkipAheadStream(s, n), 0);
    return s.words(40);
  };
  for (int n : {0, 1, 2, 3, 64, 1000}) {
    const Stream stepped = start;
    stepped.words(n);
    EXPECT_EQ(skipped({uint64_t(n)}), stepped.words(40)) << n;
  }
  // Far skips add up.
  const uint64_t far = (uint64_t(1) << 63) + 12345678901, part = uint64_t(1) << 40;
  EXPECT_EQ(skipped({far}), skipped({far - part - part / 4 * 3, part, part / 2, part / 4}));
  const uint64_t half = uint64_t(1) << 31;
  EXPECT_EQ(skipped({2 * half}), skipped({half, half}));  // neither word of the count is passed over
}

TEST(Splitting, ByWhatEachGeneratorCan) {
  for (const Case& c : pseudo_cases()) {
    SCOPED_TRACE(c.name);
    const Stream s = c.stream(), leapt = c.stream();
    const bool leaps = c.id < KOB_BRNG_R250 || (c.id >= KOB_BRNG_MCG59 && c.id < KOB_BRNG_SOBOL);
    const bool skips = leaps || c.id == KOB_BRNG_MRG32K3A;
    EXPECT_EQ(__kobLeapfrogStream(leapt, 2, 3), leaps ? 0 : KOB_ERROR_LEAPFROG_UNSUPPORTED);
    EXPECT_EQ(__kobSkipAheadStream(Stream(s), 1), skips ? 0 : KOB_ERROR_SKIPAHEAD_UNSUPPORTED);
    for (int method : {-1, 3, 100})
      EXPECT_EQ(s.properties().InitStream(method, s, 0, nullptr), KOB_ERROR_METHOD);
    EXPECT_EQ(__kobLeapfrogStream(s, 0, -1), KOB_ERROR_LEAPFROG_NSTREAMS);
    EXPECT_EQ(__kobLeapfrogStream(s, 0, INT32_MIN), KOB_ERROR_LEAPFROG_NSTREAMS);
    if (leaps) expect_leaps(c);
    if (leaps) expect_skips(leapt);
    if (skips) expect_skips(s);
  }
  const Stream still(KOB_BRNG_MCG31M1, {5});
  EXPECT_EQ(__kobLeapfrogStream(still, 0, 0), 0);  // a step of no numbers: the first one for ever
  EXPECT_EQ(still.words(20), Words(20, 5));
}

}  // namespace
