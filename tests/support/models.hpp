// Every generator once more, straight from its recursion or its definition, one number at a time.
#pragma once

#include <algorithm>
#include <deque>
#include <functional>
#include <memory>
#include <random>
#include <string>

#include "support/stream.hpp"

struct Model {
  virtual ~Model() = default;
  virtual Words word() = 0;  // the next generator word
  virtual double real(double a, double b) { return word()[0] * ((b - a) * 0x1p-32) + a; }
};

// A generator under test, with its model at the same place.
struct Case {
  std::string name;
  uint32_t id;
  Words seed;
  std::function<std::unique_ptr<Model>()> model;

  Stream stream() const { return Stream(id, seed); }
};

template <class M, class... Arguments>
Case make_case(const char* name, uint32_t id, const Words& seed, const Arguments&... arguments) {
  return {name, id, seed, [=] { return std::make_unique<M>(arguments...); }};
}

struct Mcg31m1 : Model {
  uint64_t x = 77777777;
  Words word() override { return {uint32_t(std::exchange(x, x * 1132489760 % 2147483647))}; }
  double real(double a, double b) override { return word()[0] * ((b - a) * 4.656612875245797e-10) + a; }
};

struct Mcg59 : Model {
  uint64_t x = 0x7FFFFFFDEADBEEF;
  uint64_t next() { return std::exchange(x, x * 302875106592253 % (uint64_t(1) << 59)); }
  Words word() override {
    const uint64_t now = next();
    return {uint32_t(now), uint32_t(now >> 32)};
  }
  double real(double a, double b) override { return double(next()) * ((b - a) * 0x1p-59) + a; }
};

struct Mrg32k3a : Model {
  std::deque<int64_t> x{12345, 12345, 12345}, y = x;
  Words word() override {
    const int64_t m1 = 4294967087, m2 = 4294944443;
    x.push_back(((1403580 * x[1] - 810728 * x[0]) % m1 + m1) % m1);
    y.push_back(((527612 * y[2] - 1370589 * y[0]) % m2 + m2) % m2);
    x.pop_front(), y.pop_front();
    return {uint32_t((x[2] - y[2] + m1) % m1)};
  }
  double real(double a, double b) override { return word()[0] * ((b - a) * (1.0 / 4294967087)) + a; }
};

struct R250 : Model {
  explicit R250(const Words& seed) : x(seed) {}
  Words word() override {
    x.push_back(x[x.size() - 250] ^ x[x.size() - 147]);
    return {x.back()};
  }
  Words x;
};

// The last row of the tables.
struct WichmannHill : Model {
  uint64_t x[4] = {1234567, 1, 5, 0xFFFFFFFF % 16766231};
  Words word() override {
    const Words now(x, x + 4);
    const uint64_t a[] = {126, 127, 125, 124};
    for (int i = 0; i < 4; ++i) x[i] = x[i] * a[i] % m[i];
    return now;
  }
  double real(double a, double b) override {
    const Words w = word();
    double sum = 0;
    for (int i = 0; i < 4; ++i) sum += w[i] * (1.0 / m[i]);
    return (sum - int(sum)) * (b - a) + a;
  }
  static constexpr uint32_t m[] = {16766363, 16766359, 16766327, 16766231};
};

// Initialisation by array, for a twister of n words.
inline Words twister_state(size_t n, Words key) {
  if (key.empty()) key = {1};
  Words mt{19650218};
  while (mt.size() < n) mt.push_back(uint32_t(1812433253u * (mt.back() ^ mt.back() >> 30) + mt.size()));
  size_t i = 1, j = 0;
  const auto previous = [&] { return mt[i - 1] ^ mt[i - 1] >> 30; };
  const auto advance = [&] {
    if (++i == n) mt[0] = mt[n - 1], i = 1;
  };
  for (size_t k = std::max(n, key.size()); k; --k, advance()) {
    mt[i] = uint32_t((mt[i] ^ previous() * 1664525u) + key[j] + j);
    j = (j + 1) % key.size();
  }
  for (size_t k = n - 1; k; --k, advance()) mt[i] = uint32_t((mt[i] ^ previous() * 1566083941u) - i);
  mt[0] = 0x80000000;
  return mt;
}

struct TwisterParameters {
  size_t n, m;
  uint32_t lower, matrix;
  int shift;
  uint32_t mask_b, mask_c;
};

