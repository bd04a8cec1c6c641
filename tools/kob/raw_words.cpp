// Writes 32-bit words of a generator to standard output for ever, for a test battery to read from a pipe.
//
//   raw_words ID [STREAMS [HOW]]
//
// ID is the number of the generator, as 0x800000. With STREAMS above 1 one word each is taken in turn from that
// many streams; split_streams.hpp tells HOW they may be told apart ("own" by default).
#include <cstdio>
#include <cstdlib>

#include "split_streams.hpp"

int main(int argc, char** argv) {
  if (argc < 2) return fprintf(stderr, "usage: raw_words ID [STREAMS [HOW]]\n"), 2;
  SplitStreams streams(uint32_t(strtoul(argv[1], nullptr, 0)), argc > 2 ? atoi(argv[2]) : 1,
                       argc > 3 ? argv[3] : "own");
  if (streams.status() != KOB_STATUS_OK || streams.count() < 1)
    return fprintf(stderr, "raw_words: no such streams, status %d\n", streams.status()), 1;
  const std::vector<uint32_t>* block;
  do block = &streams.word_block();
  while (fwrite(block->data(), sizeof(uint32_t), block->size(), stdout) == block->size());
  return 0;
}
