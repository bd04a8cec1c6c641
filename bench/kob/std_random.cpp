#include "std_random.hpp"

#include <random>

namespace FLAVOUR {

// std::mt19937, but for a constant of its seeding: were the types of both flavours the same, the linker would
// give them one copy of the functions.
using Engine = std::mersenne_twister_engine<std::uint_fast32_t, 32, 624, 397, 31, 0x9908B0DF, 11, 0xFFFFFFFF,
                                            7, 0x9D2C5680, 15, 0xEFC60000, 18, SEEDING_FACTOR>;

// An engine of its own for each call, so that the compiler may keep it in registers.
template <class Element, class Draw>
static void fill(Element* r, int n, int times, Draw draw) {
  Engine engine;
  for (int k = 0; k < times; ++k)
    for (int i = 0; i < n; ++i) r[i] = draw(engine);
}

void std_random(uint32_t* r, int n, int times) {
  fill(r, n, times, [](Engine& engine) { return uint32_t(engine()); });
}
void std_random(float* r, int n, int times) {
  fill(r, n, times, [](Engine& engine) { return std::uniform_real_distribution<float>()(engine); });
}
void std_random(double* r, int n, int times) {
  fill(r, n, times, [](Engine& engine) { return std::uniform_real_distribution<double>()(engine); });
}

}  // namespace FLAVOUR
