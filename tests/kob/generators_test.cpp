// What holds for every pseudo generator: its sequence, however it is asked for.
#include <cstring>
#include <numeric>
#include <random>

#include "reference.hpp"

namespace {

class Generator : public testing::TestWithParam<Reference> {
 protected:
  Stream stream() const { return Stream(GetParam().id, GetParam().seed); }
};

INSTANTIATE_TEST_SUITE_P(All, Generator, testing::ValuesIn(references()),
                         [](const auto& info) { return info.param.name; });

TEST_P(Generator, FollowsItsRecursion) {
  const int n = 5000;
  const Stream integers = stream(), doubles = stream(), singles = stream();
  const Words got = integers.words(n);
  const std::vector<double> d = doubles.reals(n, -3.7, 11.25);
  const std::vector<float> s = singles.reals(n, -3.7f, 11.25f);
  const auto next = GetParam().start();
  for (int i = 0; i < n; ++i) {
    const Words word = next();
    for (size_t j = 0; j < word.size(); ++j) ASSERT_EQ(got[size_t(i) * word.size() + j], word[j]) << i;
    ASSERT_EQ(d[i], GetParam().real(word, -3.7, 11.25)) << i;
    ASSERT_EQ(s[i], float(GetParam().real(word, double(-3.7f), double(11.25f)))) << i;
  }
}

// Requests of all small lengths and some long ones, in random order, words, doubles and singles in turn, to
// places of every alignment: the sequence goes on, and nothing is written before or behind.
TEST_P(Generator, EveryCutContinuesTheSequence) {
  const Stream cut = stream();
  const KobBrngProperties p = cut.properties();
  const int per_word = p.WordSize / 4, total = 40000;
  const Words all = stream().words(total);
  std::vector<int> lengths(70);
  std::iota(lengths.begin(), lengths.end(), -1);
  for (int longer : {100, 127, 128, 147, 149, 249, 250, 251, 255, 256, 257, 511, 623, 624, 625, 1000, 1300})
    lengths.push_back(longer);
  std::mt19937 random(1);
  std::shuffle(lengths.begin(), lengths.end(), random);
  int done = 0;
  for (int round = 0; round < 3; ++round)
    for (size_t k = 0; k < lengths.size(); ++k) {
      const int n = lengths[k], offset = int(random() % 8), kind = int(random() % 3), count = std::max(n, 0);
      Words memory(size_t(count) * std::max(per_word, 2) + 32, 0xA5A5A5A5);
      uint32_t* r = memory.data() + 8 + offset;
      const uint32_t* expected = all.data() + size_t(done) * per_word;
      size_t length = 0;
      if (kind == 0) {
        ASSERT_EQ(p.iGenerate(cut, n, r), 0);
        length = size_t(count) * per_word;
        ASSERT_EQ(memcmp(r, expected, length * 4), 0) << n << " at " << done;
      } else {
        if (kind == 1) {
          ASSERT_EQ(p.dGenerate(cut, n, reinterpret_cast<double*>(r), -1, 1), 0);
        } else {
          ASSERT_EQ(p.sGenerate(cut, n, reinterpret_cast<float*>(r), -1, 1), 0);
        }
        length = size_t(count) * (kind == 1 ? 2 : 1);
        for (int i = 0; i < count; ++i) {
          const double real =
              GetParam().real(Words(expected + i * per_word, expected + (i + 1) * per_word), -1, 1);
          double got;
          float single;
          memcpy(&got, r + 2 * i, kind == 1 ? 8 : 0);
          memcpy(&single, r + i, 4);
          ASSERT_EQ(kind == 1 ? got : double(single), kind == 1 ? real : double(float(real)))
              << n << " at " << done;
        }
      }
      ASSERT_EQ(std::count(memory.begin(), memory.begin() + 8 + offset, 0xA5A5A5A5u), 8 + offset);
      ASSERT_EQ(std::count(r + length, memory.data() + memory.size(), 0xA5A5A5A5u),
                memory.data() + memory.size() - (r + length));
      done += count;
      ASSERT_LT(done, total);
    }
}

TEST_P(Generator, ACopyGoesOnAlike) {
  const Stream first = stream();
  first.words(37);
  const Stream second = first;
  EXPECT_EQ(first.words(300), second.words(300));
  EXPECT_EQ(first.reals(300), second.reals(300));
}

TEST_P(Generator, RefusesOtherMethods) {
  const Stream s = stream();
  const uint32_t word = 1;
  for (int method : {-1, 3, 100}) EXPECT_EQ(s.properties().InitStream(method, s, 1, &word), KOB_ERROR_METHOD);
}

// The numbers that belong to part k of `parts`, from a plain stream.
Words every(const Words& words, int per_word, int k, int parts) {
  Words r;
  for (size_t i = size_t(k) * per_word; i < words.size(); i += size_t(parts) * per_word)
    r.insert(r.end(), words.begin() + i, words.begin() + i + per_word);
  return r;
}

TEST_P(Generator, LeapfrogTakesEveryNth) {
  const Stream plain = stream();
  const int per_word = plain.properties().WordSize / 4, n = 3000;
  uint32_t k = 0;
  if (plain.properties().InitStream(1, plain, 1, &k) == KOB_ERROR_LEAPFROG_UNSUPPORTED) {
    EXPECT_EQ(__kobLeapfrogStream(plain, 0, 2), KOB_ERROR_LEAPFROG_UNSUPPORTED);
    return;
  }
  const Words all = stream().words(n);
  for (int parts : {1, 2, 3, 7}) {
    for (k = 0; int(k) < parts; ++k) {
      const Stream part = stream();
      ASSERT_EQ(__kobLeapfrogStream(part, k, parts), 0);
      const Words expected = every(all, per_word, int(k), parts);
      ASSERT_EQ(part.words(int(expected.size()) / per_word), expected) << k << " of " << parts;

      const Stream part_of_part = stream();
      ASSERT_EQ(__kobLeapfrogStream(part_of_part, k, parts), 0);
      ASSERT_EQ(__kobLeapfrogStream(part_of_part, 1, 5), 0);
      const Words fewer = every(expected, per_word, 1, 5);
      ASSERT_EQ(part_of_part.words(int(fewer.size()) / per_word), fewer);
    }
  }
}

TEST_P(Generator, SkipCountsOwnNumbers) {
  const Stream plain = stream();
  if (__kobSkipAheadStream(plain, 1) == KOB_ERROR_SKIPAHEAD_UNSUPPORTED) return;
  const auto skipped = [](Stream s, uint64_t n) {
    EXPECT_EQ(__kobSkipAheadStream(s, n), 0);
    return s;
  };
  for (int parts : {1, 3}) {
    const Stream start = stream();
    if (parts > 1 && __kobLeapfrogStream(start, 2, parts) != 0) continue;
    for (int n : {0, 1, 2, 3, 64, 1000}) {
      const Stream stepped = start;
      stepped.words(n);
      EXPECT_EQ(skipped(start, uint64_t(n)).words(40), stepped.words(40)) << n;
    }
    // Far skips add up, in whatever pieces.
    const uint64_t far = (uint64_t(1) << 63) + 12345678901;
    const Stream there = skipped(start, far);
    Stream in_pieces = skipped(skipped(start, far - (uint64_t(1) << 41)), (uint64_t(1) << 40));
    for (int i = 0; i < 1024; ++i) __kobSkipAheadStream(in_pieces, uint64_t(1) << 30);
    EXPECT_EQ(there.words(40), in_pieces.words(40));
  }
}

}  // namespace