struct Twister : Model {
  Twister(const TwisterParameters& parameters, const Words& key)
      : p(parameters), x(twister_state(p.n, key)) {}
  Words word() override {
    const size_t k = x.size() - p.n;
    const uint32_t y = (x[k] & ~p.lower) | (x[k + 1] & p.lower);
    x.push_back(x[k + p.m] ^ y >> 1 ^ (y % 2 ? p.matrix : 0));
    uint32_t z = x.back();
    z ^= z >> p.shift;
    z ^= z << 7 & p.mask_b;
    z ^= z << 15 & p.mask_c;
    return {z ^ z >> 18};
  }
  TwisterParameters p;
  Words x;
};

// In 32-bit words; a 128-bit word is four of them, the lowest first.
struct Sfmt : Model {
  explicit Sfmt(Words key) {
    if (key.empty()) key = {1};
    constexpr size_t size = 624, lag = 11, mid = 306;
    w_.assign(size, 0x8B8B8B8B);
    const auto w = [&](size_t i) -> uint32_t& { return w_[i % size]; };
    const size_t end = std::max(key.size() + 1, size);
    for (size_t i = 0; i < end; ++i) {
      uint32_t r = w(i) ^ w(i + mid) ^ w(i + size - 1);
      r = (r ^ r >> 27) * 1664525u;
      w(i + mid) += r;
      r += uint32_t(i == 0 ? key.size() : i % size + (i <= key.size() ? key[i - 1] : 0));
      w(i + mid + lag) += r;
      w(i) = r;
    }
    for (size_t i = end; i < end + size; ++i) {
      uint32_t r = w(i) + w(i + mid) + w(i + size - 1);
      r = (r ^ r >> 27) * 1566083941u;
      w(i + mid) ^= r;
      r -= uint32_t(i % size);
      w(i + mid + lag) ^= r;
      w(i) = r;
    }
    if (__builtin_parity((w_[0] & 1) ^ (w_[3] & 0x13C9E684)) == 0) w_[0] ^= 1;
  }
  Words word() override {
    const uint32_t mask[] = {0xDFFFFFEF, 0xDDFECB7F, 0xBFFAFFFF, 0xBFFFFFF6};
    const uint32_t *a = &w_[w_.size() - 624], *b = a + 488, *c = a + 616, *d = a + 620;
    Words made;
    for (int i = 0; i < 4; ++i)
      made.push_back(a[i] ^ (a[i] << 8 | (i > 0 ? a[i - 1] >> 24 : 0)) ^ (b[i] >> 11 & mask[i]) ^
                     (c[i] >> 8 | (i < 3 ? c[i + 1] << 24 : 0)) ^ d[i] << 18);
    w_.insert(w_.end(), made.begin(), made.end());
    return made;
  }
  // Reals take whole groups of four and leave the rest to the next reals; words go on behind the group.
  double real(double a, double b) override {
    if (waiting_.empty()) waiting_ = word();
    const double r = waiting_[0] * ((b - a) * 0x1p-32) + a;
    waiting_.erase(waiting_.begin());
    return r;
  }
  Words w_, waiting_;
};

// ---- quasi-random: each point by itself, from the binary digits of its index ----

using Rows = std::vector<Words>;  // direction numbers, a row of 32 for each dimension

inline uint32_t component(const Words& v, uint32_t index) {
  uint32_t x = 0;
  for (int c = 0; c < 32; ++c)
    if ((index ^ index >> 1) >> c & 1) x ^= v[c];
  return x;
}

struct Quasi : Model {
  explicit Quasi(const Rows& rows, uint64_t from = 0) : v(rows), at(from) {}
  Words word() override {
    const uint64_t now = at++;
    return {component(v[now % v.size()], uint32_t(now / v.size()) + 1)};
  }
  Words words(int n) {
    Words r;
    while (n-- > 0) r.push_back(word()[0]);
    return r;
  }
  Rows v;
  uint64_t at;
};

// The seed words of class 4 for these rows.
inline Words matrix_seed(const Rows& rows) {
  Words seed = {uint32_t(rows.size()), 1, 4};
  for (const Words& row : rows) seed.insert(seed.end(), row.begin(), row.end());
  return seed;
}

