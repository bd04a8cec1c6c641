#include "split_streams.hpp"

#include <cstdlib>

namespace {

constexpr uint32_t kSeed = 20240229;

// one[i] of stream k to all[i * count + k].
template <class Number>
void deal(const std::vector<Number>& one, size_t k, size_t count, std::vector<Number>& all) {
  for (size_t i = 0; i < one.size(); ++i) all[i * count + k] = one[i];
}

}  // namespace

SplitStreams::SplitStreams(uint32_t id, int count, const std::string& how) {
  for (int k = 0; k < count && status_ == KOB_STATUS_OK; ++k) status_ = make(id, uint32_t(k), how);
}

SplitStreams::~SplitStreams() {
  for (KobStream*& stream : streams_) __kobDeleteStream(&stream);
}

int SplitStreams::make(uint32_t id, uint32_t k, const std::string& how) {
  std::vector<uint32_t> seed = {kSeed};
  if (how == "seeds") seed = {k + 1};
  if (how == "own" && k > 0) seed.push_back(k);
  if (how == "spread") {
    seed.resize(id == KOB_BRNG_R250 ? 250 : 8);  // a register takes all or one
    orx_kob_spread_seed(1, &k, int(seed.size()), seed.data());
    seed[0] |= 1;  // MCG59 has its whole period from odd numbers
  }
  const bool sub_generators = how == "own" || how == "alike";
  KobStream* stream = nullptr;
  int status = __kobNewStreamEx(&stream, sub_generators ? id + k : id, int(seed.size()), seed.data());
  if (stream) streams_.push_back(stream);
  if (status != KOB_STATUS_OK) return status;
  const auto argument = [&](const std::string& name) {
    return how.rfind(name, 0) == 0 ? atoi(how.c_str() + name.size()) : 0;
  };
  if (const int power = argument("skip=")) return __kobSkipAheadStream(stream, uint64_t(k) << power);
  if (const int parts = argument("leapfrog=")) return __kobLeapfrogStream(stream, k, parts);
  return status;
}

void SplitStreams::renew_reals() {
  std::vector<double> one(kBlock);
  reals_.resize(kBlock * streams_.size());
  for (size_t k = 0; k < streams_.size(); ++k) {
    _kobdRngUniform(0, streams_[k], int(kBlock), one.data(), 0, 1);
    deal(one, k, streams_.size(), reals_);
  }
  next_real_ = 0;
}

const std::vector<uint32_t>& SplitStreams::word_block() {
  std::vector<uint32_t> one(kBlock);
  words_.resize(kBlock * streams_.size());
  for (size_t k = 0; k < streams_.size(); ++k) {
    if (_kobiRngUniformBits32(0, streams_[k], int(kBlock), one.data()) != KOB_STATUS_OK) {
      std::vector<double> reals(kBlock);
      _kobdRngUniform(0, streams_[k], int(kBlock), reals.data(), 0, 0x1p32);
      for (size_t i = 0; i < kBlock; ++i) one[i] = uint32_t(reals[i]);
    }
    deal(one, k, streams_.size(), words_);
  }
  return words_;
}
