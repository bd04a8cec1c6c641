// The stream object, its chunks, the table of shared blocks, the registry.
#include <sys/prctl.h>
#include <ucontext.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <thread>

#include "support/stream.hpp"

namespace {

TEST(Registry, IdsAndRows) {
  const struct {
    uint32_t id, index, offset;
    bool valid;
  } rows[] = {{0, 0, 0, true},
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
              {0xD00000, 12, 0, true},
              {0xE00000, 13, 0, true},
              {0xFFFFFFFF, 0xFFE, 0xFFFFF, false}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.id);
    uint32_t index, offset;
    const KobBrngProperties* table = __kobGetBrngBaseOffset(row.id, &index, &offset);
    EXPECT_EQ(index, row.index);
    EXPECT_EQ(offset, row.offset);
    const int status = row.valid ? KOB_STATUS_OK : KOB_ERROR_BRNG_INDEX;
    EXPECT_EQ(__kobIsBrngValid(table, index, offset), status);
    KobBrngProperties p;
    EXPECT_EQ(__kobGetBrngProperties(row.id, &p), status);
    KobStream* stream = nullptr;
    EXPECT_EQ(__kobNewStreamEx(&stream, row.id, 0, nullptr), status);
    EXPECT_EQ(stream ? uint32_t(__kobGetStreamStateBrng(stream)) : row.id, row.id);
    __kobDeleteStream(&stream);
  }
  KobStream* stream = nullptr;
  for (uint32_t abstract : {KOB_BRNG_IABSTRACT, KOB_BRNG_DABSTRACT, KOB_BRNG_SABSTRACT})
    EXPECT_EQ(__kobNewStreamEx(&stream, abstract, 0, nullptr), KOB_ERROR_BRNG_INDEX);
}

TEST(Registry, Properties) {
  const int expected[14][5] = {{24, 1, 0, 4, 31},        {1024, 252, 1, 4, 32}, {40, 6, 1, 4, 32},
                               {32, 1, 0, 8, 59},        {48, 4, 1, 16, 24},    {11648, 2604, 0, 4, 32},
                               {43280, 10498, 0, 4, 32}, {2516, 625, 1, 4, 32}, {308, 70, 1, 4, 32},
                               {36, 0, 1, 4, 32},        {52, 0, 1, 4, 32},     {44, 0, 1, 4, 32},
                               {2536, 625, 1, 16, 128},  {24, 1, 0, 4, 32}};
  for (uint32_t row = 0; row < 14; ++row) {
    KobBrngProperties p;
    ASSERT_EQ(__kobGetBrngProperties((row + 1) << 20, &p), KOB_STATUS_OK) << row;
    const int got[] = {p.StateSize, p.SeedCount, p.IncludesZero, p.WordSize, p.BitCount};
    const bool holds_pointers = row >= 9 && row <= 11 && sizeof(void*) != 4;
    EXPECT_TRUE(std::equal(got + holds_pointers, got + 5, expected[row] + holds_pointers)) << row;
  }
}

// A registered generator: a counter. Its words are 0, 1, 2, ... from the seed on.
uint32_t& count(KobStream* stream) { return *reinterpret_cast<uint32_t*>(stream + 1); }
int counter_init(int, KobStream* stream, int n, const uint32_t params[]) {
  count(stream) = n > 0 ? params[0] : 0;
  return count(stream) == 666 ? KOB_ERROR_BAD_ARG : KOB_STATUS_OK;
}
int counter_words(KobStream* stream, int n, uint32_t r[]) {
  for (int i = 0; i < n; ++i) r[i] = count(stream)++;
  return KOB_STATUS_OK;
}
template <class Real>
int counter_reals(KobStream*, int, Real*, Real, Real) {
  return KOB_STATUS_OK;
}
const KobBrngProperties kCounter = {
    20, 1, 1, 4, 32, counter_init, counter_reals<float>, counter_reals<double>, counter_words};

