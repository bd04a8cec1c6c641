// Seed words from a key, by SplitMix64: G. L. Steele, D. Lea, C. H. Flood, Fast splittable pseudorandom number
// generators, OOPSLA 2014.
#include "orx/base/api.hpp"
#include "orx/kob.h"

namespace {

class SplitMix64 {
 public:
  explicit SplitMix64(uint64_t state) : state_(state) {}

  uint64_t next() {
    uint64_t z = state_ += 0x9E3779B97F4A7C15;
    z = (z ^ z >> 30) * 0xBF58476D1CE4E5B9;
    z = (z ^ z >> 27) * 0x94D049BB133111EB;
    return z ^ z >> 31;
  }
  // Two more words of the key.
  void absorb(uint64_t words) { state_ = next() ^ words; }

 private:
  uint64_t state_;
};

}  // namespace

// The number of words goes in first, so that a key and the same with a zero behind it are two keys.
ORX_API int orx_kob_spread_seed(int key_count, const uint32_t key[], int n, uint32_t seed[]) {
  if (key_count < 0 || n < 0) return KOB_ERROR_BAD_ARG;
  SplitMix64 mix{uint64_t(key_count)};
  for (int i = 0; i < key_count; i += 2)
    mix.absorb(key[i] | (i + 1 < key_count ? uint64_t(key[i + 1]) << 32 : 0));
  mix = SplitMix64(mix.next());
  for (int i = 0; i < n; i += 2) {
    const uint64_t words = mix.next();
    seed[i] = uint32_t(words);
    if (i + 1 < n) seed[i + 1] = uint32_t(words >> 32);
  }
  return KOB_STATUS_OK;
}
