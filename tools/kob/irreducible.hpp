// Which members of the family have a characteristic polynomial that is irreducible over GF(2).  Its degree,
// 2203, is the exponent of a Mersenne prime, so an irreducible one is primitive and the period is 2^2203 - 1.
#pragma once

#include <immintrin.h>

#include <array>
#include <utility>
#include <vector>

#include "mt2203_family.hpp"

namespace mt2203 {

// Polynomials of degree at most 16 in a machine word, coefficient of t^i in bit i.
inline uint32_t multiply_mod(uint32_t a, uint32_t b, uint32_t f, int degree) {
  uint32_t product = 0;
  for (; b; b >>= 1) {
    if (b & 1) product ^= a;
    a <<= 1;
    if (a >> degree & 1) a ^= f;
  }
  return product;
}

inline uint32_t power_mod(uint32_t a, unsigned n, uint32_t f, int degree) {
  uint32_t power = 1;
  for (; n; n >>= 1, a = multiply_mod(a, a, f, degree))
    if (n & 1) power = multiply_mod(power, a, f, degree);
  return power;
}

// A candidate falls to the first irreducible polynomial of degree at most kSieveDegree that divides it.
// Modulo one of these the characteristic polynomial is the XOR of one stored residue per bit of the matrix
// word.  The factors t and t + 1 need no test: the polynomial is 1 at both when the top bit of the word is
// set.
class Sieve {
 public:
  static constexpr int kSieveDegree = 16;

  Sieve() {
    for (int degree = 2; degree <= kSieveDegree; ++degree)
      for (uint32_t f = (1u << degree) | 1; f < 2u << degree; f += 2)
        if (!has_factor(f, degree)) divisors_.push_back(divisor(f, degree));
  }

  bool passes(uint32_t matrix) const {
    alignas(64) uint16_t chosen[kWord];
    for (int i = 0; i < kWord; ++i) chosen[i] = matrix >> i & 1 ? 0xFFFF : 0;
    for (const Divisor& d : divisors_) {
      uint16_t residue = d.constant;
      for (int i = 0; i < kWord; ++i) residue ^= d.term[i] & chosen[i];
      if (residue == 0) return false;
    }
    return true;
  }

 private:
  struct Divisor {
    alignas(64) uint16_t term[kWord];
    uint16_t constant;
    uint32_t f;
    int degree;
  };

  bool has_factor(uint32_t f, int degree) const {
    if (__builtin_parity(f) == 0) return true;
    for (const Divisor& d : divisors_) {
      if (2 * d.degree > degree) break;
      uint32_t rest = f;
      for (int i = degree; i >= d.degree; --i)
        if (rest >> i & 1) rest ^= d.f << (i - d.degree);
      if (rest == 0) return true;
    }
    return false;
  }

  static Divisor divisor(uint32_t f, int degree) {
    Divisor d{};
    d.f = f;
    d.degree = degree;
    const uint32_t u = power_mod(2, kN, f, degree) ^ power_mod(2, kM, f, degree);
    const uint32_t v = power_mod(2, kN - 1, f, degree) ^ power_mod(2, kM - 1, f, degree);
    characteristic_terms([&](int bit, int p, int q) {
      const uint32_t term = multiply_mod(power_mod(u, p, f, degree), power_mod(v, q, f, degree), f, degree);
      (bit < 0 ? d.constant : d.term[bit]) = uint16_t(term);
    });
    return d;
  }

  std::vector<Divisor> divisors_;
};

// Tells x^(2^2203) = x modulo the characteristic polynomial.  As 2203 is prime, and t and t + 1 are no
// factors, this holds exactly for the irreducible ones.  Most others are found out on the way, by a factor of
// degree up to kEarly: it divides x^(2^i) - x for some i there.
class FermatTest {
 public:
  FermatTest() {
    for (Long& term : terms_) term.fill(0);
    characteristic_terms([&](int bit, int p, int q) {
      // (t^a + t^b)^p has the coefficient of t^(ai + b(p-i)) where the binomial of p over i is odd.
      for (int i = 0; i <= p; ++i)
        for (int j = 0; j <= q; ++j)
          if ((i & (p - i)) == 0 && (j & (q - j)) == 0)
            flip(terms_[bit + 1], kN * i + kM * (p - i) + (kN - 1) * j + (kM - 1) * (q - j));
    });
  }

  bool irreducible(uint32_t matrix) {
    if (!(matrix >> 31)) return false;
    take(matrix);
    Long x{}, product{};
    flip(x, 1);
    flip(product, 0);
    Long power = x;
    for (int i = 1; i <= kDegree; ++i) {
      power = square(power);
      if (i > kEarly || i <= Sieve::kSieveDegree) continue;
      product = multiply(product, sum(power, x));
      if (i == kEarly && !coprime(product)) return false;
    }
    return power == x;
  }

