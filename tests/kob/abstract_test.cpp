// Streams of the caller's own numbers, and of the processor's.
#include <algorithm>
#include <cmath>

#include "image.hpp"
#include "support/stream.hpp"

namespace {

// A source that counts up, how it answers a request, and what it was last asked.
struct Source {
  uint32_t next;
  int (*answer)(uint32_t wanted, uint32_t room);
  int calls;
  Words asked;  // size, wanted, room, position
} source;

template <class Number>
int refill(KobStream*, uint32_t* size, Number* buffer, uint32_t* wanted, uint32_t* room, uint32_t* position) {
  EXPECT_EQ(wanted[1] | wanted[2] | wanted[3], 0u);
  const int count = source.answer(*wanted, *room);
  source.asked = {*size, *wanted, *room, *position};
  ++source.calls;
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

int make(KobStream** s, int n, uint32_t* buffer, double, double, KobiRefill callback) {
  return __kobiNewAbstractStream(s, n, buffer, callback);
}
int make(KobStream** s, int n, double* buffer, double a, double b, KobdRefill callback) {
  return __kobdNewAbstractStream(s, n, buffer, a, b, callback);
}
int make(KobStream** s, int n, float* buffer, double a, double b, KobsRefill callback) {
  return __kobsNewAbstractStream(s, n, buffer, float(a), float(b), callback);
}

int draw(KobStream* s, int n, uint32_t* r) { return _kobiRngUniformBits(0, s, n, r); }
int draw(KobStream* s, int n, double* r) { return _kobdRngUniform(0, s, n, r, 10, 30); }
int draw(KobStream* s, int n, float* r) { return _kobsRngUniform(0, s, n, r, 10, 30); }

constexpr uint32_t kSize = 10;

// A stream of the numbers 0, 1, ..., of which ten are in its buffer.
template <class Number>
class Abstract : public testing::Test {
 protected:
  Abstract() {
    for (uint32_t i = 0; i < kSize; ++i) buffer_[i] = Number(i);
    source = {kSize, as_wanted, 0, {}};
    EXPECT_EQ(make(&stream_, kSize, buffer_, -1, 3, refill<Number>), 0);
  }
  ~Abstract() override { __kobDeleteStream(&stream_); }

  // Expects the next n numbers, the first of them `first`.
  void expect_numbers(int n, uint32_t first) {
    std::vector<Number> r(size_t(std::max(n, 0)) + 1, 77), expected;
    for (int i = 0; i < n; ++i) {
      const Number x = Number(first + uint32_t(i));
      expected.push_back(std::is_integral_v<Number> ? x : 10 + 5 * (x + 1));
    }
    expected.push_back(77);
    ASSERT_EQ(draw(stream_, n, r.data()), 0);
    EXPECT_EQ(r, expected);
  }

  Number buffer_[kSize];
  KobStream* stream_ = nullptr;
};
using Numbers = testing::Types<uint32_t, double, float>;
TYPED_TEST_SUITE(Abstract, Numbers);

TYPED_TEST(Abstract, DeliversInOrderHoweverItIsRefilled) {
  this->expect_numbers(10, 0);
  EXPECT_EQ(source.calls, 0);
  uint32_t next = 10;
  for (auto answer : {one, as_wanted, all_there_is_room_for}) {
    source.answer = answer;
    for (int n : {3, 0, -1, 7, 1, 12, 2, 9, 35, 10, 4}) {
      this->expect_numbers(n, next);
      next += uint32_t(std::max(n, 0));
    }
  }
}

TYPED_TEST(Abstract, TellsWhatItNeeds) {
  this->expect_numbers(14, 0);
  EXPECT_EQ(source.asked, (Words{10, 4, 10, 0}));
  this->expect_numbers(23, 14);
  EXPECT_EQ(source.calls, 4);
  EXPECT_EQ(source.asked, (Words{10, 3, 10, 4}));
}

TYPED_TEST(Abstract, FailuresLeaveThePosition) {
  this->expect_numbers(4, 0);
  const auto position = [&] {
    const uint32_t* state = reinterpret_cast<uint32_t*>(this->stream_ + 1);
    return Words(state, state + 3);
  };
  const Words before = position();
  TypeParam r[7];
  for (const auto& [answer, status] : {std::pair(nothing, KOB_ERROR_ABSTRACT_CALLBACK_EMPTY),
                                       {too_many, KOB_ERROR_ABSTRACT_CALLBACK_FAILED},
                                       {negative, KOB_ERROR_ABSTRACT_CALLBACK_FAILED}}) {
    source.answer = answer;
    EXPECT_EQ(draw(this->stream_, 7, r), status);
    EXPECT_EQ(position(), before);
  }
}

TYPED_TEST(Abstract, OneKindOnly) {
  KobStream* const s = this->stream_;
  uint32_t word;
  double d;
  float f;
  const auto expected = [](bool right) { return right ? 0 : KOB_ERROR_ABSTRACT_WRONG_KIND; };
  EXPECT_EQ(draw(s, 1, &word), expected(std::is_same_v<TypeParam, uint32_t>));
  EXPECT_EQ(draw(s, 1, &d), expected(std::is_same_v<TypeParam, double>));
  EXPECT_EQ(draw(s, 1, &f), expected(std::is_same_v<TypeParam, float>));
  EXPECT_EQ(__kobLeapfrogStream(s, 0, 2), KOB_ERROR_LEAPFROG_UNSUPPORTED);
  EXPECT_EQ(__kobSkipAheadStream(s, 2), KOB_ERROR_SKIPAHEAD_UNSUPPORTED);
  KobBrngProperties p;
  ASSERT_EQ(__kobGetBrngProperties(s->BrngId, &p), 0);
  EXPECT_EQ(p.InitStream(3, s, 0, nullptr), KOB_ERROR_METHOD);
  EXPECT_EQ(p.InitStream(0, s, 1, &word), KOB_ERROR_BAD_ARG);
  // Somebody else's pointers do not come back from an image.
  KobStream* loaded = nullptr;
  ASSERT_EQ(__kobLoadStreamM(&loaded, image_of(s).data()), 0);
  TypeParam r;
  EXPECT_EQ(draw(Stream(loaded), 1, &r), KOB_ERROR_NULL_PTR);
}

TYPED_TEST(Abstract, ChecksItsArguments) {
  TypeParam *const buffer = this->buffer_, *const none = nullptr;
  const auto expect_refused = [](auto... arguments) {
    KobStream* s = nullptr;
    EXPECT_EQ(make(&s, arguments...), KOB_ERROR_BAD_ARG);
    EXPECT_EQ(s, nullptr);
  };
  for (int n : {0, -1, INT32_MIN}) expect_refused(n, buffer, 0, 1, refill<TypeParam>);
  expect_refused(4, none, 0, 1, refill<TypeParam>);
  expect_refused(4, buffer, 0, 1, nullptr);
  for (double end : {1.0, 0.5, double(NAN)})
    if (!std::is_integral_v<TypeParam>) expect_refused(4, buffer, 1, end, refill<TypeParam>);
  expect_clean_making([&](KobStream** s) { return make(s, 4, buffer, 0, 1, refill<TypeParam>); });
}

TEST(TrueRandom, Seeds) {
  for (const auto& [seed, limit] : {std::pair(Words{}, 10u), {{7}, 10u}, {{7, 0}, 10u}, {{7, 3}, 3u}})
    EXPECT_EQ(Stream(KOB_BRNG_TRNG, seed).state()[1], limit);
  const Stream s(KOB_BRNG_TRNG);
  EXPECT_EQ(__kobLeapfrogStream(s, 0, 2), KOB_ERROR_LEAPFROG_UNSUPPORTED);
  EXPECT_EQ(__kobSkipAheadStream(s, 2), KOB_ERROR_SKIPAHEAD_UNSUPPORTED);
}

TEST(TrueRandom, FillsWhatItIsAskedFor) {
  const Stream s(KOB_BRNG_TRNG);
  KobStream* loaded = nullptr;
  const int loading = __kobLoadStreamM(&loaded, image_of(s).data());
  __kobDeleteStream(&loaded);
  if (!__kobCPUisRDRAND()) {
    uint32_t word;
    EXPECT_EQ(draw(s, 1, &word), KOB_ERROR_TRNG_UNSUPPORTED);
    EXPECT_EQ(loading, KOB_ERROR_TRNG_UNSUPPORTED);
    return;
  }
  EXPECT_EQ(loading, 0);
  const auto check = [&s](auto zero) {
    for (int n : {0, 1, 2, 7, 5001}) {
      std::vector<decltype(zero)> r(size_t(n) + 1, zero);
      ASSERT_EQ(draw(s, n, r.data()), 0);
      EXPECT_EQ(r.back(), zero);
      r.pop_back();
      const double low = std::is_integral_v<decltype(zero)> ? 0 : 10, high = low ? 30 : 0x1p32;
      double sum = 0;
      for (auto x : r) sum += x >= low && x <= high ? double(x) : INFINITY;
      EXPECT_NEAR(n ? sum / n : (low + high) / 2, (low + high) / 2, 7 * (high - low) / std::sqrt(12.0 * n));
      // A word that comes three times among so many, by chance, in one run of a billion.
      std::sort(r.begin(), r.end());
      for (int i = 2; i < n && std::is_integral_v<decltype(zero)>; ++i)
        EXPECT_NE(r[size_t(i)], r[size_t(i) - 2]);
    }
  };
  check(0.0);
  check(uint32_t(0));
  check(0.0f);
}

}  // namespace
