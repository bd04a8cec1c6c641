// Fuzz target: any bytes as an image of a stream, loaded from a file and from memory, and put to use.
#include <cstdlib>

#include "../image.hpp"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static TemporaryFile file;
  if (!survives(file, Bytes(data, data + size))) abort();
  return 0;
}

// Images of every generator, with left-overs, to begin with: written into the corpus directory, the first argument.
extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
  if (*argc < 2 || (*argv)[1][0] == '-') return 0;
  for (uint32_t row = 0; row < 14; ++row) {
    KobStream* stream = nullptr;
    if (__kobNewStreamEx(&stream, (row + 1) << 20, 0, nullptr) != KOB_STATUS_OK) continue;
    uint32_t words[5];
    uint64_t wide[3];
    _kobiRngUniformBits32(0, stream, 5, words);
    _kobiRngUniformBits64(0, stream, 3, wide);
    const std::string name = std::string((*argv)[1]) + "/generator" + std::to_string(row);
    __kobSaveStreamF(stream, name.c_str(), -1);
    __kobDeleteStream(&stream);
  }
  return 0;
}
