// Sobol's and Niederreiter's sequences: what they make of their seeds and where they keep it, splitting, the
// end, the quality of the points, and other people's sequences. That they follow their direction numbers
// however they are asked is tested with the other generators.
#include <atomic>
#include <thread>

#include "image.hpp"
#include "support/models.hpp"
#ifdef ORX_HAVE_GSL
#include <gsl/gsl_qrng.h>
#endif

namespace {

constexpr uint32_t kDirections = 9, kNiederr = 10, kPoint = 13;
constexpr int kComponent = 0x7FFFFFFF;  // as a number of streams: select one

// ---- splitting, and the end ----

class QuasiSequence : public testing::TestWithParam<Case> {
 protected:
  const Stream stream_ = GetParam().stream();
  const Rows rows_ = rows_of(stream_);
  const uint64_t dimension_ = rows_.size();
  Words numbers(uint64_t from, int n) const { return Quasi(rows_, from).words(n); }
};
INSTANTIATE_TEST_SUITE_P(All, QuasiSequence, testing::ValuesIn(quasi_cases()), name_of);

// From every kind of position, by every kind of step: the stream stands where stepping would have brought it.
TEST_P(QuasiSequence, SkipCountsNumbers) {
  const uint64_t dim = dimension_;
  const int n = int(std::min<uint64_t>(2 * dim + 3, 200));
  for (uint64_t before : {uint64_t(0), uint64_t(1), dim - 1, dim, dim + 1, 7 * dim + dim / 2}) {
    const Stream start = stream_;
    start.words(int(before));
    for (uint64_t skip : {uint64_t(0), uint64_t(1), dim / 2, dim - 1, dim, dim + 1, 3 * dim,
                          100 * dim + dim / 3, uint64_t(0x7FFFFFFF) * dim + 1, uint64_t(0xFFFFFF00) * dim}) {
      const Stream s = start;
      ASSERT_EQ(__kobSkipAheadStream(s, skip), 0);
      ASSERT_EQ(s.words(n), numbers(before + skip, n)) << before << " " << skip;
    }
  }
  for (uint64_t skip : {0xFFFFFFFF * dim, 0xFFFFFFFE * dim, ~uint64_t(0)})
    EXPECT_EQ(__kobSkipAheadStream(stream_, skip), KOB_ERROR_SKIPAHEAD_UNSUPPORTED);
  const auto init = stream_.properties().InitStream;
  EXPECT_EQ(init(2, stream_, 0, nullptr), KOB_ERROR_SKIPAHEAD_UNSUPPORTED);
  EXPECT_EQ(init(3, stream_, 0, nullptr), KOB_ERROR_METHOD);
  EXPECT_EQ(stream_.words(5), numbers(0, 5));
}

TEST_P(QuasiSequence, LeapfrogSelectsAComponent) {
  const uint32_t dim = uint32_t(dimension_);
  for (const auto& [k, streams] : {std::pair(dim, kComponent), {0u, kComponent - 1}, {0u, 2}})
    EXPECT_EQ(__kobLeapfrogStream(stream_, k, streams), KOB_ERROR_LEAPFROG_UNSUPPORTED);
  for (uint32_t k : {0u, dim / 2, dim - 1}) {
    const Stream s = stream_;
    s.words(int(dim) * 3 + int(dim) / 2);
    uint32_t index = dim > 1 ? 5 : 4;  // a point that was begun is left behind
    const auto expect_component = [&](uint32_t which, int n) {
      Words expected;
      for (int i = 0; i < n; ++i) expected.push_back(component(rows_[which], index++));
      ASSERT_EQ(s.words(n), expected) << which << " " << n;
    };
    ASSERT_EQ(__kobLeapfrogStream(s, k, kComponent), 0);
    for (int n : {1, 2, 40, 7, 333}) expect_component(k, n);
    ASSERT_EQ(__kobSkipAheadStream(s, 1000001), 0);
    index += 1000001;
    expect_component(k, 9);
    for (uint32_t next : {k, 0u}) {  // the same again, another
      ASSERT_EQ(__kobLeapfrogStream(s, next, kComponent), 0);
      expect_component(next, 50);
    }
  }
}

TEST_P(QuasiSequence, EndsWithTheIndex) {
  const uint64_t last = (uint64_t(0xFFFFFFFF) - 101) * dimension_;
  ASSERT_EQ(__kobSkipAheadStream(stream_, last), 0);  // at point 2^32 - 101
  Words r(101, 77);
  EXPECT_EQ(stream_.properties().iGenerate(stream_, 101, r.data()), KOB_ERROR_QRNG_PERIOD_ELAPSED);
  EXPECT_EQ(r, Words(101, 77));
  EXPECT_EQ(stream_.words(100), numbers(last, 100));
  EXPECT_EQ(stream_.properties().iGenerate(stream_, 0, r.data()), 0);
}

// ---- seeds ----

uint32_t dimension_of(uint32_t id, const Words& seed) { return Stream(id, seed).state()[1]; }
Rows rows(uint32_t id, const Words& seed) { return rows_of(Stream(id, seed)); }
Words joined(std::initializer_list<Words> parts) {
  Words all;
  for (const Words& part : parts) all.insert(all.end(), part.begin(), part.end());
  return all;
}

TEST(QuasiSeed, Dimensions) {
  const struct {
    uint32_t id, older_id, most;
  } kinds[] = {{KOB_BRNG_SOBOL, 277, 40}, {KOB_BRNG_NIEDERR, 278, 318}};
  for (const auto& kind : kinds) {
    EXPECT_EQ(dimension_of(kind.id, {}), 1u);
    EXPECT_EQ(dimension_of(kind.older_id, {7}), 7u);
    for (uint32_t bad : {0u, kind.most + 1, 0x80000000u, 0xFFFFFFFFu})
      for (const Words& seed : {Words{bad}, Words{bad, 0}, Words{bad, 1, 1}, Words{bad, 1, 4, 5}})
        EXPECT_EQ(dimension_of(kind.id, seed), 1u) << bad;
    for (uint32_t good : {1u, 2u, kind.most})
      for (const Words& seed : {Words{good}, Words{good, 0, 4}, Words{good, 1}, Words{good, 2, 4}})
        EXPECT_EQ(dimension_of(kind.id, seed), good);
    // Lengths that 32 bits would take for small ones.
    for (uint32_t wrapping : {0x08000000u, 0x08000001u, 0x40000000u, 0x7FFFFFFFu})
      for (uint32_t user_class : {1u, 2u, 3u, 4u, 0xBu})
        EXPECT_EQ(dimension_of(kind.id, joined({{wrapping, 1, user_class}, Words(97, 1)})), 1u);
  }
  EXPECT_EQ(Stream(KOB_BRNG_SOBOL, {41}).reals(2), (std::vector<double>{0.5, 0.75}));
  const Stream two(KOB_BRNG_SOBOL, {2});
  two.words(3);
  EXPECT_EQ(two.state()[3], 1u);
}

// The recursion as it is written for fractions: v(j) = a(1) v(j-1) + ... + a(e) v(j-e) + v(j-e) / 2^e.
Words sobol_row(uint32_t polynomial, const Words& initial) {
  const int e = 31 - __builtin_clz(polynomial);
  Words v;
  for (int j = 0; j < 32; ++j) {
    v.push_back(j < e ? initial[j] << (31 - j) : v[j - e] ^ v[j - e] >> e);
    for (int k = 1; j >= e && k < e; ++k)
      if (polynomial >> (e - k) & 1) v[j] ^= v[j - k];
  }
  return v;
}

TEST(QuasiSeed, ClassesOfUserDataOfSobol) {
  const uint32_t id = KOB_BRNG_SOBOL;
  Words ones(32);
  for (int j = 0; j < 32; ++j) ones[j] = 0x80000000u >> j;
  const Words d111 = sobol_row(0xD, {1, 1, 1}), x1359 = sobol_row(0x13, {1, 3, 5, 9});
  const uint32_t many = 77;
  const Words same = {1, 3, 3, 9, 9, 25, 107, 39};
  Words large = joined({{many, 1, 3}, Words(many - 1, 0x12B), {8}});
  for (uint32_t d = 1; d < many; ++d) large.insert(large.end(), same.begin(), same.end());
  Rows large_rows(many, sobol_row(0x12B, same));
  large_rows[0] = ones;
  const struct {
    Words seed;
    Rows rows;
  } good[] = {{{4}, {ones, sobol_row(0x3, {1}), sobol_row(0x7, {1, 1}), sobol_row(0xB, {1, 3, 7})}},
              {{3, 1, 1, 0x7, 0x3}, {ones, sobol_row(0x7, {1, 3}), sobol_row(0x3, {1})}},
              {{4, 1, 2, 3, 1, 9, 9, 1, 3, 9, 1, 3, 5},
               {ones, sobol_row(0x3, {1}), sobol_row(0x7, {1, 3}), sobol_row(0xB, {1, 3, 5})}},
              {{3, 1, 3, 0xD, 0x13, 4, 1, 1, 1, 77, 1, 3, 5, 9}, {ones, d111, x1359}},
              {{2, 1, 0xB, 0xD, 0x13, 4, 1, 1, 1, 77, 1, 3, 5, 9}, {d111, x1359}},
              {{1, 1, 0xB, 0xD, 3, 1, 1, 1}, {d111}},
              {large, large_rows}};
  for (const auto& c : good) EXPECT_EQ(rows(id, c.seed), c.rows) << testing::PrintToString(c.seed);
  // One word less is not enough.
  large.pop_back();
  EXPECT_EQ(dimension_of(id, large), 1u);
  for (const Words& too_short : {Words{4, 1, 1, 7, 7},
                                 {3, 1, 2, 2, 1, 1, 1},
                                 {3, 1, 3, 7, 7, 2, 1, 1, 1},
                                 {2, 1, 0xB, 7, 7, 2, 1, 1, 1},
                                 joined({{3, 1, 4}, Words(95, 5)}),
                                 {2, 1, 2},
                                 {5, 1, 8, 7, 7, 7, 7, 7, 7, 7, 7, 7, 7}})
    EXPECT_EQ(rows(id, too_short), rows(id, {too_short[0]})) << too_short[2];
}

TEST(QuasiSeed, ClassesOfUserDataOfNiederreiter) {
  const uint32_t id = KOB_BRNG_NIEDERR;
  const Rows plain = rows(id, {6}), first3(plain.begin(), plain.begin() + 3);
  EXPECT_EQ(rows(id, {3, 1, 1, 0xD, 0x2, 0x13}), (Rows{plain[4], plain[0], plain[5]}));
  EXPECT_EQ(rows(id, {3, 1, 1, 0xD, 0x2}), first3);
  EXPECT_EQ(rows(id, {3, 1, 3, 0xD, 0x2, 0x13}), first3);
  EXPECT_EQ(rows(id, joined({{400, 1, 1}, Words(400, 0xB)})), Rows(400, plain[3]));
  EXPECT_EQ(rows(id, joined({{400, 1, 1}, Words(399, 0xB)})), Rows{plain[0]});
  EXPECT_EQ(rows(id, {2, 1, 1, 0x80000009, 0x2})[1], plain[0]);  // a degree of 31
}

// A stream that could not be seeded is the caller's to delete, and does no harm when it is used.
TEST(QuasiSeed, PolynomialsThatDoNotGo) {
  const uint32_t sobol = KOB_BRNG_SOBOL, niederr = KOB_BRNG_NIEDERR;
  const struct {
    uint32_t id;
    Words seed;
    int status;
  } cases[] = {{sobol, {2, 1, 1, 0x11D}, 0},
               {sobol, {2, 1, 1, 0x211}, KOB_ERROR_BAD_ARG},  // degree 9, numbers for 8
               {sobol, {2, 1, 3, 0x211, 8, 1, 1, 1, 1, 1, 1, 1, 1}, KOB_ERROR_BAD_ARG},
               {sobol, {2, 1, 3, 0x211, 9, 1, 1, 1, 1, 1, 1, 1, 1, 1}, 0},
               {sobol, {2, 1, 1, 0}, KOB_ERROR_BAD_ARG},
               {sobol, {2, 1, 1, 1}, KOB_ERROR_BAD_ARG},
               {sobol, joined({{5000, 1, 3}, Words(4999, 7), {1}, Words(4999, 1)}), KOB_ERROR_BAD_ARG},
               {niederr, joined({{3000, 1, 1}, Words(2999, 0xB), {0}}), KOB_ERROR_BAD_ARG},
               {niederr, joined({{319, 1, 1}, Words(318, 0xB), {1}}), KOB_ERROR_BAD_ARG}};
  for (const auto& c : cases) {
    KobStream* stream = nullptr;
    EXPECT_EQ(__kobNewStreamEx(&stream, c.id, int(c.seed.size()), c.seed.data()), c.status);
    use(stream);
  }
}

// ---- the quality of the points: (t, m, s)-nets ----

int rank(Words m) {
  int r = 0;
  for (int bit = 31; bit >= 0; --bit) {
    const auto pivot = std::find_if(m.begin() + r, m.end(), [&](uint32_t w) { return w >> bit & 1; });
    if (pivot == m.end()) continue;
    std::swap(*pivot, m[r]);
    for (size_t i = 0; i < m.size(); ++i)
      if (int(i) != r && m[i] >> bit & 1) m[i] ^= m[r];
    ++r;
  }
  return r;
}

// Whether the first 2^m points put the same number into each box of 2^-a by 2^-b: whether the first a and b
// digits of the two components are independent.
bool is_even(const Words& first, const Words& second, int m, int a, int b) {
  Words digits(a + b);
  for (int c = 0; c < m; ++c)
    for (int r = 0; r < a + b; ++r)
      digits[r] |= (r < a ? first[c] >> (31 - r) : second[c] >> (31 - r + a)) % 2 << c;
  return rank(digits) == a + b;
}

// t of a pair is the sum of degree - 1 of the components; so many components have each t, from 0 on.
void expect_nets(const Rows& rows, const std::vector<size_t>& counts) {
  std::vector<int> t;
  for (size_t i = 0; i < counts.size(); ++i) t.insert(t.end(), counts[i], int(i));
  for (size_t d = 1; d < rows.size(); ++d)
    for (size_t e : {d / 2, d - 1})
      for (int m : {8, 20, 31})
        for (int a = 0; a <= m - t[d] - t[e]; ++a)
          ASSERT_TRUE(is_even(rows[d], rows[e], m, a, m - t[d] - t[e] - a))
              << d << " " << e << " " << m << " " << a;
}

TEST(QuasiPoints, PairsOfComponentsAreNets) {
  expect_nets(rows(KOB_BRNG_SOBOL, {40}), {2, 1, 2, 2, 6, 6, 18, 3});
  expect_nets(rows(KOB_BRNG_NIEDERR, {318}), {2, 1, 2, 3, 6, 9, 18, 30, 56, 99, 92});
}

#ifdef ORX_HAVE_GSL
// The judge's points are of 30 (Sobol) and 31 bits; over 2^16 points that is all that there is.
void expect_as_judged(uint32_t id, const gsl_qrng_type* type, std::initializer_list<unsigned> dimensions) {
  for (unsigned dimension : dimensions) {
    const Stream s(id, {dimension});
    gsl_qrng* judge = gsl_qrng_alloc(type, dimension);
    std::vector<double> point(dimension);
    if (id == KOB_BRNG_NIEDERR) gsl_qrng_get(judge, point.data());  // its first is the origin
    for (int i = 0; i < 1 << 16; ++i) {
      gsl_qrng_get(judge, point.data());
      ASSERT_EQ(s.reals(int(dimension)), point) << i << " of " << dimension << " by " << id;
    }
    gsl_qrng_free(judge);
  }
}

TEST(QuasiPoints, AgreeWithTheJudge) {
  expect_as_judged(KOB_BRNG_SOBOL, gsl_qrng_sobol, {1, 2, 13, 40});
  expect_as_judged(KOB_BRNG_NIEDERR, gsl_qrng_niederreiter_2, {1, 5, 12});
}
#endif

// ---- chunks ----

KobGlobalEntry* entry_of(const Stream& s) {
  const KobChunk* chunk = reinterpret_cast<const KobChunk*>(uintptr_t(static_cast<KobStream*>(s)->Chunks));
  while (chunk && chunk->ChunkId != kDirections) chunk = chunk->Next;
  KobGlobalEntry* entry = nullptr;
  return chunk && __kobFindGlobRODataTableEntry(&entry, &chunk->GlobalId) == 0 ? entry : nullptr;
}

TEST(QuasiChunks, CopiesOfSobolShareTheDirections) {
  const long before = orx_serv_live_blocks();
  int order[] = {0, 1, 2};
  do {
    std::unique_ptr<Stream> streams[3];
    streams[0] = std::make_unique<Stream>(KOB_BRNG_SOBOL, matrix_seed(random_rows(90)));
    streams[1] = std::make_unique<Stream>(*streams[0]);
    KobStream* loaded = nullptr;
    ASSERT_EQ(__kobLoadStreamM(&loaded, image_of(*streams[1]).data()), 0);
    streams[2] = std::make_unique<Stream>(loaded);
    for (const auto& s : streams) {
      EXPECT_EQ(__kobSearchChunk(*s, kDirections), __kobSearchChunk(*streams[0], kDirections));
      EXPECT_EQ(__kobSearchChunk(*s, kPoint) == __kobSearchChunk(*streams[0], kPoint), s == streams[0]);
    }
    for (int gone = 0; gone < 3; ++gone) {
      Stream& s = *streams[order[gone]];
      ASSERT_TRUE(entry_of(s));
      EXPECT_EQ(entry_of(s)->RefCount, 3 - gone);
      EXPECT_EQ(s.words(300), Quasi(random_rows(90)).words(300));
      streams[order[gone]].reset();
    }
    EXPECT_EQ(orx_serv_live_blocks(), before);
  } while (std::next_permutation(order, order + 3));
}

// Each thread makes streams of a matrix of its own, and gets its own points.
TEST(QuasiChunks, MatricesOfSeveralThreads) {
  const long before = orx_serv_live_blocks();
  std::vector<std::thread> threads;
  std::atomic<int> wrong{0};
  for (uint32_t t = 1; t <= 4; ++t)
    threads.emplace_back([&wrong, t] {
      const Words seed = matrix_seed({Words(32, t)});
      for (int i = 0; i < 20000; ++i) {
        KobStream* stream = nullptr;
        uint32_t word = 0;
        __kobNewStreamEx(&stream, KOB_BRNG_SOBOL, int(seed.size()), seed.data());
        __kobiBRngSobol(stream, 1, &word);
        __kobDeleteStream(&stream);
        wrong += word != t;
      }
    });
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(wrong, 0);
  EXPECT_EQ(orx_serv_live_blocks(), before);
}

TEST(QuasiChunks, SizesAndKinds) {
  for (uint32_t dimension : {1u, 41u, 42u, 47u, 48u, 49u, 64u, 1000u}) {
    const Stream s(KOB_BRNG_SOBOL, matrix_seed(random_rows(dimension)));
    EXPECT_EQ(__kobGetNumChunks(s), 2);
    const uint32_t directions = 4 * (64 * dimension + 2048 - 32 * (4 * dimension & 63));
    EXPECT_EQ(__kobGetStreamSize(s), int(11648 + 24 + directions + 24 + 4 * dimension));
  }
  for (uint32_t id : {KOB_BRNG_SOBOL, KOB_BRNG_NIEDERR}) EXPECT_EQ(__kobGetNumChunks(Stream(id, {40})), 0);
  const Stream s(KOB_BRNG_NIEDERR, matrix_seed(random_rows(319)));
  EXPECT_NE(__kobSearchChunk(s, kNiederr), nullptr);
  EXPECT_EQ(__kobGetStreamSize(s), 43280 + 24 + 319 * 132);
}

TEST(QuasiChunks, MemoryThatRunsOutAndSeedingAnew) {
  const Words seed = matrix_seed(random_rows(330));
  for (uint32_t id : {KOB_BRNG_SOBOL, KOB_BRNG_NIEDERR}) {
    expect_clean_making(
        [&](KobStream** s) { return __kobNewStreamEx(s, id, int(seed.size()), seed.data()); });
    expect_clean_making([&, s = Stream(id, seed)](KobStream** copy) { return __kobCopyStream(copy, s); });
    const Stream s(id, seed);
    const uint32_t dimension = 3;
    ASSERT_EQ(s.properties().InitStream(0, s, 1, &dimension), 0);
    EXPECT_EQ(s.words(100), Stream(id, {3}).words(100));
  }
}

}  // namespace
