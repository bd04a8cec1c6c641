// The generator's raw words.
#include "_service/registry.hpp"

ORX_API int _kobiRngUniformBits(int, KobStream* stream, int n, uint32_t r[]) {
  return orx::brng::record(stream).iGenerate(stream, n, r);
}
