// Fuzz target for libFuzzer: any bytes as an image of a stream, loaded from a file and from memory, and put
// to use. It begins with images of every generator, which it writes into the corpus directory.
//
//   cmake -B build/fuzz -DCMAKE_CXX_COMPILER=clang++ -DORX_FUZZ=ON
//   cmake --build build/fuzz --target fuzz_load_stream
//   mkdir corpus
//   build/fuzz/tests/fuzz_load_stream -max_total_time=300 -max_len=60000 corpus
#include "kob/image.hpp"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static TemporaryFile file;
  if (!survives(file, Bytes(data, data + size))) abort();
  return 0;
}

static void write_image(const std::string& name, uint32_t id, const std::vector<uint32_t>& seed) {
  KobStream* stream = nullptr;
  if (__kobNewStreamEx(&stream, id, int(seed.size()), seed.data()) == KOB_STATUS_OK) {
    uint32_t words[5];
    uint64_t wide[3];
    _kobiRngUniformBits32(0, stream, 5, words);
    _kobiRngUniformBits64(0, stream, 3, wide);
    __kobSaveStreamF(stream, name.c_str(), -1);
  }
  __kobDeleteStream(&stream);
}

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
  const char* corpus = (*argv)[*argc - 1];
  if (*argc < 2 || corpus[0] == '-') return 0;
  const std::string name = corpus + std::string("/generator");
  for (uint32_t row = 0; row < 14; ++row) write_image(name + std::to_string(row), (row + 1) << 20, {});
  // Direction numbers of the user's, in chunks.
  for (uint32_t dimension : {2u, 41u, 319u}) {
    std::vector<uint32_t> seed(3 + 32 * dimension, 0x80000000);
    seed[0] = dimension, seed[1] = 1, seed[2] = 4;
    write_image(name + "5of" + std::to_string(dimension), KOB_BRNG_SOBOL, seed);
    write_image(name + "6of" + std::to_string(dimension), KOB_BRNG_NIEDERR, seed);
  }
  return 0;
}
