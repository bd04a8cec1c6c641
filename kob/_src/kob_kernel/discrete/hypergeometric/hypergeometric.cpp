// Hypergeometric: the number of marked items in a sample without replacement.
//   mode 40 or more above the least number   V. Kachitvichyanukul, B. W. Schmeiser, Computer generation of
//                                            hypergeometric random variates, J. Stat. Comput. Simul. 22 (1985), H2PE
//   else                                     inversion
#include "inversion.hpp"
#include "kept.hpp"
#include "unimodal.hpp"

using namespace orx::rng;

static int _vdLnCallBack(TefErrorContext* error) { return on_any_error<double>(error); }

namespace {

// Folded so that the sample and the marked items are the smaller halves. y numbers the marked items in the sample.
struct Urn {
  double lot, sample, marked;
  double least, most, mode;

  Urn(double lot_size, double sample_size, double marked_items)
      : lot(lot_size),
        sample(std::min(sample_size, lot_size - sample_size)),
        marked(std::min(marked_items, lot_size - marked_items)) {
    least = std::max(0.0, sample + marked - lot);
    most = std::min(sample, marked);
    mode = __builtin_floor((sample + 1) * (marked + 1) / (lot + 2));
  }
  // f(y) / f(y - 1)
  double ratio(double y) const {
    return (marked - y + 1) * (sample - y + 1) / (y * (lot - marked - sample + y));
  }
  double deviation() const {
    return root((lot - sample) / (lot - 1) * sample * (marked / lot) * (1 - marked / lot));
  }
};

// Probabilities from the least number on. The first of them by the sum of all, going out from the mode with 1.
struct Law : Urn {
  double first, last;

  explicit Law(const Urn& urn) : Urn(urn), last(most - least) {
    double sum = 1, down = 1;
    for (double y = mode; y > least; --y) sum += down /= Urn::ratio(y);
    double up = 1;
    for (double y = mode + 1; y <= most && sum + up > sum; ++y) sum += up *= Urn::ratio(y);
    first = down / sum;
  }
  double ratio(double k) const { return Urn::ratio(least + k); }
};

struct H2pe {
  FactorialRatio ratio;
  TableMountain hat;

  H2pe(const VectorMath& math, const Urn& urn)
      : ratio(math, urn.mode, 1,
              {{urn.mode + 1, 1, 1},
               {urn.marked - urn.mode + 1, -1, 1},
               {urn.sample - urn.mode + 1, -1, 1},
               {urn.lot - urn.marked - urn.sample + urn.mode + 1, 1, 1}}),
        hat(math, ratio, urn.deviation(), urn.least, urn.most, [&](double y) { return urn.ratio(y); }) {}
};

constexpr double kLeastForH2pe = 40;
constexpr int kMostSums = 72;

struct Cache {
  int32_t Lot, Sample, Marked, Reserved;
  union {
    double sums[kMostSums];
    H2pe h2pe;
  };
  int32_t Unused;
};
static_assert(sizeof(Cache) >= 596);

int hypergeometric(const VectorMath& math, KobStream* stream, int n, int32_t* r, int32_t lot, int32_t sample,
                   int32_t marked) {
  if (n < 1) return KOB_STATUS_OK;
  const Urn urn(lot, sample, marked);
  // Back from the folded numbers: of the marked items, of those that are left, or both.
  const bool sample_folded = urn.sample < sample, marked_folded = urn.marked < marked;
  const auto finish = [=](auto y) {
    int32_t k = int32_t(y);
    if (marked_folded) k = int32_t(urn.sample) - k;
    return sample_folded ? marked - k : k;
  };
  if (!(urn.least < urn.most)) {
    std::fill_n(r, n, finish(urn.least));
    return KOB_STATUS_OK;
  }
  Cache* cache;
  const int status = keep(stream, orx::brng::kChunkHypergeometric, Cache{0, 0, 0, 0, {}, 0}, &cache);
  if (status != KOB_STATUS_OK) return status;
  const bool is_new = cache->Lot != lot || cache->Sample != sample || cache->Marked != marked;
  cache->Lot = lot;
  cache->Sample = sample;
  cache->Marked = marked;
  if (urn.mode - urn.least >= kLeastForH2pe) {
    if (is_new) cache->h2pe = H2pe(math, urn);
    return by_hat(math, stream, n, r, cache->h2pe.hat, cache->h2pe.ratio, finish);
  }
  const auto law = [&] { return Law(urn); };
  const int start = int(urn.mode - urn.least), length = start + 32;
  if (is_new) tabulate(law(), cache->sums, length);
  return by_inversion(stream, n, r, law, cache->sums, length, start,
                      [&](auto k) { return finish(urn.least + double(k)); });
}

}  // namespace

ORX_API int _kobiRngHypergeometric(int, KobStream* stream, int n, int32_t r[], int32_t lot, int32_t sample,
                                   int32_t marked) {
  return framed<hypergeometric>(_vdLnCallBack, stream, n, r, lot, sample, marked);
}
