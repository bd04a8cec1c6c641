// The stream object, its chunks, the table of shared blocks, the registry.
#include <algorithm>
#include <cstring>
#include <thread>

#include "stream.hpp"

namespace {

TEST(Registry, IdsAndRows) {
  uint32_t index, offset;
  const struct {
    uint32_t id, index, offset;
    bool valid;
  } rows[] = {
      {0, 0, 0, true},
      {3, 3, 0, true},
      {4, 4, 0, true},
      {276, 4, 272, true},
      {277, 277, 0, true},
      {278, 278, 0, true},
      {279, 279, 0, false},
      {0xFFFFF, 0xFFFFF, 0, false},
      {0x100000, 0, 0, true},
      {0x100001, 0, 1, false},
      {0x500000 + 272, 4, 272, true},
      {0x500000 + 273, 4, 273, false},
      {0x900000 + 6023, 8, 6023, true},
      {0x900000 + 6024, 8, 6024, false},
      {0xE00000, 13, 0, true},
      {0xFFFFFFFF, 0xFFE, 0xFFFFF, false},
  };
  for (const auto& row : rows) {
    const KobBrngProperties* table = __kobGetBrngBaseOffset(row.id, &index, &offset);
    EXPECT_EQ(index, row.index) << row.id;
    EXPECT_EQ(offset, row.offset) << row.id;
    const int status = row.valid ? KOB_STATUS_OK : KOB_ERROR_BRNG_INDEX;
    EXPECT_EQ(__kobIsBrngValid(table, index, offset), status) << row.id;
    KobBrngProperties p;
    EXPECT_EQ(__kobGetBrngProperties(row.id, &p), status) << row.id;
    KobStream* stream = nullptr;
    if (!row.valid) {
      EXPECT_EQ(__kobNewStreamEx(&stream, row.id, 0, nullptr), KOB_ERROR_BRNG_INDEX);
    }
  }
  for (uint32_t abstract : {KOB_BRNG_IABSTRACT, KOB_BRNG_DABSTRACT, KOB_BRNG_SABSTRACT}) {
    KobStream* stream = nullptr;
    EXPECT_EQ(__kobNewStreamEx(&stream, abstract, 0, nullptr), KOB_ERROR_BRNG_INDEX);
  }
  EXPECT_EQ(__kobGetStreamStateBrng(Stream(KOB_BRNG_SFMT19937)), KOB_BRNG_SFMT19937);
}

TEST(Registry, Properties) {
  const int expected[14][5] = {
      {24, 1, 0, 4, 31},       {1024, 252, 1, 4, 32},   {40, 6, 1, 4, 32},        {32, 1, 0, 8, 59},
      {48, 4, 1, 16, 24},      {11648, 2604, 0, 4, 32}, {43280, 10498, 0, 4, 32}, {2516, 625, 1, 4, 32},
      {308, 70, 1, 4, 32},     {36, 0, 1, 4, 32},       {52, 0, 1, 4, 32},        {44, 0, 1, 4, 32},
      {2536, 625, 1, 16, 128}, {24, 1, 0, 4, 32},
  };
  for (uint32_t row = 0; row < 14; ++row) {
    KobBrngProperties p;
    ASSERT_EQ(__kobGetBrngProperties((row + 1) << 20, &p), KOB_STATUS_OK) << row;
    const int got[] = {p.StateSize, p.SeedCount, p.IncludesZero, p.WordSize, p.BitCount};
    const bool holds_pointers = row >= 9 && row <= 11 && sizeof(void*) != 4;
    EXPECT_EQ(
        memcmp(got + holds_pointers, expected[row] + holds_pointers, (5 - holds_pointers) * sizeof(int)), 0)
        << row;
  }
}

// A registered generator: a counter. Its words are 0, 1, 2, ... from the seed on.
int counter_init(int method, KobStream* stream, int n, const uint32_t params[]) {
  uint32_t& count = *reinterpret_cast<uint32_t*>(stream + 1);
  if (method != 0) return method == 1 ? KOB_ERROR_LEAPFROG_UNSUPPORTED : KOB_ERROR_SKIPAHEAD_UNSUPPORTED;
  count = n > 0 ? params[0] : 0;
  return count == 666 ? KOB_ERROR_BAD_ARG : KOB_STATUS_OK;
}
int counter_words(KobStream* stream, int n, uint32_t r[]) {
  for (int i = 0; i < n; ++i) r[i] = (*reinterpret_cast<uint32_t*>(stream + 1))++;
  return KOB_STATUS_OK;
}
template <class Real>
int counter_reals(KobStream* stream, int n, Real r[], Real a, Real b) {
  for (int i = 0; i < n; ++i)
    r[i] = a + (b - a) * Real(0x1p-32) * Real((*reinterpret_cast<uint32_t*>(stream + 1))++);
  return KOB_STATUS_OK;
}

TEST(Registry, Registration) {
  const KobBrngProperties good = {
      20, 1, 1, 4, 32, counter_init, counter_reals<float>, counter_reals<double>, counter_words};
  // Every field wrong; repaired one by one, in the order in which they are checked.
  KobBrngProperties p = {-1, 0, 7, 5, 0, nullptr, nullptr, nullptr, nullptr};
  EXPECT_EQ(__kobRegisterBrng(&p), KOB_ERROR_BAD_STATE_SIZE);
  p.StateSize = good.StateSize;
  EXPECT_EQ(__kobRegisterBrng(&p), KOB_ERROR_BAD_WORD_SIZE);
  p.WordSize = 16;
  EXPECT_EQ(__kobRegisterBrng(&p), KOB_ERROR_BAD_SEED_COUNT);
  p.SeedCount = 1;
  EXPECT_EQ(__kobRegisterBrng(&p), KOB_ERROR_BAD_BIT_COUNT);
  p.BitCount = 1;
  EXPECT_EQ(__kobRegisterBrng(&p), KOB_ERROR_NULL_PTR);
  for (int missing = 0; missing < 4; ++missing) {
    p = good;
    if (missing == 0) p.InitStream = nullptr;
    if (missing == 1) p.sGenerate = nullptr;
    if (missing == 2) p.dGenerate = nullptr;
    if (missing == 3) p.iGenerate = nullptr;
    EXPECT_EQ(__kobRegisterBrng(&p), KOB_ERROR_NULL_PTR);
  }
  const int rows = __kobGetNumRegBrngs();  // 14, unless another test has registered one
  EXPECT_GE(rows, 14);
  const int id = __kobRegisterBrng(&good);
  EXPECT_EQ(id, 0xF00000 + ((rows - 14) << 20));
  EXPECT_EQ(__kobRegisterBrng(&good), id + 0x100000);
  EXPECT_EQ(__kobGetNumRegBrngs(), rows + 2);

  const Stream counter(uint32_t(id), {100});
  EXPECT_EQ(counter.words(3), (Words{100, 101, 102}));
  EXPECT_EQ(Stream(counter).words(2), (Words{103, 104}));
  Words image(size_t(__kobGetStreamSize(counter)) / 4);
  EXPECT_EQ(__kobSaveStreamM(counter, image.data()), 0);
  KobStream* loaded;
  ASSERT_EQ(__kobLoadStreamM(&loaded, image.data()), 0);
  EXPECT_EQ(Stream(loaded).words(2), (Words{103, 104}));
  uint32_t r[2] = {1, 1};
  uint64_t wide[2];
  EXPECT_EQ(_kobiRngUniformBits32(0, counter, 2, r), KOB_ERROR_UNSUPPORTED_WORD_BITS);
  EXPECT_EQ(_kobiRngUniformBits64(0, counter, 2, wide), KOB_ERROR_UNSUPPORTED_WORD_BITS);
  EXPECT_EQ(counter.words(1), (Words{103}));

  // A seeding that fails leaves the stream with the caller.
  KobStream* failed = nullptr;
  const uint32_t bad_seed = 666;
  EXPECT_EQ(__kobNewStreamEx(&failed, uint32_t(id), 1, &bad_seed), KOB_ERROR_BAD_ARG);
  ASSERT_NE(failed, nullptr);
  EXPECT_EQ(__kobDeleteStream(&failed), 0);
  EXPECT_EQ(failed, nullptr);
  EXPECT_EQ(__kobDeleteStream(&failed), 0);

  // A state smaller than the header.
  p = good;
  p.StateSize = 0;
  const uint32_t tiny_id = uint32_t(__kobRegisterBrng(&p));
  KobStream* tiny;
  uint32_t index, offset;
  const KobBrngProperties* table = __kobGetBrngBaseOffset(tiny_id, &index, &offset);
  ASSERT_EQ(__kobAllocateStream(&tiny, table, tiny_id, index, offset), 0);
  EXPECT_EQ(__kobGetStreamSize(tiny), 16);
  __kobDeleteStream(&tiny);

  // A table that is full, in a process of its own.
  const auto fill = [&good] {
    while (__kobGetNumRegBrngs() < 512)
      if (__kobRegisterBrng(&good) < 0) return 1;
    return __kobRegisterBrng(&good) == KOB_ERROR_BRNG_INDEX && Stream(512u << 20, {5}).words(2) == Words{5, 6}
               ? 0
               : 2;
  };
  EXPECT_EXIT(exit(fill()), testing::ExitedWithCode(0), "");
}

void* block(const void* content, uint32_t size) {
  void* data = orx_serv_allocate(size, 128);
  memcpy(data, content, size);
  return data;
}

int add(KobStream* stream, uint32_t id, const char* text, const KobGlobalId* name = nullptr) {
  return __kobAddChunk(stream, id, name, block(text, uint32_t(strlen(text)) + 1), uint32_t(strlen(text)) + 1);
}

const char* text(const KobStream* stream, uint32_t id) {
  return static_cast<const char*>(__kobSearchChunk(stream, id));
}

TEST(Chunks, AddedFoundCopiedDeleted) {
  const long before = orx_serv_live_blocks();
  {
    const Stream s(KOB_BRNG_MCG59);
    EXPECT_EQ(__kobGetNumChunks(s), 0);
    EXPECT_EQ(text(s, 100), nullptr);
    add(s, 100, "first");
    add(s, 101, "second");
    add(s, 100, "newer");
    EXPECT_EQ(__kobGetNumChunks(s), 3);
    EXPECT_STREQ(text(s, 100), "newer");
    EXPECT_STREQ(text(s, 101), "second");
    const Stream copy = s;
    EXPECT_EQ(__kobGetNumChunks(copy), 3);
    EXPECT_STREQ(text(copy, 101), "second");
    EXPECT_NE(text(copy, 101), text(s, 101));
    EXPECT_STREQ(text(copy, 100), "first");  // a copy's list is reversed
    EXPECT_EQ(__kobDeleteChunks(s), 0);
    EXPECT_EQ(__kobGetNumChunks(s), 0);
  }
  EXPECT_EQ(orx_serv_live_blocks(), before);
}

TEST(Chunks, FailedAllocationsLeaveNothing) {
  const Stream source(KOB_BRNG_R250);
  add(source, 100, "a");
  add(source, 101, "b");
  KobGlobalId name;
  __kobGenerateNewGlobalRODataTableEntryId(&name, 1);
  add(source, 102, "shared", &name);
  KobStream* made = nullptr;
  expect_clean_failures([&] {
    const int status = __kobCopyStream(&made, source);
    EXPECT_EQ(made == nullptr, status != 0);
    __kobDeleteStream(&made);
    return status;
  });
  expect_clean_failures([&] {
    const int status = __kobNewStreamEx(&made, KOB_BRNG_R250, 0, nullptr);
    __kobDeleteStream(&made);
    return status;
  });
  const Stream dest(KOB_BRNG_R250);
  expect_clean_failures([&] {
    const int status = __kobCopyStreamState(dest, source);
    EXPECT_EQ(__kobGetNumChunks(dest), status == 0 ? 3 : 0);
    __kobDeleteChunks(dest);
    return status;
  });
}

TEST(Streams, CopiedStateKeepsWhatTheStreamWasSplitBy) {
  // Of MCG31M1 the position is carried over but not the multiplier, of R250 and MRG32K3A everything.
  const Stream source(KOB_BRNG_MCG31M1, {7}), dest(KOB_BRNG_MCG31M1, {9});
  ASSERT_EQ(__kobLeapfrogStream(source, 1, 3), 0);
  add(source, 100, "of source");
  add(dest, 101, "of dest");
  ASSERT_EQ(__kobCopyStreamState(dest, source), 0);
  EXPECT_EQ(dest.state()[0], source.state()[0]);
  EXPECT_EQ(dest.state()[1], 1132489760u);
  EXPECT_STREQ(text(dest, 100), "of source");
  EXPECT_EQ(text(dest, 101), nullptr);
  ASSERT_EQ(__kobCopyStreamState(dest, dest), 0);
  EXPECT_STREQ(text(dest, 100), "of source");

  for (uint32_t id : {KOB_BRNG_R250, KOB_BRNG_MRG32K3A, KOB_BRNG_MT19937, KOB_BRNG_WH, KOB_BRNG_SFMT19937}) {
    const Stream from(id, {7}), to(id, {9});
    from.words(99);
    ASSERT_EQ(__kobCopyStreamState(to, from), 0);
    EXPECT_EQ(to.words(99), from.words(99)) << id;
  }
  // Between generators of different size: what fits, and nothing beyond.
  const Stream large(KOB_BRNG_R250), small(KOB_BRNG_MCG31M1);
  EXPECT_EQ(__kobCopyStreamState(small, large), 0);
  EXPECT_EQ(__kobGetStreamStateBrng(small), KOB_BRNG_MCG31M1);
}

TEST(Streams, LeapfrogCounts) {
  const Stream s(KOB_BRNG_MCG31M1, {5});
  EXPECT_EQ(__kobLeapfrogStream(s, 0, -1), KOB_ERROR_LEAPFROG_NSTREAMS);
  EXPECT_EQ(__kobLeapfrogStream(s, 0, INT32_MIN), KOB_ERROR_LEAPFROG_NSTREAMS);
  EXPECT_EQ(__kobLeapfrogStream(s, 0, 0), 0);  // a step of no numbers: the first one for ever
  EXPECT_EQ(s.words(20), Words(20, 5));
}

// ---- shared blocks ----

int references(const KobGlobalId& name) {
  KobGlobalEntry* entry;
  return __kobFindGlobRODataTableEntry(&entry, &name) == 0 ? entry->RefCount : 0;
}

TEST(SharedBlocks, LiveAsLongAsAnyStreamInEveryOrderOfDeletion) {
  const long before = orx_serv_live_blocks();
  int order[3] = {0, 1, 2};
  do {
    KobGlobalId name;
    ASSERT_EQ(__kobGenerateNewGlobalRODataTableEntryId(&name, -3), 0);
    EXPECT_EQ(name.Word[2], uint32_t(-3));
    EXPECT_EQ(name.Word[3], 0xFFFFFFFFu);
    KobStream* streams[3] = {};
    __kobNewStreamEx(&streams[0], KOB_BRNG_MCG59, 0, nullptr);
    add(streams[0], 9, "shared", &name);
    __kobCopyStream(&streams[1], streams[0]);
    __kobCopyStream(&streams[2], streams[1]);
    EXPECT_EQ(text(streams[0], 9), text(streams[2], 9));
    for (int left = 3; left > 0; --left) {
      EXPECT_EQ(references(name), left);
      EXPECT_STREQ(text(streams[order[3 - left]], 9), "shared");
      __kobDeleteStream(&streams[order[3 - left]]);
    }
    EXPECT_EQ(references(name), 0);
    EXPECT_EQ(orx_serv_live_blocks(), before);
  } while (std::next_permutation(order, order + 3));
}

TEST(SharedBlocks, TableLimitsAndUnknownNames) {
  const long before = orx_serv_live_blocks();
  KobGlobalEntry* entry;
  const KobGlobalId none = {}, unknown = {{1, 2, 3, 4}};
  EXPECT_EQ(__kobFindGlobRODataTableEntry(&entry, nullptr), KOB_ERROR_GLOBAL_ENTRY_NOT_FOUND);
  EXPECT_EQ(__kobFindGlobRODataTableEntry(&entry, &none), KOB_ERROR_GLOBAL_ENTRY_NOT_FOUND);
  EXPECT_EQ(__kobFindGlobRODataTableEntry(&entry, &unknown), KOB_ERROR_GLOBAL_ENTRY_NOT_FOUND);
  EXPECT_EQ(__kobUnregisterGlobRODataReference(&unknown), KOB_ERROR_GLOBAL_ENTRY_NOT_FOUND);
  KobChunk chunk{};
  EXPECT_EQ(__kobRegisterGlobRODataReference(&chunk, &unknown), KOB_ERROR_GLOBAL_ENTRY_NOT_FOUND);

  std::vector<KobGlobalId> names(129);
  for (int i = 0; i < 127; ++i) {
    __kobGenerateNewGlobalRODataTableEntryId(&names[i], i);
    ASSERT_EQ(__kobCreateGlobRODataTableEntry(&entry, &names[i], block(&i, 4)), 0);
  }
  {
    const Stream s(KOB_BRNG_MCG59);
    __kobGenerateNewGlobalRODataTableEntryId(&names[127], 127);
    add(s, 9, "private after all", &names[127]);
    EXPECT_EQ(references(names[127]), 0);
    EXPECT_STREQ(text(Stream(s), 9), "private after all");
    // A name that is in the table is still shared.
    void* mine = block("mine", 5);
    ASSERT_EQ(__kobAddChunk(s, 10, &names[5], mine, 5), 0);
    EXPECT_NE(__kobSearchChunk(s, 10), mine);
    EXPECT_EQ(references(names[5]), 2);
    orx_serv_deallocate(mine);
  }
  ASSERT_EQ(__kobCreateGlobRODataTableEntry(&entry, &names[127], nullptr), 0);
  EXPECT_EQ(__kobCreateGlobRODataTableEntry(&entry, &unknown, nullptr), KOB_ERROR_GLOBAL_TABLE_FULL);
  for (int i : {127, 0, 63}) EXPECT_EQ(__kobUnregisterGlobRODataReference(&names[i]), 0);
  for (int i = 1; i < 127; ++i) {
    if (i == 63) continue;
    ASSERT_EQ(__kobFindGlobRODataTableEntry(&entry, &names[i]), 0);
    EXPECT_EQ(*static_cast<int*>(entry->Data), i);
    EXPECT_EQ(__kobUnregisterGlobRODataReference(&names[i]), 0);
  }
  EXPECT_EQ(orx_serv_live_blocks(), before);
}

TEST(SharedBlocks, CopiedAndDeletedFromSeveralThreads) {
  const Stream source(KOB_BRNG_MCG59);
  KobGlobalId name;
  __kobGenerateNewGlobalRODataTableEntryId(&name, 0);
  add(source, 9, "shared", &name);
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t)
    threads.emplace_back([&source] {
      for (int i = 0; i < 2000; ++i) {
        const Stream copy = source;
        EXPECT_EQ(text(copy, 9), text(source, 9));
      }
    });
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(references(name), 1);
}

}  // namespace
