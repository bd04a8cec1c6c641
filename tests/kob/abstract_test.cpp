// Streams of the caller's own numbers, and of the processor's.
#include <algorithm>
#include <cmath>

#include "image.hpp"
#include "stream.hpp"

namespace {

// A source that counts up, how it answers a request, and what it was last asked.
struct Source {
  uint32_t next;
  int (*answer)(uint32_t wanted, uint32_t room);
  int calls;
  uint32_t size, wanted, room, position;
} source;

template <class Number>
int refill(KobStream*, uint32_t* size, Number* buffer, uint32_t* wanted, uint32_t* room, uint32_t* position) {
  EXPECT_EQ(wanted[1] | wanted[2] | wanted[3], 0u);
  const int count = source.answer(*wanted, *room);
  source = {source.next, source.answer, source.calls + 1, *size, *wanted, *room, *position};
  for (int i = 0; i < std::min(count, int(*room)); ++i)
    buffer[(*position + uint32_t(i)) % *size] = Number(source.next++);
  return count;
}

int one(uint32_t, uint32_t) { return 1; }
int as_wanted(uint32_t wanted, uint32_t) { return int(wanted); }
int all_there_is_room_for(uint32_t, uint32_t room) { return int(room); }
int nothing(uint32_t, uint32_t) { return 0; }
int too_many(uint32_t, uint32_t room) { return int(room) + 1; }
int negative(uint32_t, uint32_t) { return -7; }

constexpr int kSize = 10;

// A buffer with 0, 1, ..., 9 in it and a stream over it.
template <class Number>
struct Ring {
  std::vector<Number> buffer;
  Stream stream;