// Every field wrong; repaired one by one, in the order in which they are checked.
TEST(Registry, ChecksWhatIsRegistered) {
  KobBrngProperties p = {-1, 0, 7, 5, 0, nullptr, nullptr, nullptr, nullptr};
  const auto expect_and_mend = [&p](int status, const auto& mend) {
    EXPECT_EQ(__kobRegisterBrng(&p), status);
    mend();
  };
  expect_and_mend(KOB_ERROR_BAD_STATE_SIZE, [&] { p.StateSize = 0; });
  expect_and_mend(KOB_ERROR_BAD_WORD_SIZE, [&] { p.WordSize = 16; });
  expect_and_mend(KOB_ERROR_BAD_SEED_COUNT, [&] { p.SeedCount = 1; });
  expect_and_mend(KOB_ERROR_BAD_BIT_COUNT, [&] { p.BitCount = 1; });
  expect_and_mend(KOB_ERROR_NULL_PTR, [&] { p.InitStream = counter_init; });
  expect_and_mend(KOB_ERROR_NULL_PTR, [&] { p.sGenerate = counter_reals<float>; });
  expect_and_mend(KOB_ERROR_NULL_PTR, [&] { p.dGenerate = counter_reals<double>; });
  expect_and_mend(KOB_ERROR_NULL_PTR, [&] { p.iGenerate = counter_words; });
  const uint32_t id = uint32_t(__kobRegisterBrng(&p));  // with a state smaller than the header
  uint32_t index, offset;
  const KobBrngProperties* table = __kobGetBrngBaseOffset(id, &index, &offset);
  KobStream* tiny;
  ASSERT_EQ(__kobAllocateStream(&tiny, table, id, index, offset), 0);
  const Stream owned(tiny);
  Words image(4);
  ASSERT_EQ(__kobGetStreamSize(owned), 16);
  __kobSaveStreamM(owned, image.data());
  KobStream* loaded = nullptr;
  EXPECT_EQ(__kobLoadStreamM(&loaded, image.data()), 0);  // the first row behind the built-in ones
  __kobDeleteStream(&loaded);
}

TEST(Registry, ARegisteredGenerator) {
  const int rows = __kobGetNumRegBrngs();  // 14, unless another test has registered one
  const int id = __kobRegisterBrng(&kCounter);
  EXPECT_EQ(id, 0xF00000 + ((rows - 14) << 20));
  EXPECT_EQ(__kobGetNumRegBrngs(), rows + 1);
  const Stream counter(uint32_t(id), {100});
  EXPECT_EQ(counter.words(3), (Words{100, 101, 102}));
  KobStream* made;
  Words image(size_t(__kobGetStreamSize(counter)) / 4);
  EXPECT_EQ(__kobSaveStreamM(counter, image.data()), 0);
  ASSERT_EQ(__kobLoadStreamM(&made, image.data()), 0);
  EXPECT_EQ(Stream(made).words(2), (Words{103, 104}));
  uint64_t r[2];
  EXPECT_EQ(_kobiRngUniformBits32(0, counter, 2, image.data()), KOB_ERROR_UNSUPPORTED_WORD_BITS);
  EXPECT_EQ(_kobiRngUniformBits64(0, counter, 2, r), KOB_ERROR_UNSUPPORTED_WORD_BITS);
  EXPECT_EQ(Stream(counter).words(1), (Words{103}));

  // A seeding that fails leaves the stream with the caller.
  const uint32_t bad_seed = 666;
  EXPECT_EQ(__kobNewStreamEx(&made, uint32_t(id), 1, &bad_seed), KOB_ERROR_BAD_ARG);
  ASSERT_NE(made, nullptr);
  for (int times = 0; times < 2; ++times) {
    EXPECT_EQ(__kobDeleteStream(&made), 0);
    EXPECT_EQ(made, nullptr);
  }
}

// In a process of its own.
TEST(Registry, IsFullAt512) {
  const auto fill = [] {
    while (__kobGetNumRegBrngs() < 512)
      if (__kobRegisterBrng(&kCounter) < 0) return 1;
    const bool full = __kobRegisterBrng(&kCounter) == KOB_ERROR_BRNG_INDEX;
    return full && Stream(512u << 20, {5}).words(2) == Words{5, 6} ? 0 : 2;
  };
  EXPECT_EXIT(exit(fill()), testing::ExitedWithCode(0), "");
}

// ---- chunks ----

// The first word of a chunk, 0 when there is none.
uint32_t content(const KobStream* stream, uint32_t kind) {
  const void* data = __kobSearchChunk(stream, kind);
  return data ? *static_cast<const uint32_t*>(data) : 0;
}