 private:
  static constexpr int kEarly = 120, kWords = 35, kShift = 64 * kWords - kDegree;
  using Long = std::array<uint64_t, kWords + 1>;  // the last word is zero
  using Product = std::array<uint64_t, 2 * kWords + 2>;

  static void flip(Long& x, int bit) { x[bit / 64] ^= uint64_t(1) << bit % 64; }

  static Long sum(Long x, const Long& y) {
    for (int i = 0; i < kWords; ++i) x[i] ^= y[i];
    return x;
  }

  static __m128i clmul(uint64_t a, uint64_t b) {
    return _mm_clmulepi64_si128(_mm_cvtsi64_si128(a), _mm_cvtsi64_si128(b), 0);
  }
  static uint64_t low(__m128i x) { return _mm_cvtsi128_si64(x); }
  static uint64_t high(__m128i x) { return _mm_extract_epi64(x, 1); }

  // to += x q, to a place of kWords + 1 words.
  static void add_multiple(uint64_t* to, const Long& x, uint64_t q) {
    const __m128i factor = _mm_cvtsi64_si128(q);
    __m128i before = _mm_setzero_si128();
    for (int j = 0; j < kWords; j += 2) {
      const __m128i pair = _mm_loadu_si128((const __m128i*)&x[j]);
      const __m128i even = _mm_clmulepi64_si128(pair, factor, 0x00),
                    odd = _mm_clmulepi64_si128(pair, factor, 0x01);
      const __m128i more = _mm_xor_si128(even, _mm_alignr_epi8(odd, before, 8));
      _mm_storeu_si128((__m128i*)(to + j), _mm_xor_si128(_mm_loadu_si128((const __m128i*)(to + j)), more));
      before = odd;
    }
  }

  Long square(const Long& x) const {
    Product s{};
    for (int i = 0; i < kWords; ++i) {
      const __m128i w = clmul(x[i], x[i]);
      s[2 * i] = low(w);
      s[2 * i + 1] = high(w);
    }
    return reduce(s);
  }

  Long multiply(const Long& x, const Long& y) const {
    Product s{};
    for (int i = 0; i < kWords; ++i) add_multiple(&s[i], x, y[i]);
    return reduce(s);
  }

  // Makes the characteristic polynomial of the matrix word the modulus.
  void take(uint32_t matrix) {
    modulus_ = terms_[0];
    for (int i = 0; i < kWord; ++i)
      if (matrix >> i & 1) modulus_ = sum(modulus_, terms_[i + 1]);
    for (int i = kWords - 1; i >= 0; --i)
      shifted_[i] = modulus_[i] << kShift | (i > 0 ? modulus_[i - 1] >> (64 - kShift) : 0);
    // floor(t^128 / (t^64 + g)) less its leading term, where g is the top word.
    const uint64_t g = shifted_[kWords - 1];
    inverse_ = 0;
    uint64_t rest = g;
    for (int i = 0; i < 64; ++i) {
      const bool top = rest >> 63;
      inverse_ = inverse_ << 1 | top;
      rest = (rest << 1) ^ (top ? g : 0);
    }
  }

  // The remainder.  The modulus times t^kShift is t^(64 kWords) + shifted_, so s is multiplied by t^kShift
  // too, reduced a word at a time from the top, and shifted back.
  Long reduce(Product& s) const {
    for (int i = 2 * kWords - 1; i > 0; --i) s[i] = s[i] << kShift | s[i - 1] >> (64 - kShift);
    s[0] <<= kShift;
    for (int k = 2 * kWords - 1; k >= kWords; --k)
      add_multiple(&s[k - kWords], shifted_, s[k] ^ high(clmul(s[k], inverse_)));
    Long rest{};
    for (int i = 0; i < kWords - 1; ++i) rest[i] = s[i] >> kShift | s[i + 1] << (64 - kShift);
    rest[kWords - 1] = s[kWords - 1] >> kShift;
    return rest;
  }

  static int degree(const Long& x) {
    for (int i = kWords - 1; i >= 0; --i)
      if (x[i]) return 64 * i + 63 - __builtin_clzll(x[i]);
    return -1;
  }

  // Euclid.
  bool coprime(Long x) const {
    Long y = modulus_;
    int dx = degree(x), dy = degree(y);
    while (dx > 0) {
      if (dx > dy) std::swap(x, y), std::swap(dx, dy);
      const int words = (dy - dx) / 64, bits = (dy - dx) % 64;
      for (int i = kWords - 1; i >= words; --i)
        y[i] ^= x[i - words] << bits | (bits && i > words ? x[i - words - 1] >> (64 - bits) : 0);
      dy = degree(y);
      if (dy < dx) std::swap(x, y), std::swap(dx, dy);
    }
    return dx == 0;
  }

  std::array<Long, kWord + 1> terms_;
  Long modulus_{}, shifted_{};  // the modulus; times t^kShift, less the leading term
  uint64_t inverse_ = 0;
};

}  // namespace mt2203