  Ring() : buffer(kSize), stream(make()) {
    for (int i = 0; i < kSize; ++i) buffer[i] = Number(i);
    source = {kSize, all_there_is_room_for, 0, 0, 0, 0, 0};
  }
  KobStream* make() {
    KobStream* s = nullptr;
    int status;
    if constexpr (sizeof(Number) == 8)
      status = __kobdNewAbstractStream(&s, kSize, buffer.data(), -1, 3, refill<double>);
    else if constexpr (std::is_same_v<Number, float>)
      status = __kobsNewAbstractStream(&s, kSize, buffer.data(), -1, 3, refill<float>);
    else
      status = __kobiNewAbstractStream(&s, kSize, buffer.data(), refill<uint32_t>);
    EXPECT_EQ(status, 0);
    return s;
  }
  int get(int n, Number* r) {
    if constexpr (std::is_same_v<Number, uint32_t>)
      return stream.properties().iGenerate(stream, n, r);
    else
      return stream.generate(n, r, 10, 30);
  }
};

template <class Number>
class Abstract : public testing::Test {};
using Numbers = testing::Types<uint32_t, double, float>;
TYPED_TEST_SUITE(Abstract, Numbers);

TYPED_TEST(Abstract, DeliversInOrderHoweverItIsRefilled) {
  for (auto answer : {one, as_wanted, all_there_is_room_for}) {
    Ring<TypeParam> ring;
    source.answer = answer;
    uint32_t expected = 0;
    for (int n : {3, 0, -1, 7, 1, 12, 2, 9, 35, 10, 4}) {
      std::vector<TypeParam> r(size_t(std::max(n, 0)) + 1, 77);
      ASSERT_EQ(ring.get(n, r.data()), 0);
      for (int i = 0; i < n; ++i, ++expected)
        ASSERT_EQ(r[i], std::is_integral_v<TypeParam> ? expected : 10 + 5 * (TypeParam(expected) + 1));
      EXPECT_EQ(r.back(), TypeParam(77));
      if (expected == kSize) {
        EXPECT_EQ(source.calls, 0);
      }
    }
  }
}

TYPED_TEST(Abstract, TellsWhatItNeeds) {
  Ring<TypeParam> ring;
  std::vector<TypeParam> r(100);
  source.answer = as_wanted;
  ASSERT_EQ(ring.get(14, r.data()), 0);
  EXPECT_EQ(source.size, 10u);
  EXPECT_EQ(source.wanted, 4u);
  EXPECT_EQ(source.room, 10u);
  EXPECT_EQ(source.position, 0u);
  ASSERT_EQ(ring.get(23, r.data()), 0);
  EXPECT_EQ(source.calls, 4);
  EXPECT_EQ(source.wanted, 3u);
  EXPECT_EQ(source.position, 4u);
}

TYPED_TEST(Abstract, FailuresLeaveThePosition) {
  Ring<TypeParam> ring;
  std::vector<TypeParam> r(30), again(10);
  ASSERT_EQ(ring.get(4, r.data()), 0);
  const Words before(ring.stream.state(), ring.stream.state() + 3);
  source.answer = nothing;
  EXPECT_EQ(ring.get(7, r.data()), KOB_ERROR_ABSTRACT_CALLBACK_EMPTY);
  source.answer = too_many;
  EXPECT_EQ(ring.get(7, r.data()), KOB_ERROR_ABSTRACT_CALLBACK_FAILED);
  source.answer = negative;
  EXPECT_EQ(ring.get(7, r.data()), KOB_ERROR_ABSTRACT_CALLBACK_FAILED);
  EXPECT_EQ(Words(ring.stream.state(), ring.stream.state() + 3), before);
}

TYPED_TEST(Abstract, OneKindOnly) {
  Ring<TypeParam> ring;
  uint32_t word;
  double d;
  float f;
  const int wrong = KOB_ERROR_ABSTRACT_WRONG_KIND;
  EXPECT_EQ(_kobiRngUniformBits(0, ring.stream, 1, &word), (std::is_same_v<TypeParam, uint32_t>) ? 0 : wrong);
  EXPECT_EQ(_kobdRngUniform(0, ring.stream, 1, &d, 0, 1), (std::is_same_v<TypeParam, double>) ? 0 : wrong);
  EXPECT_EQ(_kobsRngUniform(0, ring.stream, 1, &f, 0, 1), (std::is_same_v<TypeParam, float>) ? 0 : wrong);
  EXPECT_EQ(__kobLeapfrogStream(ring.stream, 0, 2), KOB_ERROR_LEAPFROG_UNSUPPORTED);
  EXPECT_EQ(__kobSkipAheadStream(ring.stream, 2), KOB_ERROR_SKIPAHEAD_UNSUPPORTED);
  EXPECT_EQ(ring.stream.properties().InitStream(3, ring.stream, 0, nullptr), KOB_ERROR_METHOD);
  EXPECT_EQ(ring.stream.properties().InitStream(0, ring.stream, 1, &word), KOB_ERROR_BAD_ARG);

  // Somebody else's pointers do not come back from an image.
  KobStream* loaded = nullptr;
  ASSERT_EQ(__kobLoadStreamM(&loaded, image_of(ring.stream).data()), 0);
  const Stream s(loaded);
  TypeParam r;
  int status;
  if constexpr (std::is_same_v<TypeParam, uint32_t>)
    status = s.properties().iGenerate(s, 1, &r);
  else
    status = s.generate(1, &r, 0, 1);
  EXPECT_EQ(status, KOB_ERROR_NULL_PTR);
}

TEST(AbstractStream, ChecksItsArguments) {
  double d[4];
  uint32_t i[4];
  float f[4];
  KobStream* s = nullptr;
  const int bad = KOB_ERROR_BAD_ARG;
  EXPECT_EQ(__kobiNewAbstractStream(&s, 0, i, refill<uint32_t>), bad);
  EXPECT_EQ(__kobiNewAbstractStream(&s, 4, nullptr, refill<uint32_t>), bad);
  EXPECT_EQ(__kobiNewAbstractStream(&s, 4, i, nullptr), bad);
  EXPECT_EQ(__kobdNewAbstractStream(&s, -1, d, 0, 1, refill<double>), bad);
  EXPECT_EQ(__kobdNewAbstractStream(&s, 4, nullptr, 0, 1, refill<double>), bad);
  EXPECT_EQ(__kobdNewAbstractStream(&s, 4, d, 0, 1, nullptr), bad);
  EXPECT_EQ(__kobdNewAbstractStream(&s, 4, d, 1, 1, refill<double>), bad);
  EXPECT_EQ(__kobsNewAbstractStream(&s, 4, f, 0, 0 * __builtin_inff(), refill<float>), bad);
  EXPECT_EQ(s, nullptr);
  expect_clean_failures([&] {
    const int status = __kobdNewAbstractStream(&s, 4, d, 0, 1, refill<double>);
    __kobDeleteStream(&s);
    return status;
  });
}

TEST(TrueRandom, Seeds) {
  const auto limit = [](const Words& seed) { return Stream(KOB_BRNG_TRNG, seed).state()[1]; };
  EXPECT_EQ(limit({}), 10u);
  EXPECT_EQ(limit({7}), 10u);
  EXPECT_EQ(limit({7, 0}), 10u);
  EXPECT_EQ(limit({7, 3}), 3u);
  const Stream s(KOB_BRNG_TRNG);
  EXPECT_EQ(__kobLeapfrogStream(s, 0, 2), KOB_ERROR_LEAPFROG_UNSUPPORTED);
  EXPECT_EQ(__kobSkipAheadStream(s, 2), KOB_ERROR_SKIPAHEAD_UNSUPPORTED);
}

TEST(TrueRandom, FillsWhatItIsAskedFor) {
  const Stream s(KOB_BRNG_TRNG);
  if (!__kobCPUisRDRAND()) {
    uint32_t word;
    EXPECT_EQ(s.properties().iGenerate(s, 1, &word), KOB_ERROR_TRNG_UNSUPPORTED);
    return;
  }
  for (int n : {0, 1, 2, 7, 1001}) {
    Words words(size_t(n) + 1, 77);
    EXPECT_EQ(s.properties().iGenerate(s, n, words.data()), 0);
    EXPECT_EQ(words.back(), 77u);
    std::sort(words.begin(), words.end() - 1);
    // A word that comes three times among a thousand, by chance, in one run of a billion.
    for (int i = 2; i < n; ++i) EXPECT_NE(words[i], words[i - 2]);
  }
  const auto check = [](const auto& r) {
    double sum = 0;
    for (auto x : r) {
      EXPECT_TRUE(x >= -3 && x <= 5);
      sum += x;
    }
    EXPECT_NEAR(sum / double(r.size()), 1, 8 / std::sqrt(12.0 * double(r.size())) * 7);
  };
  check(s.reals<double>(5001, -3, 5));
  check(s.reals<float>(5001, -3, 5));
}

}  // namespace
