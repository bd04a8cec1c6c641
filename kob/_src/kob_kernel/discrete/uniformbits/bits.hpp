// n words of 32 or 64 uniformly distributed bits: what the two widths share. Each generator has a worker of
// either width; a width is given as the number W of 32-bit words in an output word.
#pragma once

#include <algorithm>
#include <cstring>

#include "_service/chunks.hpp"
#include "_service/registry.hpp"
#include "orx/base/simd/words.hpp"

namespace orx::rng {

using Worker = int (*)(int method, KobStream* stream, int n, uint32_t* r);

// A generator whose words are not whole bits of that number takes nothing from its stream.
template <int W>
int unsupported(int, KobStream*, int, uint32_t*) {
  return KOB_ERROR_UNSUPPORTED_WORD_BITS;
}

// Calls _kobiRngUniformBits for total words of 32 bits, which may be more than an int counts.
inline int raw_bits(int method, KobStream* stream, int64_t total, uint32_t* r) {
  constexpr int most = 1 << 30;
  int64_t done = 0;
  int status;
  do {
    status = _kobiRngUniformBits(method, stream, int(std::min<int64_t>(total - done, most)), r + done);
    done += most;
  } while (status >= 0 && done < total);
  return status;
}

// Generators of 32-bit words: the earlier word is the low half.
template <int W>
int words32(int method, KobStream* stream, int n, uint32_t* r) {
  return raw_bits(method, stream, int64_t(n) * W, r);
}

// MCG59: the upper 32 of a word's 59 bits.
template <int W>
int words59(int method, KobStream* stream, int n, uint32_t* r) {
  constexpr int block = 2048, low_bits = 59 - 32;
  alignas(32) uint64_t buffer[block];
  const int64_t total = int64_t(n) * W;
  for (int64_t done = 0; done < total; done += block) {
    const int count = int(std::min<int64_t>(total - done, block));
    const int status = _kobiRngUniformBits(method, stream, count, reinterpret_cast<uint32_t*>(buffer));
    if (status < 0) return status;
    int i = 0;
    for (; i + 4 <= count; i += 4) {
      const auto pair = [&](int k) { return simd::load<simd::Wide2>(buffer + i + k) >> low_bits; };
      simd::store4(r + done + i, simd::low_halves(pair(0), pair(2)));
    }
    for (; i < count; ++i) r[done + i] = uint32_t(buffer[i] >> low_bits);
  }
  return KOB_STATUS_OK;
}

// SFMT19937: 128-bit words are cut up; what a call leaves of its last one waits in a chunk for the next call.
template <int W>
int words128(int method, KobStream* stream, int n, uint32_t* r) {
  constexpr int per_word = 4 / W;  // output words in a generator word
  struct LeftOver {
    uint32_t word[4 - W];
    uint32_t count;  // of output words
  };
  constexpr orx::brng::ChunkKind kind = W == 1 ? orx::brng::kChunkSfmtWords32 : orx::brng::kChunkSfmtWords64;
  if (n <= 0) return KOB_STATUS_OK;
  void* data;
  int status = orx::brng::find_or_add_chunk(stream, kind, sizeof(LeftOver), &data);
  if (status != KOB_STATUS_OK) return status;
  LeftOver& left = *static_cast<LeftOver*>(data);

  const int waiting = std::min(n, int(left.count));
  std::copy_n(left.word, waiting * W, r);
  std::copy(left.word + waiting * W, left.word + left.count * W, left.word);
  left.count -= uint32_t(waiting);
  r += ptrdiff_t(waiting) * W;
  n -= waiting;

  const int whole = n / per_word, rest = n % per_word;
  status = _kobiRngUniformBits(method, stream, whole, r);
  if (status < 0 || rest == 0) return status;
  alignas(16) uint32_t last[4];
  status = _kobiRngUniformBits(method, stream, 1, last);
  if (status < 0) return status;
  std::copy_n(last, rest * W, r + ptrdiff_t(whole) * 4);
  std::copy_n(last + rest * W, (per_word - rest) * W, left.word);
  left.count = uint32_t(per_word - rest);
  return KOB_STATUS_OK;
}

// A registered generator has no worker.
inline int dispatch(const Worker (&table)[orx::brng::kFamilies], int method, KobStream* stream, int n,
                    uint32_t* r) {
  const uint32_t row = orx::brng::family_row(stream);
  return row < orx::brng::kFamilies ? table[row](method, stream, n, r) : unsupported<1>(method, stream, n, r);
}

}  // namespace orx::rng

// What serves each family, in the order of their rows.
#define ORX_BITS_WORKERS(Worker)                                                                            \
  Worker(MCG31, unsupported) Worker(R250, unsupported) Worker(MRG32K3A, unsupported) Worker(MCG59, words59) \
      Worker(WH, unsupported) Worker(SOBOL, unsupported) Worker(NIEDERREITER, unsupported)                  \
          Worker(MT19937, words32) Worker(MT2203, words32) Worker(IABSTRACT, unsupported)                   \
              Worker(DABSTRACT, unsupported) Worker(SABSTRACT, unsupported) Worker(SFMT19937, words128)     \
                  Worker(NONDETERM, words32)