// A stream's own rows, read off its points 2^c, each of which differs from an earlier one by a single number.
inline Rows rows_of(const Stream& start) {
  const uint32_t dimension = start.state()[1];
  Rows rows(dimension, Words(32));
  for (int c = 0; c < 32; ++c) {
    // The index with the Gray code 2^c is 2^(c+1) - 1; the last of all is out of a skip's reach.
    const Stream s = start;
    const uint32_t index = c < 31 ? (uint32_t(2) << c) - 1 : 0x80000000u;
    EXPECT_EQ(__kobSkipAheadStream(s, uint64_t(index - 1) * dimension), 0);
    const Words point = s.words(int(dimension));
    for (uint32_t d = 0; d < dimension; ++d) rows[d][c] = c < 31 ? point[d] : point[d] ^ rows[d][30];
  }
  return rows;
}

inline Rows random_rows(uint32_t dimension) {
  std::mt19937 random(dimension);
  Rows rows(dimension, Words(32));
  for (Words& row : rows)
    for (uint32_t& w : row) w = uint32_t(random());
  return rows;
}

// ---- all of them ----

inline std::vector<Case> pseudo_cases() {
  Words seed(250);
  for (uint32_t i = 0; i < 250; ++i) seed[i] = i * i * 2654435761u + 12345;
  const Words key = {20, 3, 2008};
  const TwisterParameters mt = {624, 397, 0x7FFFFFFF, 0x9908B0DF, 11, 0x9D2C5680, 0xEFC60000},
                          row0 = {69, 34, 0x1F, 0xAF81055F, 12, 0xDD7EEF80, 0xEFD78000},
                          row1 = {69, 34, 0x1F, 0x832604E1, 12, 0x66AD7F80, 0xEBD58000},
                          row6023 = {69, 34, 0x1F, 0xE8761D4B, 12, 0x72967680, 0xEFEB0000};
  return {make_case<Mcg31m1>("MCG31M1", KOB_BRNG_MCG31M1, {77777777}),
          make_case<Mcg59>("MCG59", KOB_BRNG_MCG59, {0xDEADBEEF, 0xFFFFFFFF}),
          make_case<WichmannHill>("WH272", KOB_BRNG_WH + 272, {1234567, 0, 16766327 + 5, 0xFFFFFFFF}),
          make_case<Mrg32k3a>("MRG32K3A", KOB_BRNG_MRG32K3A, Words(6, 12345)),
          make_case<R250>("R250", KOB_BRNG_R250, seed, seed),
          make_case<Twister>("MT19937", KOB_BRNG_MT19937, key, mt, key),
          make_case<Twister>("MT2203Row0", KOB_BRNG_MT2203, key, row0, key),
          make_case<Twister>("MT2203Row1", KOB_BRNG_MT2203 + 1, key, row1, key),
          make_case<Twister>("MT2203Row6023", KOB_BRNG_MT2203 + 6023, key, row6023, key),
          make_case<Sfmt>("SFMT19937", KOB_BRNG_SFMT19937, key, key)};
}

// Of default and of random direction numbers, which are kept in other places.
inline std::vector<Case> quasi_cases() {
  std::vector<Case> cases;
  const auto add = [&](const char* name, uint32_t id, uint32_t dimension, bool user) {
    const Words seed = user ? matrix_seed(random_rows(dimension)) : Words{dimension};
    cases.push_back({name + std::to_string(dimension) + (user ? "User" : ""), id, seed,
                     [=] { return std::make_unique<Quasi>(rows_of(Stream(id, seed))); }});
  };
  for (uint32_t dimension : {1, 2, 3, 7, 15, 16, 39, 40}) add("Sobol", KOB_BRNG_SOBOL, dimension, false);
  for (uint32_t dimension : {5, 16, 47, 400}) add("Sobol", KOB_BRNG_SOBOL, dimension, true);
  for (uint32_t dimension : {1, 5, 100, 318}) add("Niederreiter", KOB_BRNG_NIEDERR, dimension, false);
  for (uint32_t dimension : {6, 319}) add("Niederreiter", KOB_BRNG_NIEDERR, dimension, true);
  return cases;
}

inline std::string name_of(const testing::TestParamInfo<Case>& info) { return info.param.name; }
inline std::ostream& operator<<(std::ostream& out, const Case& c) { return out << c.name; }
