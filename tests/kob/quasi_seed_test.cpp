// What Sobol's and Niederreiter's generators make of their seeds, and where they keep it.
#include <algorithm>
#include <cstring>

#include "image.hpp"
#include "quasi_reference.hpp"

using namespace quasi;

namespace {

constexpr uint32_t kDirections = 9, kNiederr = 10, kPoint = 13;

uint32_t dimension_of(uint32_t id, const Words& seed) { return Stream(id, seed).state()[1]; }
Rows rows(uint32_t id, const Words& seed) { return rows_of(Stream(id, seed), dimension_of(id, seed)); }
Words joined(std::initializer_list<Words> parts) {
  Words all;
  for (const Words& part : parts) all.insert(all.end(), part.begin(), part.end());
  return all;
}

TEST(QuasiSeed, Dimensions) {
  const struct { uint32_t id, most; } kinds[] = {{KOB_BRNG_SOBOL, 40}, {KOB_BRNG_NIEDERR, 318}};
  for (const auto& kind : kinds) {
    const auto dimension = [&](const Words& seed) { return dimension_of(kind.id, seed); };
    EXPECT_EQ(dimension({}), 1u);
    for (uint32_t bad : {0u, kind.most + 1, 0x80000000u, 0xFFFFFFFFu})
      for (const Words& seed : {Words{bad}, Words{bad, 0}, Words{bad, 1, 1}, Words{bad, 1, 4, 5}})
        EXPECT_EQ(dimension(seed), 1u) << bad;
    for (uint32_t good : {1u, 2u, kind.most})
      for (const Words& seed : {Words{good}, Words{good, 0, 4}, Words{good, 1}, Words{good, 2, 4}})
        EXPECT_EQ(dimension(seed), good);
    // Lengths that 32 bits would take for small ones.
    for (uint32_t dimension_wrapping : {0x08000000u, 0x08000001u, 0x40000000u, 0x7FFFFFFFu})
      for (uint32_t user_class : {1u, 2u, 3u, 4u, 0xBu}) {
        Words seed(100, 1);
        seed[0] = dimension_wrapping, seed[2] = user_class;
        EXPECT_EQ(dimension(seed), 1u);
      }
    EXPECT_EQ(dimension_of(kind.id == KOB_BRNG_SOBOL ? 277 : 278, {7}), 7u);
  }
  EXPECT_EQ(Stream(KOB_BRNG_SOBOL, {1}).words(1), Words{0x80000000});
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
    if (j < e) {
      v.push_back(initial[j] << (31 - j));
      continue;
    }
    uint32_t sum = v[j - e] ^ v[j - e] >> e;
    for (int k = 1; k < e; ++k)
      if (polynomial >> (e - k) & 1) sum ^= v[j - k];
    v.push_back(sum);
  }
  return v;
}
const Words kFirstRow = sobol_row(0x3, {1});

TEST(SobolSeed, ClassesOfUserData) {
  const uint32_t id = KOB_BRNG_SOBOL;
  Words ones(32);
  for (int j = 0; j < 32; ++j) ones[j] = 0x80000000u >> j;
  const Rows plain = rows(id, {4});
  EXPECT_EQ(plain, (Rows{ones, sobol_row(0x3, {1}), sobol_row(0x7, {1, 1}), sobol_row(0xB, {1, 3, 7})}));

  // Polynomials: those of dimensions 3 and 4 exchanged with others of their degrees.
  EXPECT_EQ(rows(id, {3, 1, 1, 0x7, 0x3}), (Rows{ones, sobol_row(0x7, {1, 3}), sobol_row(0x3, {1})}));
  // Initial numbers.
  EXPECT_EQ(rows(id, {4, 1, 2, 3, 1, 9, 9, 1, 3, 9, 1, 3, 5}),
            (Rows{ones, sobol_row(0x3, {1}), sobol_row(0x7, {1, 3}), sobol_row(0xB, {1, 3, 5})}));
  // Both.
  EXPECT_EQ(rows(id, {3, 1, 3, 0xD, 0x13, 4, 1, 1, 1, 77, 1, 3, 5, 9}),
            (Rows{ones, sobol_row(0xD, {1, 1, 1}), sobol_row(0x13, {1, 3, 5, 9})}));
  EXPECT_EQ(rows(id, {2, 1, 0xB, 0xD, 0x13, 4, 1, 1, 1, 77, 1, 3, 5, 9}),
            (Rows{sobol_row(0xD, {1, 1, 1}), sobol_row(0x13, {1, 3, 5, 9})}));
  EXPECT_EQ(rows(id, {1, 1, 0xB, 0xD, 3, 1, 3, 5}), Rows{sobol_row(0xD, {1, 3, 5})});
  // Many dimensions.
  const uint32_t many = 77;
  const Words same = {1, 3, 3, 9, 9, 25, 107, 39};
  Words seed = joined({{many, 1, 3}, Words(many - 1, 0x12B), {8}});
  for (uint32_t d = 1; d < many; ++d) seed.insert(seed.end(), same.begin(), same.end());
  Rows expected(many, sobol_row(0x12B, same));
  expected[0] = ones;
  EXPECT_EQ(rows(id, seed), expected);
  // One word less is not enough.
  seed.pop_back();
  EXPECT_EQ(dimension_of(id, seed), 1u);
  const Words short_ones[] = {{4, 1, 1, 7, 7},
                              {3, 1, 2, 2, 1, 1, 1},
                              {3, 1, 3, 7, 7, 2, 1, 1, 1},
                              {2, 1, 0xB, 7, 7, 2, 1, 1, 1},
                              joined({{3, 1, 4}, Words(95, 5)}),
                              {2, 1, 2},
                              {5, 1, 8, 7, 7, 7, 7, 7, 7, 7, 7, 7, 7}};
  for (const Words& too_short : short_ones)
    EXPECT_EQ(rows(id, too_short), rows(id, {too_short[0]})) << too_short[2];
}

