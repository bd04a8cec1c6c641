#include <signal.h>
#include <sys/resource.h>

#include <random>

#include "image.hpp"
#include "reference.hpp"

namespace {

void add_chunk(KobStream* stream, uint32_t kind, const Words& words, const KobGlobalId* name = nullptr) {
  const uint32_t size = uint32_t(words.size()) * 4;
  void* data = orx_serv_allocate(size, 128);
  memcpy(data, words.data(), size);
  ASSERT_EQ(__kobAddChunk(stream, kind, name, data, size), 0);
}

int load_file(const Bytes& image, KobStream** stream) {
  const TemporaryFile file(image);
  return __kobLoadStreamF(stream, file.name(), -1);
}

TEST(Persistence, ALoadedStreamGoesOn) {
  for (const Reference& reference : references()) {
    const Stream s(reference.id, reference.seed);
    for (int drawn : {0, 1, 5, 250, 700}) {
      s.words(drawn);
      s.reals(drawn / 3);
      const Stream before = s;
      const TemporaryFile file;
      ASSERT_EQ(__kobSaveStreamF(s, file.name(), -1), 0);
      EXPECT_EQ(file.content(), image_of(s)) << reference.name;
      KobStream *from_file = nullptr, *from_memory = nullptr;
      ASSERT_EQ(__kobLoadStreamF(&from_file, file.name(), -1), 0);
      ASSERT_EQ(__kobLoadStreamM(&from_memory, image_of(s).data()), 0);
      const Stream f(from_file), m(from_memory);
      const Words expected = before.words(900);
      const std::vector<double> reals = before.reals(300);
      EXPECT_EQ(f.words(900), expected) << reference.name << drawn;
      EXPECT_EQ(f.reals(300), reals);
      EXPECT_EQ(m.words(900), expected);
      EXPECT_EQ(m.reals(300), reals);
    }
  }
}

TEST(Persistence, TheImage) {
  const Stream s(KOB_BRNG_MCG31M1, {7});
  add_chunk(s, 100, {0x11111111});
  add_chunk(s, 101, {0x22222222, 0x33333333});
  const Words expected = {0x474E5201, 16 | 8 << 16,
                          2,          KOB_BRNG_MCG31M1,
                          7,          1132489760,  // header, state
                          101,        0,
                          0,          0,
                          0,          8,
                          0x22222222, 0x33333333,  // head of the list first
                          100,        0,
                          0,          0,
                          0,          4,
                          0x11111111};
  const Bytes image = image_of(s);
  ASSERT_EQ(image.size(), expected.size() * 4);
  EXPECT_EQ(memcmp(image.data(), expected.data(), image.size()), 0);
}

TEST(Persistence, NamesWithALength) {
  const Stream s(KOB_BRNG_MCG59);
  const TemporaryFile file;
  const std::string longer = std::string(file.name()) + "and what is not part of the name";
  const int length = int(strlen(file.name()));
  ASSERT_EQ(__kobSaveStreamF(s, longer.c_str(), length), 0);
  KobStream* loaded = reinterpret_cast<KobStream*>(1);
  ASSERT_EQ(__kobLoadStreamF(&loaded, longer.c_str(), length), 0);
  __kobDeleteStream(&loaded);
  for (int none : {0, -1}) {
    loaded = reinterpret_cast<KobStream*>(1);
    EXPECT_EQ(__kobSaveStreamF(s, none ? "" : longer.c_str(), none), KOB_ERROR_FILE_OPEN);
    EXPECT_EQ(__kobLoadStreamF(&loaded, none ? "" : longer.c_str(), none), KOB_ERROR_FILE_OPEN);
    EXPECT_EQ(loaded, nullptr);
  }
  expect_clean_failures([&] { return __kobSaveStreamF(s, longer.c_str(), length); });
  expect_clean_failures([&] {
    const int status = __kobLoadStreamF(&loaded, longer.c_str(), length);
    __kobDeleteStream(&loaded);
    return status;
  });
}

TEST(Persistence, AFullDisk) {
  const Stream s(KOB_BRNG_MCG59);
  EXPECT_EQ(__kobSaveStreamF(s, "/dev/full", -1),
            KOB_ERROR_FILE_CLOSE);  // found out when the buffer is flushed
  FILE* full = fopen("/dev/full", "wb");
  ASSERT_NE(full, nullptr);
  setvbuf(full, nullptr, _IONBF, 0);
  uint32_t word = 0;
  EXPECT_EQ(__kobSaveToFile(&word, 4, 1, full), KOB_ERROR_FILE_WRITE);
  fclose(full);
}

TEST(Persistence, SteppingThroughAnImage) {
  unsigned char memory[64] = {};
  KobCursor cursor{memory, 0};
  const TemporaryFile named;
  FILE* file = fopen(named.name(), "w+b");
  ASSERT_NE(file, nullptr);
  uint32_t words[4] = {1, 2, 3, 4}, back[4] = {};
  ASSERT_EQ(__kobSaveToMemory(words, 4, 4, &cursor), 0);
  ASSERT_EQ(__kobSaveToFile(words, 4, 4, file), 0);
  EXPECT_EQ(cursor.Position, 16u);
  cursor.Position = 0;
  rewind(file);
  ASSERT_EQ(__kobSkipLoadingFromMemory(&cursor, 8), 0);
  ASSERT_EQ(__kobSkipLoadingFromFile(file, 8), 0);
  ASSERT_EQ(__kobLoadFromMemory(back, 8, 1, &cursor), 0);
  ASSERT_EQ(__kobLoadFromFile(back + 2, 4, 2, file), 0);
  EXPECT_EQ(std::vector<uint32_t>(back, back + 4), (Words{3, 4, 3, 4}));
  EXPECT_EQ(__kobLoadFromFile(back, 4, 1, file), KOB_ERROR_FILE_READ);
  fclose(file);
}

// Headers with one field changed: the status from a file; from memory all of them are
// KOB_ERROR_BAD_MEM_FORMAT.
TEST(Persistence, BadHeaders) {
  const Stream s(KOB_BRNG_MCG31M1, {7});
  add_chunk(s, 100, {0x11111111});
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
  for (const auto& change : changes) {
    Bytes image = good;
    std::copy(change.bytes.begin(), change.bytes.end(), image.begin() + change.offset);
    KobStream* loaded = reinterpret_cast<KobStream*>(1);
    EXPECT_EQ(load_file(image, &loaded), change.status) << change.offset;
    EXPECT_EQ(loaded, nullptr);
    EXPECT_EQ(__kobLoadStreamM(&loaded, image.data()), KOB_ERROR_BAD_MEM_FORMAT) << change.offset;
    EXPECT_EQ(loaded, nullptr);
  }
  // The other byte order of the magic is let in, but its chunks are not understood.
  Bytes swapped = good;
  std::copy_n("RNG\1", 4, swapped.begin());
  KobStream* loaded;
  EXPECT_EQ(load_file(swapped, &loaded), KOB_ERROR_FILE_READ);
  swapped[8] = 0;
  ASSERT_EQ(load_file(swapped, &loaded), KOB_STATUS_OK);
  EXPECT_EQ(Stream(loaded).words(1), Words{7});
  // Version 0 has no names of shared blocks.
  Bytes older = good;
  older[0] = 0;
  older.erase(older.begin() + 28, older.begin() + 44);
  ASSERT_EQ(load_file(older, &loaded), KOB_STATUS_OK);
  EXPECT_EQ(*static_cast<uint32_t*>(__kobSearchChunk(loaded, 100)), 0x11111111u);
  EXPECT_EQ(image_of(loaded), good);
  __kobDeleteStream(&loaded);
}

TEST(Persistence, EveryTruncationAndEveryFailedAllocation) {
  const Stream s(KOB_BRNG_MRG32K3A);
  add_chunk(s, 100, {1});
  add_chunk(s, 1, {2, 3});
  const Bytes image = image_of(s);
  TemporaryFile file;
  for (size_t length = 0; length < image.size(); ++length) {
    const Bytes part(image.begin(), image.begin() + length);
    KobStream* loaded;
    EXPECT_EQ(load_file(part, &loaded), KOB_ERROR_FILE_READ) << length;
    EXPECT_TRUE(survives(file, part));
  }
  file.set(image);
  KobStream* loaded;
  expect_clean_failures([&] {
    const int status = __kobLoadStreamF(&loaded, file.name(), -1);
    __kobDeleteStream(&loaded);
    return status;
  });
  expect_clean_failures([&] {
    const int status = __kobLoadStreamM(&loaded, image.data());
    __kobDeleteStream(&loaded);
    return status;
  });
}

TEST(Persistence, SizesThatTheFileCannotHold) {
  const Stream s(KOB_BRNG_MCG59);
  add_chunk(s, 100, {1});
  const size_t size_offset = 16 + 16 + 20;
  for (uint32_t size : {5u, 1u << 20, 1u << 25, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu}) {
    Bytes image = image_of(s);
    memcpy(image.data() + size_offset, &size, 4);
    KobStream* loaded;
    EXPECT_EQ(load_file(image, &loaded), KOB_ERROR_FILE_READ) << size;
    EXPECT_EQ(loaded, nullptr);
  }
  Bytes image = image_of(s);
  image[8] = image[9] = 0xFF;
  KobStream* loaded;
  EXPECT_EQ(load_file(image, &loaded), KOB_ERROR_FILE_READ);
  // A large block that is there is read.
  add_chunk(s, 101, Words(5 << 20, 0xABCDEF01));
  ASSERT_EQ(load_file(image_of(s), &loaded), KOB_STATUS_OK);
  const Stream reversed(loaded);
  EXPECT_TRUE(image_of(Stream(reversed)) == image_of(s));
}

TEST(Persistence, StatesAndChunksThatCannotBeUsedAreRefused) {
  const auto refused = [](const KobStream* stream) {
    const Bytes image = image_of(stream);
    KobStream* loaded;
    EXPECT_EQ(load_file(image, &loaded), KOB_ERROR_BAD_FILE_FORMAT);
    EXPECT_EQ(__kobLoadStreamM(&loaded, image.data()), KOB_ERROR_BAD_MEM_FORMAT);
    TemporaryFile file;
    EXPECT_TRUE(survives(file, image));
  };
  // Index fields, each by its place in the state.
  const struct {
    uint32_t id;
    int place;
    uint32_t value;
  } states[] = {
      {KOB_BRNG_R250, 250, 250},    {KOB_BRNG_R250, 251, 250},    {KOB_BRNG_R250, 250, 0xFFFFFFFF},
      {KOB_BRNG_R250, 251, 104},    {KOB_BRNG_MT19937, 624, 625}, {KOB_BRNG_SFMT19937, 624, 628},
      {KOB_BRNG_SFMT19937, 628, 4}, {KOB_BRNG_SFMT19937, 629, 4}, {KOB_BRNG_WH, 0, 1u << 24},
      {KOB_BRNG_WH, 7, 1u << 24},
  };
  for (const auto& bad : states) {
    const Stream s(bad.id);
    s.state()[bad.place] = bad.value;
    refused(s);
  }
  // Chunks one byte or word too small, and a number of left-overs that is not there.
  const uint32_t least[] = {8, 16, 696, 1328, 544, 596, 16, 8};
  for (uint32_t kind = 1; kind <= 8; ++kind) {
    const Stream s(KOB_BRNG_MCG59);
    add_chunk(s, kind, Words(least[kind - 1] / 4 - 1));
    refused(s);
  }
  for (const Words& words : {Words{1, 2, 3, 4}, Words{1, 2, 3, 0xFFFFFFFF}, Words{1, 2, 3}}) {
    const Stream s(KOB_BRNG_SFMT19937);
    add_chunk(s, 11, words);
    refused(s);
  }
  for (const Words& words : {Words{1, 2, 2}, Words{1, 2}, Words{1}}) {
    const Stream s(KOB_BRNG_SFMT19937);
    add_chunk(s, 12, words);
    refused(s);
  }
  // A block that is written to must not be shared.
  const Stream s(KOB_BRNG_SFMT19937);
  KobGlobalId name;
  __kobGenerateNewGlobalRODataTableEntryId(&name, 0);
  add_chunk(s, 11, {1, 2, 3, 3}, &name);
  refused(s);
}

TEST(Persistence, SharedBlocksAreFoundAgain) {
  KobGlobalId name;
  __kobGenerateNewGlobalRODataTableEntryId(&name, 0);
  const auto is_known = [&] {
    KobGlobalEntry* entry;
    return __kobFindGlobRODataTableEntry(&entry, &name) == 0;
  };
  const long before = orx_serv_live_blocks();
  Bytes image;
  KobStream* loaded;
  {
    const Stream s(KOB_BRNG_MCG59);
    add_chunk(s, 100, {5, 6, 7}, &name);
    image = image_of(s);
    ASSERT_EQ(load_file(image, &loaded), 0);
    EXPECT_EQ(__kobSearchChunk(loaded, 100), __kobSearchChunk(s, 100));
    __kobDeleteStream(&loaded);
    // Another length under the same name would reach beyond the block that is there.
    Bytes longer = image;
    longer[16 + 16 + 20] += 4;
    longer.resize(longer.size() + 4);
    EXPECT_EQ(load_file(longer, &loaded), KOB_ERROR_BAD_FILE_FORMAT);
  }
  EXPECT_FALSE(is_known());
  ASSERT_EQ(load_file(image, &loaded), 0);  // a name that is new here is entered
  EXPECT_TRUE(is_known());
  __kobDeleteStream(&loaded);
  EXPECT_FALSE(is_known());
  EXPECT_EQ(orx_serv_live_blocks(), before);
}

// A bounded run of what the fuzzer does for long: images of all generators, with chunks, changed at random.
TEST(Persistence, MutatedImagesDoNoHarm) {
  std::mt19937 random(2);
  TemporaryFile file;
  for (const Reference& reference : references()) {
    const Stream s(reference.id, reference.seed);
    uint32_t bits[5];
    uint64_t wide[5];
    s.words(10);
    _kobiRngUniformBits32(0, s, 5, bits);
    _kobiRngUniformBits64(0, s, 3, wide);
    add_chunk(s, 100, {1, 2, 3});
    const Bytes good = image_of(s);
    for (int round = 0; round < 400; ++round) {
      Bytes image = good;
      for (int changes = 1 + int(random() % 4); changes > 0; --changes) {
        // Headers and ends, where indices and chunks are, more often than the rest.
        const size_t where = random() % 3;
        const size_t at = where == 0   ? random() % 16
                          : where == 1 ? random() % image.size()
                                       : image.size() - 1 - random() % std::min<size_t>(150, image.size());
        image[at] = random() % 2 ? uint8_t(random()) : uint8_t(random() % 2 ? 0 : 0xFF);
      }
      if (random() % 8 == 0) image.resize(random() % image.size());
      ASSERT_TRUE(survives(file, image)) << reference.name << " " << round;
    }
  }
}

}  // namespace
