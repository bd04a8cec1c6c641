// Images of streams: their bytes, and what happens to those that cannot be loaded. That loaded streams go on
// is tested for every generator.
#include <sys/resource.h>

#include <csignal>

#include "image.hpp"
#include "support/stream.hpp"

namespace {

constexpr uint32_t kOther = 100;  // a kind of chunk that is nobody's

// Loads, and expects a stream only where that succeeds.
int load_file(const char* name, int length, KobStream** stream) {
  *stream = reinterpret_cast<KobStream*>(1);
  const int status = __kobLoadStreamF(stream, name, length);
  EXPECT_EQ(*stream == nullptr, status != 0);
  return status;
}
int load_file(const Bytes& image, KobStream** stream) {
  return load_file(TemporaryFile(image).name(), -1, stream);
}
int load_memory(const Bytes& image, KobStream** stream) {
  *stream = reinterpret_cast<KobStream*>(1);
  const int status = __kobLoadStreamM(stream, image.data());
  EXPECT_EQ(*stream == nullptr, status != 0);
  return status;
}

void expect_refused(const Bytes& image, int status = KOB_ERROR_BAD_FILE_FORMAT) {
  const long before = orx_serv_live_blocks();
  KobStream* loaded;
  EXPECT_EQ(load_file(image, &loaded), status);
  EXPECT_EQ(load_memory(image, &loaded), KOB_ERROR_BAD_MEM_FORMAT);
  EXPECT_EQ(orx_serv_live_blocks(), before);
}

Bytes changed(Bytes image, size_t offset, const Bytes& bytes) {
  std::copy(bytes.begin(), bytes.end(), image.begin() + offset);
  return image;
}

TEST(Persistence, TheImage) {
  const Stream s(KOB_BRNG_MCG31M1, {7});
  add_chunk(s, kOther, {0x11111111});
  add_chunk(s, 101, {0x22222222, 0x33333333});
  const Words expected = {0x474E5201, 16 | 8 << 16,
                          2,          KOB_BRNG_MCG31M1,  // header
                          7,          1132489760,        // state
                          101,        0,
                          0,          0,
                          0,          8,
                          0x22222222, 0x33333333,  // head of the list first
                          kOther,     0,
                          0,          0,
                          0,          4,
                          0x11111111};
  const Bytes image = image_of(s);
  ASSERT_EQ(image.size(), expected.size() * 4);
  EXPECT_EQ(memcmp(image.data(), expected.data(), image.size()), 0);
}

TEST(Persistence, FileNamesAndFailedAllocations) {
  const Stream s(KOB_BRNG_MCG59);
  add_chunk(s, kOther, {1});
  add_chunk(s, 1, {2, 3});
  const TemporaryFile file;
  const std::string longer = std::string(file.name()) + "and what is not part of the name";
  const int length = int(strlen(file.name()));
  KobStream* loaded;
  for (const auto& [name, none] : {std::pair(longer.c_str(), 0), {"", -1}}) {
    EXPECT_EQ(__kobSaveStreamF(s, name, none), KOB_ERROR_FILE_OPEN);
    EXPECT_EQ(load_file(name, none, &loaded), KOB_ERROR_FILE_OPEN);
  }
  fail_each_allocation(KOB_ERROR_MEM_FAILURE, [&] { return __kobSaveStreamF(s, longer.c_str(), length); });
  EXPECT_EQ(file.content(), image_of(s));
  expect_clean_making([&](KobStream** stream) { return load_file(longer.c_str(), length, stream); });
  expect_clean_making([&](KobStream** stream) { return load_memory(image_of(s), stream); });
}

// With a file of no more than `limit` bytes.
int save_limited(const KobStream* stream, const char* name, rlim_t limit) {
  signal(SIGXFSZ, SIG_IGN);
  rlimit before;
  getrlimit(RLIMIT_FSIZE, &before);
  const rlimit limited = {limit, before.rlim_max};
  setrlimit(RLIMIT_FSIZE, &limited);
  const int status = __kobSaveStreamF(stream, name, -1);
  setrlimit(RLIMIT_FSIZE, &before);
  return status;
}

TEST(Persistence, AFullDisk) {
  const Stream large(KOB_BRNG_NIEDERR), small(KOB_BRNG_MCG59);
  EXPECT_EQ(__kobSaveStreamF(small, "/dev/full", -1),
            KOB_ERROR_FILE_CLOSE);  // told when the buffer is flushed
  const TemporaryFile file;
  EXPECT_EQ(save_limited(large, file.name(), 8192), KOB_ERROR_FILE_WRITE);
  add_chunk(small, kOther, Words(10000));
  EXPECT_EQ(save_limited(small, file.name(), 8192), KOB_ERROR_FILE_WRITE);
  EXPECT_EQ(__kobSaveStreamF(small, file.name(), -1), 0);
}

TEST(Persistence, SteppingThroughAnImage) {
  const TemporaryFile named(Bytes{1, 2, 3, 4, 5, 6, 7, 8});
  FILE* file = fopen(named.name(), "rb");
  ASSERT_NE(file, nullptr);
  Bytes memory = named.content(), back(8);
  KobCursor cursor{memory.data(), 0};
  EXPECT_EQ(__kobSkipLoadingFromMemory(&cursor, 4), 0);
  EXPECT_EQ(__kobSkipLoadingFromFile(file, 4), 0);
  EXPECT_EQ(__kobLoadFromMemory(&back[0], 2, 2, &cursor), 0);
  EXPECT_EQ(__kobLoadFromFile(&back[4], 4, 1, file), 0);
  EXPECT_EQ(back, (Bytes{5, 6, 7, 8, 5, 6, 7, 8}));
  EXPECT_EQ(cursor.Position, 8u);
  EXPECT_EQ(__kobLoadFromFile(&back[0], 1, 1, file), KOB_ERROR_FILE_READ);
  fclose(file);
}

TEST(Persistence, BadHeaders) {
  const Stream s(KOB_BRNG_MCG31M1, {7});
  add_chunk(s, kOther, {0x11111111});
  const Bytes good = image_of(s);
  const struct {
    size_t offset;
    Bytes bytes;
    int status;
  } changes[] = {
      {1, {'X'}, KOB_ERROR_BAD_FILE_FORMAT},
      {3, {'g'}, KOB_ERROR_BAD_FILE_FORMAT},
      {0, {2}, KOB_ERROR_UNSUPPORTED_FILE_VER},
      {0, {0xFF}, KOB_ERROR_UNSUPPORTED_FILE_VER},
      {0, {'R', 'N', 'G', 2}, KOB_ERROR_UNSUPPORTED_FILE_VER},
      {4, {15}, KOB_ERROR_BAD_FILE_FORMAT},
      {6, {7}, KOB_ERROR_BAD_FILE_FORMAT},
      {7, {1}, KOB_ERROR_BAD_FILE_FORMAT},
      {12, {1}, KOB_ERROR_BAD_FILE_FORMAT},     // MCG31M1 has one generator
      {14, {0xFF}, KOB_ERROR_BAD_FILE_FORMAT},  // no such family
      {14, {0x40}, KOB_ERROR_BAD_FILE_FORMAT},  // another one, with a larger state
  };
  for (const auto& change : changes)
    expect_refused(changed(good, change.offset, change.bytes), change.status);
  // The other byte order of the magic is let in, but its chunks are not understood.
  Bytes swapped = changed(good, 0, {'R', 'N', 'G', 1});
  KobStream* loaded;
  EXPECT_EQ(load_file(swapped, &loaded), KOB_ERROR_FILE_READ);
  swapped[8] = 0;
  ASSERT_EQ(load_file(swapped, &loaded), KOB_STATUS_OK);
  EXPECT_EQ(Stream(loaded).words(1), Words{7});
  // Version 0 has no names of shared blocks.
  Bytes older = changed(good, 0, {0});
  older.erase(older.begin() + 28, older.begin() + 44);
  ASSERT_EQ(load_file(older, &loaded), KOB_STATUS_OK);
  EXPECT_EQ(image_of(Stream(loaded)), good);
}

// Of a stream with one chunk: cut anywhere, or told to be longer than it is.
TEST(Persistence, LengthsThatTheFileCannotHold) {
  const Stream s(KOB_BRNG_MCG59);
  add_chunk(s, kOther, {1});
  const Bytes good = image_of(s);
  KobStream* loaded;
  for (size_t length = 0; length < good.size(); ++length)
    EXPECT_EQ(load_file(Bytes(good.begin(), good.begin() + length), &loaded), KOB_ERROR_FILE_READ) << length;
  EXPECT_EQ(load_file(changed(good, 8, {0xFF, 0xFF}), &loaded), KOB_ERROR_FILE_READ);
  for (uint32_t size : {5u, 1u << 20, 1u << 25, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu}) {
    const unsigned char* bytes = reinterpret_cast<const unsigned char*>(&size);
    EXPECT_EQ(load_file(changed(good, 16 + 16 + 20, Bytes(bytes, bytes + 4)), &loaded), KOB_ERROR_FILE_READ);
  }
  // A large block that is there is read.
  add_chunk(s, 101, Words(5 << 20, 0xABCDEF01));
  ASSERT_EQ(load_file(image_of(s), &loaded), KOB_STATUS_OK);
  EXPECT_TRUE(image_of(Stream(loaded)) == image_of(Stream(s)));
}

TEST(Persistence, StatesAndChunksThatCannotBeUsedAreRefused) {
  // Index fields, each by its place in the state.
  const struct {
    uint32_t id;
    int place;
    uint32_t value;
  } states[] = {{KOB_BRNG_R250, 250, 250},
                {KOB_BRNG_R250, 251, 250},
                {KOB_BRNG_R250, 250, 0xFFFFFFFF},
                {KOB_BRNG_R250, 251, 104},
                {KOB_BRNG_MT19937, 624, 625},
                {KOB_BRNG_MT2203, 69, 70},
                {KOB_BRNG_WH, 0, 1u << 24},
                {KOB_BRNG_WH, 7, 1u << 24},
                {KOB_BRNG_WH, 3, 16770617},
                {KOB_BRNG_WH, 7, 16770617},
                {KOB_BRNG_SFMT19937, 624, 628},
                {KOB_BRNG_WH, 3, 0},
                {KOB_BRNG_WH, 4, 0},
                {KOB_BRNG_MCG31M1, 0, 0},
                {KOB_BRNG_MCG31M1, 0, 0x7FFFFFFF},
                {KOB_BRNG_MCG31M1, 1, 0},
                {KOB_BRNG_MCG31M1, 1, 0x7FFFFFFF},
                {KOB_BRNG_MCG59, 0, 0},
                {KOB_BRNG_MCG59, 1, 1u << 27},
                {KOB_BRNG_MCG59, 2, 0},
                {KOB_BRNG_MCG59, 3, 1u << 27},
                {KOB_BRNG_MRG32K3A, 0, 4294967087u},
                {KOB_BRNG_MRG32K3A, 5, 4294944443u},
                {KOB_BRNG_SFMT19937, 628, 4},
                {KOB_BRNG_SFMT19937, 629, 4},
                {KOB_BRNG_SOBOL, 1, 41},
                {KOB_BRNG_SOBOL, 1, 0},
                {KOB_BRNG_SOBOL, 2, 1},
                {KOB_BRNG_SOBOL, 3, 1},
                {KOB_BRNG_NIEDERR, 1, 319},
                {KOB_BRNG_NIEDERR, 1, 0x80000000}};
  for (const auto& bad : states) {
    SCOPED_TRACE(bad.id);
    const Stream s(bad.id);
    s.state()[bad.place] = bad.value;
    expect_refused(image_of(s));
  }
  for (int component : {0, 3}) {  // zeros, which no step leaves
    const Stream s(KOB_BRNG_MRG32K3A);
    std::fill_n(s.state() + component, 3, 0);
    expect_refused(image_of(s));
  }
  // Chunks a word too small for their kind, and numbers of left-overs that are not there.
  std::vector<std::pair<uint32_t, Words>> chunks = {
      {11, {1, 2, 3}}, {11, {1, 2, 3, 4}}, {11, {1, 2, 3, 0xFFFFFFFF}}, {12, Words{1, 0}}, {12, {1, 2, 2}}};
  const uint32_t least[] = {2, 4, 174, 332, 136, 149, 4, 2};
  for (uint32_t kind = 1; kind <= 8; ++kind) chunks.emplace_back(kind, Words(least[kind - 1] - 1));
  for (const auto& [kind, words] : chunks) {
    SCOPED_TRACE(kind);
    const Stream s(KOB_BRNG_SFMT19937);
    add_chunk(s, kind, words);
    expect_refused(image_of(s));
  }
  KobGlobalId name;
  __kobGenerateNewGlobalRODataTableEntryId(&name, 0);
  const Stream shared(KOB_BRNG_SFMT19937), twice(KOB_BRNG_SOBOL);
  add_chunk(shared, 11, {1, 2, 3, 3}, &name);  // a block that is written to must not be shared
  expect_refused(image_of(shared));
  for (uint32_t size : {41u * 32, 1u}) add_chunk(twice, 9, Words(size));  // a copy would find the other first
  expect_refused(image_of(twice));
}

// A tampered image that comes first must not stand in for the good one.
TEST(Persistence, TamperedDirectionsStayWithTheirImage) {
  Words seed(3 + 32 * 50, 0x80000000);
  seed[0] = 50, seed[1] = 1, seed[2] = 4;
  Bytes good, bad;
  {
    const Stream s(KOB_BRNG_SOBOL, seed);
    good = bad = image_of(s);
  }
  size_t at = 11648;
  while (field<uint32_t>(bad, at) != 9) at += 24 + field<uint32_t>(bad, at + 20);
  bad[at + 24 + 3] ^= 0x40;
  KobStream *first, *second;
  ASSERT_EQ(load_memory(bad, &first), 0);
  ASSERT_EQ(load_memory(good, &second), 0);
  const Stream tampered(first), honest(second);
  EXPECT_EQ(honest.words(5000), Stream(KOB_BRNG_SOBOL, seed).words(5000));
  EXPECT_NE(tampered.words(5000), Stream(KOB_BRNG_SOBOL, seed).words(5000));
}

TEST(Persistence, QuasiChunksOfOtherLengthsAreRefused) {
  Words seed(3 + 32 * 400, 1);
  seed[0] = 400, seed[2] = 4;
  for (const auto& [id, kind] :
       {std::pair(KOB_BRNG_SOBOL, 9u), {KOB_BRNG_SOBOL, 13u}, {KOB_BRNG_NIEDERR, 10u}}) {
    const Stream s(id, seed);
    Bytes image = image_of(s);
    size_t at = size_t(s.properties().StateSize);
    while (field<uint32_t>(image, at) != kind) at += 24 + field<uint32_t>(image, at + 20);
    const uint32_t shorter = field<uint32_t>(image, at + 20) - 4;
    memcpy(&image[at + 20], &shorter, 4);
    image[at + 4] += kind == 9;  // else the process's own block would serve
    image.erase(image.begin() + ptrdiff_t(at) + 24, image.begin() + ptrdiff_t(at) + 28);
    expect_refused(image);
  }
}

TEST(Persistence, SharedBlocksAreFoundAgain) {
  KobGlobalId name;
  __kobGenerateNewGlobalRODataTableEntryId(&name, 0);
  Bytes image;
  KobStream* loaded;
  {
    const Stream s(KOB_BRNG_MCG59);
    add_chunk(s, kOther, {5, 6, 7}, &name);
    image = image_of(s);
    ASSERT_EQ(load_file(image, &loaded), 0);
    EXPECT_EQ(__kobSearchChunk(Stream(loaded), kOther), __kobSearchChunk(s, kOther));
    // A block of another length or content is another block, whatever its name.
    Bytes longer = changed(image, 16 + 16 + 20, {16}), other = changed(image, image.size() - 1, {99});
    longer.resize(longer.size() + 4);
    for (const Bytes& different : {longer, other}) {
      ASSERT_EQ(load_file(different, &loaded), 0);
      const Stream own(loaded);
      EXPECT_NE(__kobSearchChunk(own, kOther), __kobSearchChunk(s, kOther));
      const Bytes back = image_of(own);
      EXPECT_TRUE(std::equal(back.begin() + 56, back.end(), different.begin() + 56, different.end()));
    }
  }
  KobGlobalEntry* entry;
  EXPECT_NE(__kobFindGlobRODataTableEntry(&entry, &name), 0);
  ASSERT_EQ(load_memory(image, &loaded), 0);
  const Stream first(loaded);
  EXPECT_EQ(__kobFindGlobRODataTableEntry(&entry, &name), 0);
  EXPECT_EQ(image_of(first), image);
}

}  // namespace