TEST(SobolSeed, PolynomialsThatDoNotGo) {
  const auto status = [](const Words& seed) {
    KobStream* s = nullptr;
    const int result = __kobNewStreamEx(&s, KOB_BRNG_SOBOL, int(seed.size()), seed.data());
    __kobDeleteStream(&s);
    return result;
  };
  EXPECT_EQ(status({2, 1, 1, 0x11D}), 0);
  EXPECT_EQ(status({2, 1, 1, 0x211}), KOB_ERROR_BAD_ARG);  // degree 9, numbers for 8
  EXPECT_EQ(status({2, 1, 3, 0x211, 8, 1, 1, 1, 1, 1, 1, 1, 1}), KOB_ERROR_BAD_ARG);
  EXPECT_EQ(status({2, 1, 3, 0x211, 9, 1, 1, 1, 1, 1, 1, 1, 1, 1}), 0);
  EXPECT_EQ(status({2, 1, 1, 0}), KOB_ERROR_BAD_ARG);
  EXPECT_EQ(status({2, 1, 1, 1}), KOB_ERROR_BAD_ARG);
  EXPECT_EQ(status(joined({{50, 1, 3}, Words(49, 7), {1}, Words(49, 1)})), KOB_ERROR_BAD_ARG);
}

TEST(NiederrSeed, ClassesOfUserData) {
  const uint32_t id = KOB_BRNG_NIEDERR;
  const Rows plain = rows(id, {6});
  EXPECT_EQ(rows(id, {3, 1, 1, 0xD, 0x2, 0x13}), (Rows{plain[4], plain[0], plain[5]}));
  EXPECT_EQ(rows(id, {3, 1, 1, 0xD, 0x2}), (Rows{plain[0], plain[1], plain[2]}));
  EXPECT_EQ(rows(id, {3, 1, 3, 0xD, 0x2, 0x13}), (Rows{plain[0], plain[1], plain[2]}));
  EXPECT_EQ(rows(id, joined({{400, 1, 1}, Words(400, 0xB)})), Rows(400, plain[3]));
  EXPECT_EQ(rows(id, joined({{400, 1, 1}, Words(399, 0xB)})), Rows{plain[0]});
  KobStream* s = nullptr;
  for (uint32_t polynomial : {0u, 1u}) {
    const Words seed = joined({{319, 1, 1}, Words(318, 0xB), {polynomial}});
    EXPECT_EQ(__kobNewStreamEx(&s, id, int(seed.size()), seed.data()), KOB_ERROR_BAD_ARG);
    __kobDeleteStream(&s);
  }
  EXPECT_EQ(rows(id, {2, 1, 1, 0x80000009, 0x2})[1], plain[0]);  // a degree of 31
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

// t of a pair is the sum of degree - 1 of the components.
TEST(QuasiSeed, PairsOfComponentsAreNets) {
  const auto check = [](const Rows& rows, const std::vector<int>& t) {
    for (size_t d = 0; d < rows.size(); ++d)
      for (size_t e : {d / 2, d ? d - 1 : 0})
        for (int m : {8, 20, 31})
          for (int a = 0; a <= m - t[d] - t[e] && e != d; ++a)
            ASSERT_TRUE(is_even(rows[d], rows[e], m, a, m - t[d] - t[e] - a))
                << d << " " << e << " " << m << " " << a;
  };
  std::vector<int> t = {0};
  for (int degree : {1, 2, 3, 3, 4, 4, 5, 5, 5, 5, 5, 5, 6, 6, 6, 6, 6, 6}) t.push_back(degree - 1);
  t.insert(t.end(), 18, 6);
  t.insert(t.end(), 3, 7);
  check(rows(KOB_BRNG_SOBOL, {40}), t);
  t.clear();
  const int irreducible[] = {0, 2, 1, 2, 3, 6, 9, 18, 30, 56, 99, 186};  // how many there are of each degree
  for (int degree = 1; t.size() < 318; ++degree) t.insert(t.end(), size_t(irreducible[degree]), degree - 1);
  t.resize(318);
  check(rows(KOB_BRNG_NIEDERR, {318}), t);
}

// ---- chunks ----

KobGlobalEntry* entry_of(const Stream& s) {
  const KobChunk* chunk = reinterpret_cast<const KobChunk*>(uintptr_t(static_cast<KobStream*>(s)->Chunks));
  while (chunk && chunk->ChunkId != kDirections) chunk = chunk->Next;
  KobGlobalEntry* entry = nullptr;
  return chunk && __kobFindGlobRODataTableEntry(&entry, &chunk->GlobalId) == 0 ? entry : nullptr;
}

TEST(SobolChunks, CopiesShareTheDirections) {
  const long before = orx_serv_live_blocks();
  for (int order = 0; order < 6; ++order) {
    std::vector<Stream*> streams = {new Stream(KOB_BRNG_SOBOL, matrix_seed(Rows(90, kFirstRow)))};
    streams.push_back(new Stream(*streams[0]));
    KobStream* loaded = nullptr;
    ASSERT_EQ(__kobLoadStreamM(&loaded, image_of(*streams[1]).data()), 0);
    streams.push_back(new Stream(loaded));
    ASSERT_TRUE(entry_of(*streams[0]));
    EXPECT_EQ(entry_of(*streams[0])->RefCount, 3);
    for (Stream* s : streams) {
      EXPECT_EQ(__kobSearchChunk(*s, kDirections), __kobSearchChunk(*streams[0], kDirections));
      EXPECT_EQ(__kobSearchChunk(*s, kPoint) == __kobSearchChunk(*streams[0], kPoint), s == streams[0]);
    }
    const Words expected = Stream(*streams[0]).words(300);
    for (int left = 3; left > 0; --left) {
      const int which = left == 3 ? order / 2 : left == 2 ? order % 2 : 0;
      EXPECT_EQ(streams[which]->words(300), expected);
      delete streams[which];
      streams.erase(streams.begin() + which);
      if (left > 1) {
        EXPECT_EQ(entry_of(*streams[0])->RefCount, left - 1);
      }
    }
    EXPECT_EQ(orx_serv_live_blocks(), before);
  }
}

TEST(SobolChunks, SizesAndKinds) {
  for (uint32_t dimension : {1u, 41u, 42u, 47u, 48u, 49u, 64u, 1000u}) {
    const Stream s(KOB_BRNG_SOBOL, matrix_seed(Rows(dimension, kFirstRow)));
    EXPECT_EQ(__kobGetNumChunks(s), 2);
    const uint32_t directions = 4 * (64 * dimension + 2048 - 32 * (4 * dimension & 63));
    EXPECT_EQ(__kobGetStreamSize(s), int(11648 + 24 + directions + 24 + 4 * dimension));
  }
  EXPECT_EQ(__kobGetNumChunks(Stream(KOB_BRNG_SOBOL, {40})), 0);
  const Stream s(KOB_BRNG_NIEDERR, matrix_seed(Rows(319, kFirstRow)));
  EXPECT_NE(__kobSearchChunk(s, kNiederr), nullptr);
  EXPECT_EQ(__kobGetStreamSize(s), 43280 + 24 + 319 * 132);
  EXPECT_EQ(__kobGetNumChunks(Stream(KOB_BRNG_NIEDERR, matrix_seed(Rows(318, kFirstRow)))), 0);
}

TEST(QuasiChunks, MemoryThatRunsOut) {
  for (uint32_t id : {KOB_BRNG_SOBOL, KOB_BRNG_NIEDERR}) {
    const Words seed = matrix_seed(Rows(330, kFirstRow));
    expect_clean_failures([&] {
      KobStream *s = nullptr, *copy = nullptr;
      int status = __kobNewStreamEx(&s, id, int(seed.size()), seed.data());
      if (status == 0) status = __kobCopyStream(&copy, s);
      __kobDeleteStream(&s);
      __kobDeleteStream(&copy);
      return status;
    });
  }
}

TEST(QuasiChunks, SeedingAnewDropsThem) {
  for (uint32_t id : {KOB_BRNG_SOBOL, KOB_BRNG_NIEDERR}) {
    const Stream s(id, matrix_seed(Rows(330, kFirstRow)));
    const uint32_t dimension = 3;
    ASSERT_EQ(s.properties().InitStream(0, s, 1, &dimension), 0);
    EXPECT_EQ(s.words(100), Stream(id, {3}).words(100));
  }
}

}  // namespace
