// Writes 32-bit words of a generator to standard output for ever, for a test battery to read from a pipe.
//
//   raw_words ID [STREAMS] [skip | alike]
//
// ID is the number of the generator, as 0x800000. With STREAMS above 1 one word each is taken in turn from
// that many streams: from the sub-generators ID, ID + 1, ..., each with a seed of its own or, with the word
// "alike", all with the same one; with "skip", from one generator, 2^40 numbers apart. Words are the
// generator's 32 uniform bits where it has such, else the upper 32 bits of its real numbers.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "orx/kob.h"

namespace {

constexpr int kBlock = 1 << 12;

void draw(KobStream* stream, std::vector<uint32_t>& words) {
  if (_kobiRngUniformBits32(0, stream, kBlock, words.data()) == KOB_STATUS_OK) return;
  static std::vector<double> reals(kBlock);
  _kobdRngUniform(0, stream, kBlock, reals.data(), 0, 4294967296.0);
  for (int i = 0; i < kBlock; ++i) words[i] = uint32_t(reals[i]);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) return fprintf(stderr, "usage: raw_words ID [STREAMS] [skip | alike]\n"), 2;
  const uint32_t id = uint32_t(strtoul(argv[1], nullptr, 0));
  const int count = argc > 2 ? atoi(argv[2]) : 1;
  const auto has_word = [=](const char* word) { return argc > 3 && !strcmp(argv[3], word); };
  const bool skip = has_word("skip"), alike = has_word("alike");

  std::vector<KobStream*> streams(count);
  for (int k = 0; k < count; ++k) {
    const uint32_t which = skip ? 0 : uint32_t(k), seed[] = {20240229, which};
    int status = __kobNewStreamEx(&streams[k], id + which, which && !alike ? 2 : 1, seed);
    if (status == 0 && skip) status = __kobSkipAheadStream(streams[k], uint64_t(k) << 40);
    if (status != 0) return fprintf(stderr, "raw_words: status %d\n", status), 1;
  }

  std::vector<uint32_t> one(kBlock), all(size_t(kBlock) * size_t(count));
  do {
    for (int k = 0; k < count; ++k) {
      draw(streams[k], one);
      for (int i = 0; i < kBlock; ++i) all[size_t(i) * size_t(count) + size_t(k)] = one[i];
    }
  } while (fwrite(all.data(), sizeof(uint32_t), all.size(), stdout) == all.size());
  return 0;
}
