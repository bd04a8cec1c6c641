// The twisters: published sequences, seeding, what is peculiar to each of them. That MT19937 and MT2203
// follow their recursion however they are asked is tested with the other generators.
#include <bitset>
#include <cstring>
#include <random>
#include <sstream>

#include "twister_reference.hpp"

namespace {

constexpr uint32_t kTwisters[] = {KOB_BRNG_MT19937, KOB_BRNG_MT2203, KOB_BRNG_SFMT19937};

TEST(Twisters, PublishedSequences) {
  EXPECT_EQ(Stream(KOB_BRNG_MT19937, {0x123, 0x234, 0x345, 0x456}).words(3),
            (Words{1067595299, 955945823, 477289528}));
  Words sfmt = Stream(KOB_BRNG_SFMT19937, {0x1234, 0x5678, 0x9abc, 0xdef0}).words(1);
  sfmt.resize(3);
  EXPECT_EQ(sfmt, (Words{2920711183, 3885745737, 3501893680}));
}

// The standard library's engine, set to the words of a stream's state.
template <class Engine>
Words judged_by(const Stream& stream, int n) {
  std::stringstream words;
  for (size_t i = 0; i < Engine::state_size; ++i) words << stream.state()[i] << ' ';
  words << stream.state()[Engine::state_size];
  Engine engine;
  words >> engine;
  Words r(n);
  for (uint32_t& x : r) x = uint32_t(engine());
  return r;
}

template <uint32_t kMatrix, uint32_t kMaskB, uint32_t kMaskC>
using StandardMt2203 = std::mersenne_twister_engine<uint32_t, 32, 69, 34, 5, kMatrix, 12, 0xFFFFFFFF, 7,
                                                    kMaskB, 15, kMaskC, 18, 1812433253>;

template <class Engine>
void expect_as_judged(uint32_t id) {
  for (int used : {0, 1, 17, 68, 623, 1000}) {
    const Stream stream(id, {3, 1, 4});
    stream.words(used);
    const Words expected = judged_by<Engine>(stream, 3000);
    EXPECT_EQ(stream.words(3000), expected) << used;
  }
}

TEST(Twisters, TheStandardLibraryAgrees) {
  expect_as_judged<std::mt19937>(KOB_BRNG_MT19937);
  expect_as_judged<StandardMt2203<0xAF81055F, 0xDD7EEF80, 0xEFD78000>>(KOB_BRNG_MT2203);
  expect_as_judged<StandardMt2203<0x832604E1, 0x66AD7F80, 0xEBD58000>>(KOB_BRNG_MT2203 + 1);
  expect_as_judged<StandardMt2203<0xE8761D4B, 0x72967680, 0xEFEB0000>>(KOB_BRNG_MT2203 + 6023);
}

TEST(Twisters, UseAllOfTheKey) {
  Words longer(2000);
  for (uint32_t i = 0; i < longer.size(); ++i) longer[i] = i * 2654435761u;
  for (const Words& key : {Words{}, Words{1}, Words{5489}, Words(68, 9), Words(69, 9), Words(70, 9),
                           Words(623, 9), Words(624, 9), Words(625, 9), longer}) {
    const auto state = [&](uint32_t id, size_t n) {
      const Stream s(id, key);
      EXPECT_EQ(s.state()[n], n);  // the first request makes new words
      return Words(s.state(), s.state() + n);
    };
    EXPECT_EQ(state(KOB_BRNG_MT19937, 624), twister_state(624, key)) << key.size();
    EXPECT_EQ(state(KOB_BRNG_MT2203 + 5, 69), twister_state(69, key)) << key.size();
    EXPECT_EQ(state(KOB_BRNG_SFMT19937, 624), SfmtReference(key).state()) << key.size();
  }
  EXPECT_EQ(__kobBRngMT19937InitStream(0, Stream(KOB_BRNG_MT19937), -1, nullptr), KOB_STATUS_OK);
}

TEST(Twisters, NeitherLeapNorSkip) {
  for (uint32_t id : kTwisters) {
    const Stream s(id);
    const auto init = s.properties().InitStream;
    const uint32_t params[] = {1, 0};
    EXPECT_EQ(init(1, s, 2, params), KOB_ERROR_LEAPFROG_UNSUPPORTED);
    EXPECT_EQ(init(2, s, 2, params), KOB_ERROR_SKIPAHEAD_UNSUPPORTED);
    EXPECT_EQ(init(3, s, 2, params), KOB_ERROR_METHOD);
    EXPECT_EQ(s.words(1), Stream(id).words(1));
  }
}

// The state of SFMT certified: seeds of both parities occur, and the inner product is odd in the end.
TEST(Sfmt19937, IsInThePeriod) {
  for (uint32_t seed = 0; seed < 64; ++seed) {
    const Stream s(KOB_BRNG_SFMT19937, {seed});
    EXPECT_EQ(__builtin_parity((s.state()[0] & 1) ^ (s.state()[3] & 0x13C9E684)), 1) << seed;
  }
}

// Requests of words and of reals in turn. Reals take whole groups of four and leave the rest to the next
// reals; words go on behind the group.
TEST(Sfmt19937, EveryCutContinuesTheSequence) {
  const Words key = {7, 77};
  const Stream stream(KOB_BRNG_SFMT19937, key);
  const KobBrngProperties p = stream.properties();
  SfmtReference next(key);
  std::vector<uint32_t> waiting;
  std::mt19937 random(2);
  const auto next_real = [&] {
    if (waiting.empty())
      for (int i = 0; i < 4; ++i) waiting.push_back(next());
    const double u = waiting.front() * 0x1p-32;
    waiting.erase(waiting.begin());
    return u * 2.5 - 1;
  };
  for (int round = 0; round < 3000; ++round) {
    const int n = random() % 8 ? int(random() % 20) - 2 : int(random() % 1500), offset = int(random() % 4);
    const size_t count = size_t(std::max(n, 0));
    Words memory(4 * count + 16, 0xA5A5A5A5);
    uint32_t* r = memory.data() + 4 + offset;
    size_t length = count;
    switch (random() % 3) {
      case 0:
        ASSERT_EQ(p.iGenerate(stream, n, r), 0);
        length = 4 * count;
        for (size_t i = 0; i < length; ++i) ASSERT_EQ(r[i], next()) << round;
        break;
      case 1:
        ASSERT_EQ(p.dGenerate(stream, n, reinterpret_cast<double*>(r), -1, 1.5), 0);
        length = 2 * count;
        for (size_t i = 0; i < count; ++i) {
          double got;
          memcpy(&got, r + 2 * i, sizeof got);
          ASSERT_EQ(got, next_real()) << round;
        }
        break;
      default:
        ASSERT_EQ(p.sGenerate(stream, n, reinterpret_cast<float*>(r), -1, 1.5), 0);
        for (size_t i = 0; i < count; ++i) {
          float got;
          memcpy(&got, r + i, sizeof got);
          ASSERT_EQ(got, float(next_real())) << round;
        }
    }
    ASSERT_EQ(std::count(memory.data(), r, 0xA5A5A5A5u), 4 + offset);
    ASSERT_EQ(std::count(r + length, memory.data() + memory.size(), 0xA5A5A5A5u),
              memory.data() + memory.size() - (r + length));
  }
}

constexpr int kDegree = 2203;
using Polynomial = std::bitset<2 * kDegree>;  // coefficient of t^i in bit i

// The shortest recursion that makes a sequence of bits (Berlekamp and Massey): degree and polynomial.
std::pair<int, Polynomial> minimal_polynomial(const std::vector<bool>& bits) {
  Polynomial c(1), b(1), window;  // window: the latest bit lowest
  int length = 0, since = 1;
  for (size_t n = 0; n < bits.size(); ++n) {
    window <<= 1;
    window[0] = bits[n];
    if (((window & c).count() & 1) == 0) {
      ++since;
      continue;
    }
    const Polynomial before = c;
    c ^= b << size_t(since);
    if (2 * length <= int(n)) {
      length = int(n) + 1 - length;
      b = before;
      since = 1;
    } else {
      ++since;
    }
  }
  return {length, c};
}

// t^(2^2203) = t modulo a polynomial of degree 2203 and with a constant term: its factors, if there are any,
// all have degree 1 or 2203. Squaring is linear: the squares of all powers of t are listed first.
bool fixed_by_frobenius(const Polynomial& modulus) {
  std::vector<Polynomial> squares(kDegree);
  Polynomial power(1);
  for (int i = 0; i < 2 * kDegree; ++i) {
    if (i % 2 == 0) squares[i / 2] = power;
    power <<= 1;
    if (power[kDegree]) power ^= modulus;
  }
  Polynomial x(2);
  for (int round = 0; round < kDegree; ++round) {
    Polynomial square;
    for (size_t i = x._Find_first(); i < size_t(kDegree); i = x._Find_next(i)) square ^= squares[i];
    x = square;
  }
  return x == Polynomial(2);
}

TEST(Mt2203, RowsHaveTheFullPeriodAndDiffer) {
  std::vector<Polynomial> seen;
  for (uint32_t row : {0, 1, 2, 1976, 4711, 6023}) {
    const Words words = Stream(KOB_BRNG_MT2203 + row, {2203}).words(2 * kDegree);
    std::vector<bool> bits;
    for (uint32_t w : words) bits.push_back(w & 1);
    const auto [degree, polynomial] = minimal_polynomial(bits);
    ASSERT_EQ(degree, kDegree) << row;
    // Neither t nor t + 1 divides it; so it is irreducible, and since 2^2203 - 1 is a prime, primitive.
    EXPECT_TRUE(polynomial[0] && polynomial[kDegree] && polynomial.count() % 2 == 1) << row;
    EXPECT_TRUE(fixed_by_frobenius(polynomial)) << row;
    EXPECT_EQ(std::count(seen.begin(), seen.end(), polynomial), 0) << row;
    seen.push_back(polynomial);
  }
}

TEST(Mt2203, StreamsOfOneSeedDifferInTheirParameters) {
  const Stream a(KOB_BRNG_MT2203 + 100), b(KOB_BRNG_MT2203 + 101);
  EXPECT_EQ(memcmp(a.state(), b.state(), 70 * 4), 0);
  for (int parameter = 70; parameter < 73; ++parameter) EXPECT_NE(a.state()[parameter], 0u);
  EXPECT_NE(a.state()[70], b.state()[70]);
  EXPECT_NE(a.words(100), b.words(100));
}

}  // namespace
