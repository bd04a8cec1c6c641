// MT2203: 6024 twisters of period 2^2203 - 1 with parameters of their own.
#include "_twister/twister.hpp"
#include "mt2203/mt2203_table.hpp"

namespace {

using namespace orx::brng;

struct MT2203 : TwisterGenerator<MT2203> {
  struct State {
    uint32_t Mt[69];  // not tempered
    uint32_t Index;   // the next word to hand out
    Mt2203Parameters Parameters;
  };
  using Engine = Twister<69, 34, 0x0000001F, 12>;

  static Engine engine(KobStream* stream) {
    State& s = state<MT2203>(stream);
    const Mt2203Parameters& p = s.Parameters;
    return {s.Mt, &s.Index, p.MatrixA, p.MaskB, p.MaskC};
  }

  static int seed(KobStream* stream, int n, const uint32_t* params) {
    State& s = state<MT2203>(stream);
    Engine::seed(s.Mt, n, params);
    s.Index = Engine::kWords;
    s.Parameters = _kob_mt2203_table[sub_generator(stream)];
    return KOB_STATUS_OK;
  }
};

}  // namespace

ORX_BRNG_FUNCTIONS(MT2203)