TEST(Chunks, AddedFoundCopiedDeleted) {
  const long before = orx_serv_live_blocks();
  {
    const Stream s(KOB_BRNG_MCG59);
    EXPECT_EQ(__kobGetNumChunks(s), 0);
    EXPECT_EQ(__kobSearchChunk(s, 100), nullptr);
    for (const auto& [kind, word] : {std::pair(100u, 1u), {101u, 2u}, {100u, 3u}}) add_chunk(s, kind, {word});
    const Stream copy = s;
    EXPECT_NE(__kobSearchChunk(copy, 101), __kobSearchChunk(s, 101));
    for (const Stream* stream : {&s, &copy}) {
      EXPECT_EQ(__kobGetNumChunks(*stream), 3);
      EXPECT_EQ(content(*stream, 101), 2u);
      EXPECT_EQ(content(*stream, 100), stream == &s ? 3u : 1u);  // a copy's list is reversed
    }
    EXPECT_EQ(__kobDeleteChunks(s), 0);
    EXPECT_EQ(__kobGetNumChunks(s), 0);
  }
  EXPECT_EQ(orx_serv_live_blocks(), before);
}

TEST(Chunks, FailedAllocationsLeaveNothing) {
  const Stream source(KOB_BRNG_R250), dest(KOB_BRNG_R250);
  KobGlobalId name;
  __kobGenerateNewGlobalRODataTableEntryId(&name, 1);
  for (uint32_t kind : {100, 101, 102}) add_chunk(source, kind, {1, 2}, kind == 102 ? &name : nullptr);
  expect_clean_making([&](KobStream** s) { return __kobNewStreamEx(s, KOB_BRNG_R250, 0, nullptr); });
  expect_clean_making([&](KobStream** s) {
    const int status = __kobCopyStream(s, source);
    EXPECT_EQ(*s == nullptr, status != 0);
    return status;
  });
  fail_each_allocation(KOB_ERROR_MEM_FAILURE, [&] {
    const int status = __kobCopyStreamState(dest, source);
    EXPECT_EQ(__kobGetNumChunks(dest), status == 0 ? 3 : 0);
    __kobDeleteChunks(dest);
    return status;
  });
  // Points of many dimensions cannot go on without their chunks.
  Words matrix(3 + 32 * 400, 0x80000000);
  matrix[0] = 400, matrix[1] = 1, matrix[2] = 4;
  const Stream wide(KOB_BRNG_SOBOL, matrix), points(KOB_BRNG_SOBOL);
  fail_each_allocation(KOB_ERROR_MEM_FAILURE, [&] {
    const int status = __kobCopyStreamState(points, wide);
    double r[400];
    EXPECT_EQ(_kobdRngUniform(0, points, 400, r, 0, 1), 0);
    EXPECT_EQ(points.state()[1], status == 0 ? 400u : 1u);
    __kobDeleteChunks(points);
    return status;
  });
}

// Of MCG31M1 the position is carried over but not the multiplier.
TEST(Chunks, CopiedStateKeepsWhatTheStreamWasSplitBy) {
  const Stream source(KOB_BRNG_MCG31M1, {7}), dest(KOB_BRNG_MCG31M1, {9}), large(KOB_BRNG_R250);
  ASSERT_EQ(__kobLeapfrogStream(source, 1, 3), 0);
  add_chunk(source, 100, {1});
  add_chunk(dest, 101, {2});
  ASSERT_EQ(__kobCopyStreamState(dest, source), 0);
  ASSERT_EQ(__kobCopyStreamState(dest, dest), 0);
  EXPECT_EQ(Words(dest.state(), dest.state() + 2), (Words{source.state()[0], 1132489760}));
  EXPECT_EQ(content(dest, 100), 1u);
  EXPECT_EQ(__kobSearchChunk(dest, 101), nullptr);
  // Between generators of different size: what fits, and nothing beyond.
  large.state()[0] = 12345;
  EXPECT_EQ(__kobCopyStreamState(dest, large), 0);
  EXPECT_EQ(dest.words(1), Words{12345});
  EXPECT_EQ(__kobGetStreamStateBrng(dest), KOB_BRNG_MCG31M1);
}

