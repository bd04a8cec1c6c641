#include "std_random.hpp"

#include <random>

namespace FLAVOUR {

// An engine of its own for each call, so that the compiler may keep it in registers. Everything is inlined: the
// linker would give both flavours one copy of the engine's functions.
template <class Element, class Draw>
static void fill(Element* r, int n, int times, Draw draw) {
  std::mt19937 engine;
  for (int k = 0; k < times; ++k)
    for (int i = 0; i < n; ++i) r[i] = draw(engine);
}

[[gnu::flatten]] void std_random(uint32_t* r, int n, int times) {
  fill(r, n, times, [](std::mt19937& engine) { return uint32_t(engine()); });
}
[[gnu::flatten]] void std_random(float* r, int n, int times) {
  fill(r, n, times, [](std::mt19937& engine) { return std::uniform_real_distribution<float>()(engine); });
}
[[gnu::flatten]] void std_random(double* r, int n, int times) {
  fill(r, n, times, [](std::mt19937& engine) { return std::uniform_real_distribution<double>()(engine); });
}

}  // namespace FLAVOUR
