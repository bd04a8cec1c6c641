// MT19937, seeded by the array initialisation of 2002/1/26.
#include "_twister/twister.hpp"

namespace {

using namespace orx::brng;

struct MT19937 : TwisterGenerator<MT19937> {
  struct State {
    uint32_t Mt[624];  // not tempered
    uint32_t Index;    // the next word to hand out
  };
  using Engine = Twister<624, 397, 0x7FFFFFFF, 11>;

  static Engine engine(KobStream* stream) {
    State& s = state<MT19937>(stream);
    return {s.Mt, &s.Index, 0x9908B0DF, 0x9D2C5680, 0xEFC60000};
  }

  static int seed(KobStream* stream, int n, const uint32_t* params) {
    State& s = state<MT19937>(stream);
    Engine::seed(s.Mt, n, params);
    s.Index = Engine::kWords;
    return KOB_STATUS_OK;
  }
};

}  // namespace

ORX_BRNG_FUNCTIONS(MT19937)