// A point of many dimensions needs the direction numbers of all of them, up to the last bit of the index.
TEST(Chunks, CopiedStateBringsTheDirectionNumbersAlong) {
  for (const auto& [id, most] : {std::pair(KOB_BRNG_SOBOL, 40u), {KOB_BRNG_NIEDERR, 318u}}) {
    const Stream source(id, {most}), dest(id, {2});
    ASSERT_EQ(__kobSkipAheadStream(source, 0x7FFFFFF0 * uint64_t(most) + 3), 0);
    ASSERT_EQ(__kobCopyStreamState(dest, source), 0);
    EXPECT_EQ(dest.words(100 * int(most)), Stream(source).words(100 * int(most))) << id;
  }
}

// What another generator cannot go on from is refused, and the stream is as a fresh one.
TEST(Chunks, StatesOfOtherGenerators) {
  const Stream wide(KOB_BRNG_NIEDERR, {318}), mt(KOB_BRNG_MT19937);
  for (uint32_t id : {KOB_BRNG_SOBOL, KOB_BRNG_R250, KOB_BRNG_MT2203}) {
    const Stream dest(id, {7});
    EXPECT_EQ(__kobCopyStreamState(dest, id == KOB_BRNG_SOBOL ? wide : mt), KOB_ERROR_BAD_ARG) << id;
    EXPECT_EQ(dest.words(50), Stream(id, {}).words(50));
  }
}

// ---- shared blocks ----

int references(const KobGlobalId& name) {
  KobGlobalEntry* entry;
  return __kobFindGlobRODataTableEntry(&entry, &name) == 0 ? entry->RefCount : 0;
}

TEST(SharedBlocks, TableLimitsAndUnknownNames) {
  const long before = orx_serv_live_blocks();
  KobGlobalEntry* entry;
  const KobGlobalId none = {}, unknown = {{1, 2, 3, 4}};
  for (const KobGlobalId* name : {static_cast<const KobGlobalId*>(nullptr), &none, &unknown}) {
    KobChunk chunk{};
    EXPECT_EQ(__kobFindGlobRODataTableEntry(&entry, name), KOB_ERROR_GLOBAL_ENTRY_NOT_FOUND);
    EXPECT_EQ(__kobRegisterGlobRODataReference(&chunk, name), KOB_ERROR_GLOBAL_ENTRY_NOT_FOUND);
    EXPECT_EQ(__kobUnregisterGlobRODataReference(name), KOB_ERROR_GLOBAL_ENTRY_NOT_FOUND);
  }
  KobGlobalId names[128];
  for (int i = 0; i < 128; ++i) {
    ASSERT_EQ(__kobGenerateNewGlobalRODataTableEntryId(&names[i], i - 3), 0);
    EXPECT_EQ(names[i].Word[2], uint32_t(i - 3));
    EXPECT_EQ(names[i].Word[3], i < 3 ? 0xFFFFFFFF : 0);
    if (i == 127) break;
    int* data = static_cast<int*>(orx_serv_allocate(sizeof i, 128));
    *data = i;
    ASSERT_EQ(__kobCreateGlobRODataTableEntry(&entry, &names[i], data), 0);
  }
  {
    const Stream s(KOB_BRNG_MCG59);
    add_chunk(s, 9, {77}, &names[127]);  // private after all
    EXPECT_EQ(references(names[127]), 0);
    EXPECT_EQ(content(Stream(s), 9), 77u);
    // A name that is in the table is still shared.
    void* mine = add_chunk(s, 10, {78}, &names[5]);
    EXPECT_EQ(content(s, 10), 5u);
    EXPECT_EQ(references(names[5]), 2);
    orx_serv_deallocate(mine);
  }
  ASSERT_EQ(__kobCreateGlobRODataTableEntry(&entry, &names[127], nullptr), 0);
  EXPECT_EQ(__kobCreateGlobRODataTableEntry(&entry, &unknown, nullptr), KOB_ERROR_GLOBAL_TABLE_FULL);
  EXPECT_EQ(__kobUnregisterGlobRODataReference(&names[127]), 0);
  for (int i = 0; i < 127; ++i) {
    const KobGlobalId& name = names[i * 50 % 127];
    ASSERT_EQ(__kobFindGlobRODataTableEntry(&entry, &name), 0);
    EXPECT_EQ(*static_cast<int*>(entry->Data), i * 50 % 127);
    EXPECT_EQ(__kobUnregisterGlobRODataReference(&name), 0);
  }
  EXPECT_EQ(orx_serv_live_blocks(), before);
}

