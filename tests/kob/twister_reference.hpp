// The twisters once more, straight from their publications, one word at a time.
#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

#include "stream.hpp"

// Initialisation by array, for a twister of n words.
inline Words twister_state(size_t n, Words key) {
  if (key.empty()) key = {1};
  Words mt{19650218};
  while (mt.size() < n) mt.push_back(uint32_t(1812433253u * (mt.back() ^ mt.back() >> 30) + mt.size()));
  size_t i = 1, j = 0;
  const auto previous = [&] { return mt[i - 1] ^ mt[i - 1] >> 30; };
  const auto advance = [&] {
    if (++i < n) return;
    mt[0] = mt[n - 1];
    i = 1;
  };
  for (size_t k = std::max(n, key.size()); k; --k) {
    mt[i] = uint32_t((mt[i] ^ previous() * 1664525u) + key[j] + j);
    j = (j + 1) % key.size();
    advance();
  }
  for (size_t k = n - 1; k; --k) {
    mt[i] = uint32_t((mt[i] ^ previous() * 1566083941u) - i);
    advance();
  }
  mt[0] = 0x80000000;
  return mt;
}

class TwisterReference {
 public:
  struct Parameters {
    size_t n, m;
    uint32_t lower, matrix;
    int shift;
    uint32_t mask_b, mask_c;
  };

  TwisterReference(const Parameters& p, const Words& key) : p_(p), x_(twister_state(p.n, key)) {}

  uint32_t operator()() {
    const size_t k = x_.size() - p_.n;
    const uint32_t y = (x_[k] & ~p_.lower) | (x_[k + 1] & p_.lower);
    x_.push_back(x_[k + p_.m] ^ y >> 1 ^ (y % 2 ? p_.matrix : 0));
    uint32_t z = x_.back();
    z ^= z >> p_.shift;
    z ^= z << 7 & p_.mask_b;
    z ^= z << 15 & p_.mask_c;
    return z ^ z >> 18;
  }

 private:
  Parameters p_;
  Words x_;
};

// SFMT19937 in 32-bit words; a 128-bit word is four of them, the lowest first.
class SfmtReference {
 public:
  explicit SfmtReference(Words key) {
    if (key.empty()) key = {1};
    constexpr size_t size = 624, lag = 11, mid = 306;
    w_.assign(size, 0x8B8B8B8B);
    const auto w = [&](size_t i) -> uint32_t& { return w_[i % size]; };
    for (size_t i = 0; i < std::max(key.size() + 1, size); ++i) {
      uint32_t r = w(i) ^ w(i + mid) ^ w(i + size - 1);
      r = (r ^ r >> 27) * 1664525u;
      w(i + mid) += r;
      r += uint32_t(i == 0 ? key.size() : i % size + (i <= key.size() ? key[i - 1] : 0));
      w(i + mid + lag) += r;
      w(i) = r;
    }
    const size_t end = std::max(key.size() + 1, size);
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

  Words state() const { return Words(w_.end() - 624, w_.end()); }

  uint32_t operator()() {
    if (at_ == w_.size()) make();
    return w_[at_++];
  }

 private:
  void make() {
    const uint32_t mask[] = {0xDFFFFFEF, 0xDDFECB7F, 0xBFFAFFFF, 0xBFFFFFF6};
    const size_t k = w_.size() - 624;
    const uint32_t *a = &w_[k], *b = &w_[k + 488], *c = &w_[k + 616], *d = &w_[k + 620];
    Words made;
    for (int i = 0; i < 4; ++i)
      made.push_back(a[i] ^ (a[i] << 8 | (i > 0 ? a[i - 1] >> 24 : 0)) ^ (b[i] >> 11 & mask[i]) ^
                     (c[i] >> 8 | (i < 3 ? c[i + 1] << 24 : 0)) ^ d[i] << 18);
    w_.insert(w_.end(), made.begin(), made.end());
  }

  Words w_;
  size_t at_ = 624;
};