// While it lives, the time-stamp counter stands still: the kernel is asked to refuse the instruction, and the handler puts
// a number in its place.
class StoppedClock {
 public:
  StoppedClock() {
    struct sigaction action = {};
    action.sa_sigaction = [](int, siginfo_t*, void* context) {
      auto& registers = static_cast<ucontext_t*>(context)->uc_mcontext.gregs;
#if defined(__i386__)
      auto &at = registers[REG_EIP], &low = registers[REG_EAX], &high = registers[REG_EDX];
#else
      auto &at = registers[REG_RIP], &low = registers[REG_RAX], &high = registers[REG_RDX];
#endif
      const auto* instruction = reinterpret_cast<const unsigned char*>(at);
      if (instruction[0] != 0x0F || instruction[1] != 0x31) abort();
      low = 12345, high = 67;
      at += 2;
    };
    action.sa_flags = SA_SIGINFO;
    sigaction(SIGSEGV, &action, &before_);
    stopped_ = prctl(PR_SET_TSC, PR_TSC_SIGSEGV) == 0;
  }
  ~StoppedClock() {
    if (stopped_) prctl(PR_SET_TSC, PR_TSC_ENABLE);
    sigaction(SIGSEGV, &before_, nullptr);
  }
  StoppedClock(const StoppedClock&) = delete;
  StoppedClock& operator=(const StoppedClock&) = delete;
  bool stopped() const { return stopped_; }

 private:
  struct sigaction before_;
  bool stopped_;
};

bool are_unique(std::vector<KobGlobalId> names) {
  const auto less = [](const KobGlobalId& x, const KobGlobalId& y) { return memcmp(&x, &y, sizeof x) < 0; };
  std::sort(names.begin(), names.end(), less);
  return std::adjacent_find(names.begin(), names.end(), std::not_fn(less)) == names.end();
}

// A name is its maker's alone, entered or not, though all ask at the same instant: as threads may, here by force.
TEST(SharedBlocks, NamesAreUnique) {
  std::vector<KobGlobalId> names(100);
  bool stopped;
  {
    const StoppedClock clock;
    stopped = clock.stopped();
    for (KobGlobalId& name : names) __kobGenerateNewGlobalRODataTableEntryId(&name, 7);
  }
  EXPECT_TRUE(are_unique(names));
  if (!stopped) GTEST_SKIP() << "the kernel does not stop the time-stamp counter";
}

TEST(SharedBlocks, NamesOfSeveralThreadsAreUnique) {
  constexpr size_t kEach = 50000, kThreads = 4;
  std::vector<KobGlobalId> names(kEach * kThreads);
  std::vector<std::thread> threads;
  for (size_t t = 0; t < kThreads; ++t)
    threads.emplace_back([&, t] {
      for (size_t i = 0; i < kEach; ++i) __kobGenerateNewGlobalRODataTableEntryId(&names[t * kEach + i], 7);
    });
  for (auto& thread : threads) thread.join();
  EXPECT_TRUE(are_unique(names));
}

// Streams that come and go in several threads, copies and others that bring a block of the same name.
TEST(SharedBlocks, FromSeveralThreads) {
  const long before = orx_serv_live_blocks();
  {
    const Stream source(KOB_BRNG_MCG59);
    KobGlobalId kept, passing;
    __kobGenerateNewGlobalRODataTableEntryId(&kept, 0);
    __kobGenerateNewGlobalRODataTableEntryId(&passing, 1);
    add_chunk(source, 9, {77}, &kept);
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
      threads.emplace_back([&] {
        const Stream own(KOB_BRNG_MCG59);
        for (int i = 0; i < 20000; ++i) {
          void* data = add_chunk(own, 100, {1, 2}, &passing);
          if (__kobSearchChunk(own, 100) != data) orx_serv_deallocate(data);
          ASSERT_EQ(__kobCopyChunks(own, source), 0);
          ASSERT_EQ(content(own, 9), 77u);
          __kobDeleteChunks(own);
        }
      });
    for (auto& thread : threads) thread.join();
    EXPECT_EQ(references(kept), 1);
    EXPECT_EQ(references(passing), 0);
  }
  EXPECT_EQ(orx_serv_live_blocks(), before);
}

}  // namespace
